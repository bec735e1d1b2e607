// What the reader asks of a parsed document: children and attributes by name, and the text of an element.
#pragma once

#include <rapidxml/rapidxml.hpp>
#include <string_view>

namespace gpx {

using XmlNode = rapidxml::xml_node<char>;
using XmlDocument = rapidxml::xml_document<char>;

// The first child element of that name; null when there is none.
inline XmlNode* Child(const XmlNode& parent, std::string_view name) {
    return parent.first_node(name.data(), name.size());
}

inline rapidxml::xml_attribute<char>* Attribute(const XmlNode& element, std::string_view name) {
    return element.first_attribute(name.data(), name.size());
}

inline std::string_view Value(const rapidxml::xml_base<char>& owner) {
    return {owner.value(), owner.value_size()};
}

// An element's text, entities translated, white space as it stands. With CDATA sections: they and all text
// between them, joined. Otherwise the first run of text, which a comment or a child element ends.
std::string_view Text(XmlNode& element);

}  // namespace gpx
