// The bound on how deep a document nests against the parser's own tree: a document that the parser takes is
// wrapped up to the bound, and by one level more.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <rapidxml/rapidxml.hpp>
#include <string>
#include <vector>

#include "Serializer/WYR/WyrXmlDepth.h"

namespace {

using Node = rapidxml::xml_node<char>;

// No stack is needed for it, unlike for the parser.
constexpr std::size_t kLongest = 4096;

// How deep the elements of `text` nest; -1 for a text that the parser refuses.
int ParsedDepth(std::string text) {
    rapidxml::xml_document<char> document;
    try {
        document.parse<0>(text.data());
    } catch (rapidxml::parse_error const&) {
        return -1;
    }
    int deepest = 0;
    int depth = 0;
    for (Node* node = document.first_node(); node != nullptr;) {
        bool const isElement = node->type() == rapidxml::node_element;
        deepest = isElement && depth + 1 > deepest ? depth + 1 : deepest;
        if (isElement && node->first_node() != nullptr) {
            node = node->first_node();
            ++depth;
            continue;
        }
        while (node->next_sibling() == nullptr && node->parent() != &document) {
            node = node->parent();
            --depth;
        }
        node = node->next_sibling();
    }
    return deepest;
}

std::string Wrapped(std::string const& text, int levels) {
    std::string wrapped;
    for (int i = 0; i < levels; ++i) {
        wrapped += "<w>";
    }
    wrapped += text;
    for (int i = 0; i < levels; ++i) {
        wrapped += "</w>";
    }
    return wrapped;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const text(reinterpret_cast<char const*>(data), size < kLongest ? size : kLongest);
    // With one level around it, since a document and an element's content aren't read alike.
    int const depth = text.find('\0') == std::string::npos ? ParsedDepth(Wrapped(text, 1)) - 1 : -1;
    if (depth < 0 || depth >= Ubrix::kMaxXmlDepth) {
        return 0;
    }
    int const room = Ubrix::kMaxXmlDepth - depth;
    if (!Ubrix::IsWithinXmlDepth(Wrapped(text, room).c_str()) ||
        Ubrix::IsWithinXmlDepth(Wrapped(text, room + 1).c_str())) {
        std::abort();
    }
    return 0;
}
