// The configuration that a server hands out: sections of keys, each value a string or a 32-bit integer.
#pragma once

#include <cstddef>
#include <string>

namespace Example {

class ConfigDocument {
public:
    // No section at all, rule id 0.
    ConfigDocument();

    // Reads the JSON text of an object with "rule_id" and "merged_cfg". Throws std::runtime_error, naming the
    // place, if it isn't well formed or holds what a client wouldn't take.
    explicit ConfigDocument(std::string const& text);

    // The body of a good answer.
    std::string const& Answer() const { return _answer; }
    size_t Sections() const { return _sections; }
    size_t Keys() const { return _keys; }

    // The body of an answer that refuses a request, for the reason told.
    static std::string Refusal(std::string const& reason);

private:
    std::string _answer;
    size_t _sections = 0;
    size_t _keys = 0;
};

}  // namespace Example
