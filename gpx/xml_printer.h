// Prints XML as RapidXML's printer prints a tree with its default flags, byte for byte, without building the
// tree: one element a line, a tab for each level, line feeds as line ends. A document of many points takes no
// more room than its text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Appends to a text that is the caller's and outlives the printer. Elements are begun and ended in pairs;
// attributes come straight after Begin. Names are printed as they are; in values the five special characters
// are escaped. Throws std::bad_alloc only.
class XmlPrinter {
 public:
    explicit XmlPrinter(std::string& text) : m_text(text) {}

    void Declaration();  // version 1.0, utf-8, standalone
    void Begin(std::string_view name);
    void End(std::string_view name);  // an element that holds nothing is printed in the short form
    void Attribute(std::string_view name, std::string_view value);
    void Attribute(std::string_view name, double value);

    // An element that holds one value: a text, or a number as "%d" or "%f" prints it.
    void Element(std::string_view name, std::string_view value);
    void Element(std::string_view name, std::int32_t value);
    void Element(std::string_view name, double value);
    // A value without special characters, as long as a number may be. Here and where an attribute is a number,
    // names and level are those of our documents: a line is put together in a few hundred bytes.
    void PlainElement(std::string_view name, std::string_view value);

 private:
    void CloseStartTag();
    void StartLine(std::string_view name);
    void EndTag(std::string_view name);

    std::string& m_text;
    std::size_t m_level = 0;
    bool m_isStartTagOpen = false;
};
