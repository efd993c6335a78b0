#include "Base/Configure/Pattern/PatternProgram.h"

#include <algorithm>
#include <climits>

#include "Base/Configure/Pattern/PatternElement.h"

namespace Velmor {

using Kind = PatternStep::Kind;

// What the quantifier behind an element or a group says, and its length.
struct PatternProgram::Repetition {
    bool mayBeNone;
    bool mayBeMany;
    bool isSeldom;
    int length;
};

PatternProgram::PatternProgram(std::string_view pattern) : _pattern(pattern.substr(0, kMaxPatternLength)) {
    _problem = pattern.size() < INT_MAX ? _tables.Read(pattern) : kPatternInternalError;
    if (_problem == 0 && pattern.size() > kMaxPatternLength) {
        _problem = kPatternInternalError;
    }
    if (_problem == 0) {
        AddAlternatives(_tables.At(0), 0);
        Add(Kind::Done);
    }
}

int PatternProgram::Add(Kind kind) {
    _steps.push_back({kind, false, 0, 0, 0, 0, 0, {}});
    return Here() - 1;
}

// A fork between what is repeated and what follows, which begins here.
void PatternProgram::SetFork(int fork, int inner, bool isSeldom) {
    PatternStep& step = _steps[static_cast<std::size_t>(fork)];
    step.first = isSeldom ? Here() : inner;
    step.second = isSeldom ? inner : Here();
}

void PatternProgram::AddAlternatives(PatternTables::Group const& group, int level) {
    std::vector<int> ends;
    int begin = group.begin;
    for (int bar = group.firstBar; bar >= 0; bar = _tables.NextBar(bar)) {
        int const fork = Add(Kind::Fork);
        AddSequence(begin, _tables.BarOffset(bar), level);
        ends.push_back(Add(Kind::Fork));
        SetFork(fork, fork + 1, false);
        begin = _tables.BarOffset(bar) + 1;
    }
    AddSequence(begin, group.end, level);
    for (int const end : ends) {
        SetFork(end, Here(), false);
    }
}

void PatternProgram::AddSequence(int at, int end, int level) {
    while (at < end) {
        char const byte = _pattern[static_cast<std::size_t>(at)];
        if (byte == '(') {
            at = AddGroup(at, end, level);
        } else if (byte == '^' || byte == '$') {
            Add(byte == '^' ? Kind::AtStart : Kind::AtEnd);
            ++at;
        } else {
            at = AddElement(at, end);
        }
    }
}

int PatternProgram::AddElement(int at, int end) {
    std::string_view const element = ElementAt(at);
    at += static_cast<int>(element.size());
    Repetition const repetition = RepetitionAt(at, end);
    int const before = repetition.mayBeNone ? Add(Kind::Fork) : -1;
    int const byte = Add(Kind::Byte);
    _steps.back().element = element;
    if (repetition.mayBeMany) {
        int const again = Add(Kind::Fork);
        SetFork(again, byte, repetition.isSeldom);
    }
    if (repetition.mayBeNone) {
        SetFork(before, byte, repetition.isSeldom);
    }
    return at + repetition.length;
}

int PatternProgram::AddGroup(int at, int end, int level) {
    int const number = _tables.GroupThatBeginsAt(at + 1);
    PatternTables::Group const& group = _tables.At(number);
    int const behind = group.end + 1;
    Repetition const repetition = RepetitionAt(behind, end);
    int const inside = level + (repetition.mayBeMany ? 1 : 0);
    _depth = std::max(_depth, inside);

    int const before = repetition.mayBeNone ? Add(Kind::Fork) : -1;
    int const enter = Add(Kind::Enter);
    if (group.begin == group.end) {
        Add(Kind::Fail);
    }
    AddAlternatives(group, inside);
    int const leave = Add(Kind::Leave);
    for (int const edge : {enter, leave}) {
        PatternStep& step = _steps[static_cast<std::size_t>(edge)];
        step.group = number - 1;
        step.level = repetition.mayBeMany ? inside : 0;
        step.isSeldom = repetition.isSeldom;
        step.turn = enter + 1;
    }
    if (repetition.mayBeNone) {
        SetFork(before, enter, repetition.isSeldom);
    }
    return behind + repetition.length;
}

PatternProgram::Repetition PatternProgram::RepetitionAt(int at, int end) const {
    std::string_view const rest = std::string_view(_pattern).substr(static_cast<std::size_t>(at));
    int const length = at < end ? QuantifierLength(rest) : 0;
    if (length == 0) {
        return {false, false, false, 0};
    }
    return {rest.front() != '+', rest.front() != '?', length == 2, length};
}

std::string_view PatternProgram::ElementAt(int at) const {
    std::string_view const rest = std::string_view(_pattern).substr(static_cast<std::size_t>(at));
    int length = 1;
    if (rest.front() == '[') {
        length = SetLength(rest);
    } else if (rest.front() == '\\') {
        length = EscapeLength(rest);
    }
    return rest.substr(0, static_cast<std::size_t>(length));
}

}  // namespace Velmor
