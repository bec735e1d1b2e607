#include "gpx/xml_node.h"

#include <cstring>

namespace {

bool HasCdata(const gpx::XmlNode& element) {
    for (const gpx::XmlNode* child = element.first_node(); child != nullptr; child = child->next_sibling())
        if (child->type() == rapidxml::node_cdata) return true;
    return false;
}

// Moves the sections and runs together where they stand in the text, and keeps the result as the element's
// value.
void JoinText(gpx::XmlNode& element) {
    char* start = nullptr;
    std::size_t size = 0;
    for (const gpx::XmlNode* child = element.first_node(); child != nullptr; child = child->next_sibling()) {
        if (child->type() != rapidxml::node_cdata && child->type() != rapidxml::node_data) continue;
        if (start == nullptr) start = child->value();
        std::memmove(start + size, child->value(), child->value_size());
        size += child->value_size();
    }
    element.value(start, size);
    element.remove_all_nodes();
}

}  // namespace

std::string_view gpx::Text(XmlNode& element) {
    if (HasCdata(element)) JoinText(element);
    return Value(element);
}
