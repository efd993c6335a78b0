// The lines of an INI file, and the rules by which they are read and edited.
//
// Section header: a line that begins with "[" and contains a "]"; the name stands between the first of each.
// Any line that begins with "[" ends the section before it.
// Key line: a line that contains the key and an "=" at or after the key's first occurrence, where the text
// before that "=" is the key. The value stands behind it, up to a "#" or the end.
// Any other line just sits in the list. There are no comment lines: "# a=b" holds the key "# a".
//
// Names and values are trimmed of spaces, and of spaces only. All comparisons are exact.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Ubrix {

// Not thread-safe: the file object guards it.
class IniLines {
public:
    enum class Lookup { Found, Absent };

    // Every byte, line by line; each line is one that came from a file or an edit.
    std::vector<std::string> const& All() const { return _lines; }
    void Append(std::string_view line) { _lines.emplace_back(line); }
    void Clear() { _lines.clear(); }

    // The value of `key` in the first section of the name that has it. Absent leaves `value` alone. A key
    // with nothing at all behind its "=" is absent.
    Lookup Read(std::string_view section, std::string_view key, std::string& value) const;
    // Sets `key` in the first section of the name: an existing line keeps its spacing before the "=" and its
    // text from a "#" on. A new section goes to the end, behind an empty line.
    void Write(std::string_view section, std::string_view key, std::string_view value);
    // The names of the first section of the name, in order.
    std::vector<std::string> Keys(std::string_view section) const;
    // Whether a line behind the section's header, in that section or a later one, begins with `key`.
    bool HasLineWithPrefix(std::string_view section, std::string_view key) const;
    // False if there is nothing to remove.
    bool RemoveSection(std::string_view section);
    bool RemoveKey(std::string_view section, std::string_view key);

private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    // The first header of the name at or behind line `from`.
    std::size_t FindHeader(std::string_view section, std::size_t from) const;
    // The first line behind line `header` that begins with "[", or the number of lines.
    std::size_t EndOfSection(std::size_t header) const;
    // The key's line in the section that begins with line `header`.
    std::size_t FindKey(std::size_t header, std::string_view key) const;
    // The key's line in any section of the name.
    std::size_t FindKeyAnywhere(std::string_view section, std::string_view key) const;

    std::vector<std::string> _lines;
};

}  // namespace Ubrix
