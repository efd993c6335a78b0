// The lines of an INI file, and the rules by which they are read and edited.
//
// Section header: a line that begins with "[" and contains a "]"; the name is between the first of each.
// Any line that begins with "[" ends the section before it.
// Key line: a line with an "="; the key is the text before the first one, so no key contains an "=". The
// value follows it, up to a "#" or the end. Any other line just sits in the list. There are no comment
// lines: "# a=b" holds the key "# a".
//
// Names and values are trimmed of spaces, and of spaces only. All comparisons are exact.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <list>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace Ubrix {

// Not thread-safe: the file object guards it.
//
// A read or a write costs O(log n) for n lines, whatever the names are: they may come from a server that
// means harm, which a tree withstands and a hash table, whose collisions can be computed, does not.
//
// An operation that finds no memory throws std::bad_alloc and leaves the lines as they were; but for
// WriteAll, which leaves some of its edits.
class IniLines {
public:
    enum class Lookup { Found, Absent };

    IniLines() : _blocks(1) {}
    IniLines(IniLines const&) = delete;
    IniLines& operator=(IniLines const&) = delete;

    // Calls `visit` with each line in turn, every byte of it; each is one that came from a file or an edit.
    template <typename Visit>
    void ForEach(Visit visit) const {
        for (Block const& block : _blocks) {
            for (Line const& line : block.lines) {
                visit(line.text);
            }
        }
    }
    void Append(std::string_view line) { Add(std::prev(_blocks.end()), Line(std::string(line))); }
    void Clear();
    void Swap(IniLines& other) noexcept;

    // The value of `key` in the first section of the name that has it. Absent leaves `value` alone. A key
    // with nothing at all behind its "=" is absent.
    Lookup Read(std::string_view section, std::string_view key, std::string& value) const;
    // Sets `key` in the first section of the name: an existing line keeps its spacing before the "=" and, if
    // the value has no "#" of its own, its text from a "#" on. A new section goes to the end, behind an empty
    // line. The names and the value are such as a line can hold.
    void Write(std::string_view section, std::string_view key, std::string_view value);
    // Writes every key of `edits`.
    void WriteAll(IniLines const& edits);
    // The names of the first section of the name, in order. Walks the section.
    std::vector<std::string> Keys(std::string_view section) const;
    // Whether a line behind the section's header, in that section or a later one, begins with `key`. Walks
    // the lines.
    bool HasLineWithPrefix(std::string_view section, std::string_view key) const;
    // False if there is nothing to remove. Both cost O(log n) for each line of the section.
    bool RemoveSection(std::string_view section);
    bool RemoveKey(std::string_view section, std::string_view key);

private:
    // The key's place is kept, since the index asks for it often and a line may be long.
    struct Line {
        explicit Line(std::string content);
        bool HasKey() const { return keyBegin != std::string::npos; }
        std::string_view Key() const { return std::string_view(text).substr(keyBegin, keySize); }

        std::string text;
        std::size_t keyBegin = std::string::npos;
        std::size_t keySize = 0;
    };
    // A line that begins with "[" and those behind it, up to the next such line. The first block has no line
    // of that kind, and may have no line at all.
    struct Block {
        std::vector<Line> lines;
        bool hasHeader = false;
        std::string section;
        // Rises from block to block, and serves to tell which of two comes first.
        std::uint64_t order = 0;
    };
    using Blocks = std::list<Block>;

    struct Place {
        Blocks::iterator block;
        std::size_t line;
    };
    // What the index finds: a section's header, or a key line in a section.
    struct Names {
        std::string_view section;
        bool isKey;
        std::string_view key;
    };
    // By names, and in the order of the file where those are the same.
    struct IndexOrder {
        using is_transparent = void;
        bool operator()(Place const& left, Place const& right) const;
        bool operator()(Place const& left, Names const& right) const;
    };

    using Places = std::set<Place, IndexOrder>;

    static Names NamesAt(Place const& place);
    static int Compare(Names const& left, Names const& right);
    static bool IsIndexed(Place const& place);

    // The first line of these names, or null.
    Place const* Find(Names const& names) const;
    Place const* FindHeader(std::string_view section) const { return Find({section, false, {}}); }
    Place const* FindKey(std::string_view section, std::string_view key) const {
        return Find({section, true, key});
    }

    // Puts a line at the end of `block`, or directly behind the block if it begins one. Gives the line's
    // block.
    Blocks::iterator Add(Blocks::iterator block, Line line);
    Blocks::iterator AddBlock(Blocks::iterator block, Line line);
    void AddToSection(Blocks::iterator block, Line line);
    // Adds an empty line, the header and `line` at the end.
    void WriteSection(std::string_view section, std::string const& line);
    // Needs no memory.
    void SwapWithNext(Blocks::iterator block, std::size_t line);
    // Takes the last line out. There is one.
    void RemoveLast();
    // Gives a new block its `order`.
    void Number(Blocks::iterator block);
    // Bring lines `from` and up of `block` into the index, and take them out, which comes before any change
    // of their names or places.
    void Index(Blocks::iterator block, std::size_t from);
    void Unindex(Blocks::iterator block, std::size_t from);

    // At least one.
    Blocks _blocks;
    Places _index;
};

}  // namespace Ubrix
