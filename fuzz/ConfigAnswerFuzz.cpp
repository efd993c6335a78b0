// A server's answer to the request for the configuration: how it is measured, read and taken over.
#include <sanitizer/allocator_interface.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Base/Configure/ConfigAnswer.h"
#include "Base/Configure/JsonCpp.h"
#include "Base/Configure/JsonExtent.h"
#include "SilentLog.h"
#include "Storage/File/IniText.h"

namespace {

void Require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

struct Tree {
    std::size_t values = 0;
    std::size_t empty = 0;
    std::size_t depth = 0;
};

void Walk(Ubrix_Json::Value const& value, std::size_t depth, Tree& tree) {
    ++tree.values;
    if (!value.isArray() && !value.isObject()) {
        return;
    }
    tree.empty += value.empty() ? 1 : 0;
    tree.depth = depth > tree.depth ? depth : tree.depth;
    for (Ubrix_Json::Value const& member : value) {
        Walk(member, depth + 1, tree);
    }
}

// What the parser makes of a text, also of one that it refuses in the middle, was counted before.
void CompareWithParser(std::string const& text) {
    Velmor::JsonExtent const extent = Velmor::MeasureJson(text);
    Ubrix_Json::Value root;
    bool const isTaken = Velmor::ParseJson(text, root);
    Tree tree;
    Walk(root, 1, tree);
    Require(tree.values <= extent.values && tree.depth <= extent.depth);
    bool const hasNames = text.find('{') != std::string::npos;
    Require(!isTaken || !root.isArray() || hasNames || tree.values + tree.empty == extent.values);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    SilentLog::Install();
    // Terminated, as the transfer hands it over.
    std::string const body(reinterpret_cast<char const*>(data), size);
    CompareWithParser(body);

    std::size_t const before = __sanitizer_get_current_allocated_bytes();
    Velmor::ConfigAnswer answer;
    int const result = Velmor::ParseConfigAnswer(body.c_str(), body.size(), answer);
    std::size_t const held = __sanitizer_get_current_allocated_bytes() - before;
    Require(held <= 1024 + 2 * size + 200 * Velmor::MeasureJson(body).values);
    Require(result == 0 || answer.modules.isNull());
    for (Ubrix::ValueIterator module = answer.modules.begin(); module != answer.modules.end(); ++module) {
        Require(Ubrix::IniText::CanBeSection(module.memberName()));
        for (Ubrix::ValueIterator key = (*module).begin(); key != (*module).end(); ++key) {
            Require(Ubrix::IniText::CanBeKey(key.memberName()));
            Require(Ubrix::IniText::CanBeValue((*key).asString().c_str()));
        }
    }
    return 0;
}
