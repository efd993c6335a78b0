// Edits leave the lines of an INI file with the index that a fresh read of the same lines would make: what
// was edited and what was read answer alike, and go on alike. The input: a byte for each action, and one for
// each character of its names.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "Storage/File/IniLines.h"

namespace {

using Ubrix::IniLines;
using Lines = std::vector<std::string>;

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// Takes the input apart, and gives zeros behind its end.
class Input {
public:
    Input(std::uint8_t const* data, std::size_t size) : _data(data), _size(size) {}
    bool IsEmpty() const { return _at >= _size; }
    std::uint8_t Byte() { return IsEmpty() ? 0 : _data[_at++]; }
    // Few characters and short names, so that they meet.
    std::string Name() {
        std::string name;
        for (std::uint8_t byte = Byte(); byte % 8 != 0 && name.size() < 6; byte = Byte()) {
            name += " =#[]ab"[byte % 8 - 1];
        }
        return name;
    }

private:
    std::uint8_t const* _data;
    std::size_t _size;
    std::size_t _at = 0;
};

Lines All(IniLines const& lines) {
    Lines all;
    lines.ForEach([&](std::string const& line) { all.push_back(line); });
    return all;
}

// The answers to all that can be asked about two names.
Lines Answers(IniLines const& lines, std::string const& section, std::string const& key) {
    Lines answers = lines.Keys(section);
    lines.Read(section, key, answers.emplace_back("absent"));
    answers.emplace_back(lines.HasLineWithPrefix(section, key) ? "begins a line" : "begins none");
    return answers;
}

void Edit(IniLines& lines, unsigned int action, Lines const& names) {
    if (action == 0) {
        lines.RemoveSection(names[0]);
    } else if (action == 1) {
        lines.RemoveKey(names[0], names[1]);
    } else if (action < 5) {
        lines.Append(names[0] + names[1] + names[2]);
    } else {
        lines.Write(names[0], names[1], names[2]);
    }
}

void RequireAlike(IniLines const& lines, IniLines const& fresh, Lines const& names) {
    Require(All(lines) == All(fresh));
    for (std::string const& section : names) {
        for (std::string const& key : names) {
            Require(Answers(lines, section, key) == Answers(fresh, section, key));
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    // Each edit walks all lines.
    Input input(data, std::min<std::size_t>(size, 2000));
    IniLines lines;
    // Headers that crowd behind one line.
    for (unsigned int i = input.Byte() % 64; i > 0; --i) {
        lines.Write("a", "[b]", "");
    }
    while (!input.IsEmpty()) {
        Lines const names = {input.Name(), input.Name(), input.Name()};
        Edit(lines, input.Byte() % 8, names);
        IniLines fresh;
        for (std::string const& line : All(lines)) {
            fresh.Append(line);
        }
        RequireAlike(lines, fresh, names);
        unsigned int const action = input.Byte() % 8;
        Lines const others = {input.Name(), input.Name(), input.Name()};
        Edit(lines, action, others);
        Edit(fresh, action, others);
        RequireAlike(lines, fresh, others);
    }
    return 0;
}
