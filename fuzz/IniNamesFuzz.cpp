// Whatever is written into a bundle is either refused, with nothing changed, or comes back from the disk as
// told, and changes no neighbour. The input: sections, keys and values in turn, each ended by a "|".
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "SilentLog.h"
#include "Storage/Bundle/BundleImpl.h"

namespace {

constexpr char kPath[] = "fuzz-names.config";

// By section, the keys in the order of their first writing.
using Keys = std::vector<std::pair<std::string, std::string>>;
using Model = std::map<std::string, Keys>;

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

std::vector<std::string> Split(std::string const& input) {
    std::vector<std::string> texts;
    std::size_t begin = 0;
    for (std::size_t end = input.find('|'); end != std::string::npos; end = input.find('|', begin)) {
        // Up to a NUL, as a caller's text is.
        texts.emplace_back(input.substr(begin, end - begin).c_str());
        begin = end + 1;
    }
    return texts;
}

bool HasBlankAtEnd(std::string const& text) {
    return !text.empty() && (text.front() == ' ' || text.back() == ' ');
}

bool IsHeld(std::string const& section, std::string const& key, std::string const& value) {
    bool const isOneLine = (section + key + value).find_first_of("\r\n") == std::string::npos;
    bool const isSection = section.find(']') == std::string::npos && !HasBlankAtEnd(section);
    bool const isKey = key.find('=') == std::string::npos && !HasBlankAtEnd(key) && key.rfind('[', 0) != 0 &&
                       key.rfind('#', 0) != 0;
    return isOneLine && isSection && isKey;
}

bool HasComment(std::string const& text) {
    return text.find('#') != std::string::npos;
}

void Write(Model& model, std::string const& section, std::string const& key, std::string const& value) {
    Keys& keys = model[section];
    for (auto& [name, text] : keys) {
        if (name == key) {
            // A line keeps its comment unless the value brings one.
            bool const keepsComment = HasComment(text) && !HasComment(value);
            text = keepsComment ? value + '#' : value;
            return;
        }
    }
    keys.emplace_back(key, value);
}

// What a read of a value answers; "absent" is the default.
std::string ReadBack(std::string const& value) {
    if (value.empty()) {
        return "absent";
    }
    std::string const text = value.substr(0, value.find('#'));
    std::size_t const first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

void RequireSame(Ubrix::Bundle& bundle, Model const& model) {
    for (auto const& [section, keys] : model) {
        Ubrix::AArray names;
        bundle.GetKeys(section.c_str(), &names);
        Require(names.Count() == static_cast<int>(keys.size()));
        for (auto const& [key, value] : keys) {
            Require(bundle.Get(section.c_str(), key.c_str(), "absent") ==
                    Ubrix::AString(ReadBack(value).c_str()));
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    SilentLog::Install();
    std::remove(kPath);
    std::vector<std::string> const texts = Split(std::string(reinterpret_cast<char const*>(data), size));
    Model model;
    {
        Ubrix::BundleImpl bundle(kPath);
        for (std::size_t i = 0; i + 2 < texts.size(); i += 3) {
            bool const taken = bundle.SetNoSave(texts[i].c_str(), texts[i + 1].c_str(), texts[i + 2].c_str());
            Require(taken == IsHeld(texts[i], texts[i + 1], texts[i + 2]));
            if (taken) {
                Write(model, texts[i], texts[i + 1], texts[i + 2]);
            }
        }
        RequireSame(bundle, model);
    }
    Ubrix::BundleImpl again(kPath);
    RequireSame(again, model);
    return 0;
}
