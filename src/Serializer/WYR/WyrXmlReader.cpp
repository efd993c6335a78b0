#include "Serializer/WYR/WyrXmlReader.h"

#include <cassert>
#include <cstdint>
#include <cstring>
#include <new>

// Room for the nodes of a small document in the tree itself; the next ones come in few blocks, since a heap
// gives many small blocks back to the system, and taking them anew costs as much as parsing.
#define RAPIDXML_STATIC_POOL_SIZE (16 * 1024)
#define RAPIDXML_DYNAMIC_POOL_SIZE (256 * 1024)
#include <rapidxml/rapidxml.hpp>

#include "Serializer/WYR/WyrError.h"
#include "Serializer/WYR/WyrSpace.h"
#include "Serializer/WYR/WyrXmlDepth.h"

namespace Ubrix {

// On the heap, since the document brings along the room for its first nodes.
struct WyrXmlReader::Body {
    rapidxml::xml_document<char> document;
    rapidxml::xml_node<char>* currRoot = &document;  // where the cursor is
    rapidxml::xml_node<char>* lastChild = nullptr;   // what it has just left
};

namespace {

using Node = rapidxml::xml_node<char>;

// The first node of the row that begins with `node` and has this name.
Node* Named(Node* node, char const* name) {
    size_t const length = std::strlen(name);
    for (; node != nullptr; node = node->next_sibling()) {
        // Names of one record often differ in their last character only, hardly ever in their first.
        if (node->name_size() == length && (length == 0 || node->name()[length - 1] == name[length - 1]) &&
            std::memcmp(node->name(), name, length) == 0) {
            return node;
        }
    }
    return nullptr;
}

}  // namespace

WyrXmlReader::WyrXmlReader(char* string, int style) : _style(style), _state(WyrError::WYR_NO_ERROR) {
    assert(nullptr != string);
    parse(string);
}

WyrXmlReader::WyrXmlReader(char const* buffer, size_t size, int style)
    : _style(style), _state(WyrError::WYR_NO_ERROR) {
    assert(nullptr != buffer);
    if (size < SIZE_MAX / 2) {
        _content.reset(new (std::nothrow) char[size + 1]);
    }
    if (_content == nullptr) {
        _state = WyrError::WYR_ERR_NO_MEMORY;
        return;
    }
    std::memcpy(_content.get(), buffer, size);
    _content[size] = '\0';
    parse(_content.get());
}

WyrXmlReader::~WyrXmlReader() = default;

void WyrXmlReader::parse(char* text) {
    if (!IsWithinXmlDepth(text)) {
        _state = WyrError::WYR_ERR_XML_PARSE;
        return;
    }
    try {
        _body = std::make_unique<Body>();
        _body->document.parse<0>(text);
    } catch (rapidxml::parse_error const&) {
        _state = WyrError::WYR_ERR_XML_PARSE;
    } catch (std::bad_alloc const&) {
        _state = WyrError::WYR_ERR_NO_MEMORY;
    }
}

int WyrXmlReader::enter(char const* name) {
    assert(WyrError::WYR_NO_ERROR == _state);
    assert(nullptr != name);
    Body& body = *_body;
    bool const goesOn = body.lastChild != nullptr && std::strcmp(body.lastChild->name(), name) == 0;
    Node* const child = Named(goesOn ? body.lastChild->next_sibling() : body.currRoot->first_node(), name);
    if (child == nullptr) {
        return 1;
    }
    body.currRoot = child;
    body.lastChild = nullptr;
    return WyrError::WYR_NO_ERROR;
}

void WyrXmlReader::leave(char const* name) {
    assert(WyrError::WYR_NO_ERROR == _state);
    assert(nullptr != name);
    assert(0 == strcmp(name, _body->currRoot->name()));
    static_cast<void>(name);
    Node* const parent = _body->currRoot->parent();
    assert(nullptr != parent);
    if (parent != nullptr) {
        _body->lastChild = _body->currRoot;
        _body->currRoot = parent;
    }
}

char const* WyrXmlReader::value(char const* name) {
    assert(WyrError::WYR_NO_ERROR == _state);
    assert(nullptr != name);
    if (_style == WYR_XML_ATTRIBUTES) {
        rapidxml::xml_attribute<char> const* const attribute = _body->currRoot->first_attribute(name);
        return attribute == nullptr ? nullptr : trim(attribute->value(), attribute->value_size());
    }
    if (enter(name) != WyrError::WYR_NO_ERROR) {
        return nullptr;
    }
    char* const head = _body->currRoot->value();
    size_t const size = _body->currRoot->value_size();
    leave(name);
    return trim(head, size);
}

char const* WyrXmlReader::trim(char* head, size_t size) {
    char* end = head + size;
    while (head < end && IsWyrSpace(*head)) {
        ++head;
    }
    if (head == end) {
        return nullptr;
    }
    if (IsWyrSpace(end[-1])) {
        do {
            --end;
        } while (IsWyrSpace(end[-1]));
        *end = '\0';
    }
    return *head == '\0' ? nullptr : head;
}

}  // namespace Ubrix
