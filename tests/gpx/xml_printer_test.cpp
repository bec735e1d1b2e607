// The printer against RapidXML's own, on trees of any shape.
#include "gpx/xml_printer.h"

#include <iterator>
#include <memory>
#include <random>
#include <rapidxml/rapidxml_print.hpp>

#include <gtest/gtest.h>
#include "tests/support/seed.h"

namespace {

using Document = rapidxml::xml_document<char>;
using Node = rapidxml::xml_node<char>;

std::string PrintedByRapidXml(const Document& document) {
    std::string text;
    rapidxml::print(std::back_inserter(text), document, 0);
    return text;
}

std::string AnyText(std::mt19937& random) {
    constexpr std::string_view kAlphabet = "ab<>&'\" \t\n;\xC3\xA9";
    std::string text(random() % 8, ' ');
    for (char& c : text) c = kAlphabet[random() % kAlphabet.size()];
    return text;
}

// Grows one tree twice: as RapidXML's nodes and as calls of the printer.
class Grower {
 public:
    Grower(Document& document, XmlPrinter& printer, std::mt19937& random)
        : m_document(document), m_printer(printer), m_random(random) {}

    void Grow(Node& parent, int depth) {
        const std::string name(1 + m_random() % 5, 'n');
        Node* node = m_document.allocate_node(rapidxml::node_element, Kept(name));
        parent.append_node(node);
        if (m_random() % 3 == 0) return Fill(*node, name);
        m_printer.Begin(name);
        for (auto i = m_random() % 3; i > 0; --i) GrowAttribute(*node);
        for (auto i = depth == 0 ? 0 : m_random() % 4; i > 0; --i) Grow(*node, depth - 1);
        m_printer.End(name);
    }

 private:
    void Fill(Node& node, const std::string& name) {
        const std::string text = AnyText(m_random);
        node.value(Kept(text));
        m_printer.Element(name, text);
    }
    void GrowAttribute(Node& node) {
        const std::string value = AnyText(m_random);
        node.append_attribute(m_document.allocate_attribute("key", Kept(value)));
        m_printer.Attribute("key", value);
    }
    const char* Kept(const std::string& text) { return m_document.allocate_string(text.c_str()); }

    Document& m_document;
    XmlPrinter& m_printer;
    std::mt19937& m_random;
};

}  // namespace

TEST(XmlPrinter, AnyTree_IsPrintedAsRapidXmlPrintsIt) {
    std::mt19937 random(Seed(1));
    for (int i = 0; i < 2000; ++i) {
        const auto document = std::make_unique<Document>();
        std::string text;
        XmlPrinter printer(text);
        Grower(*document, printer, random).Grow(*document, 4);
        ASSERT_EQ(text + '\n', PrintedByRapidXml(*document)) << "tree " << i;
    }
}

TEST(XmlPrinter, Declaration_IsPrintedAsRapidXmlPrintsIt) {
    const auto document = std::make_unique<Document>();
    Node* declaration = document->allocate_node(rapidxml::node_declaration);
    declaration->append_attribute(document->allocate_attribute("version", "1.0"));
    declaration->append_attribute(document->allocate_attribute("encoding", "utf-8"));
    declaration->append_attribute(document->allocate_attribute("standalone", "yes"));
    document->append_node(declaration);
    std::string text;
    XmlPrinter(text).Declaration();
    EXPECT_EQ(text + '\n', PrintedByRapidXml(*document));
}

TEST(XmlPrinter, Numbers_ArePrintedInFull) {
    std::string text;
    XmlPrinter printer(text);
    printer.Begin("a");
    printer.Attribute("b", -0.5);
    printer.Element("c", 1.5);
    printer.Element("d", std::int32_t{-2});
    printer.End("a");
    EXPECT_EQ(text, "<a b=\"-0.500000\">\n\t<c>1.500000</c>\n\t<d>-2</d>\n</a>\n");
}

TEST(XmlPrinter, FiveSpecialCharacters_AreEscapedInText) {
    std::string text;
    XmlPrinter(text).Element("a", "<>&'\"");
    EXPECT_EQ(text, "<a>&lt;&gt;&amp;&apos;&quot;</a>\n");
}

TEST(XmlPrinter, AttributeWithADoubleQuote_StandsInSingleQuotes) {
    std::string text;
    XmlPrinter printer(text);
    printer.Begin("a");
    printer.Attribute("b", "\"'");
    printer.Attribute("c", "'<");
    printer.End("a");
    EXPECT_EQ(text, "<a b='\"&apos;' c=\"'&lt;\"/>\n");
}
