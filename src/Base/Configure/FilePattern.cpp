#include "Base/Configure/FilePattern.h"

#include <climits>

#include "Base/Configure/PatternElement.h"
#include "Base/Configure/PatternTables.h"

namespace Velmor {

namespace {

// How often an element may come: from the quantifier behind it, of `length` bytes.
struct Repetition {
    int least;
    int most;
    bool isSeldom;
    int length;
};

// What remains to be matched once a group's turn is through: further turns, then what follows the group in
// its own surroundings. Stands on the stack of the call that entered the group.
struct Rest {
    int group;
    int turnBegin;  // where the turn under way began in the name
    int turns;      // begun, the one under way included
    Repetition repetition;
    int after;  // where the pattern goes on behind the group,
    int end;    // and where that alternative ends
    Rest const* outer;
};

// One search. `pattern` offsets and `name` offsets are ints throughout.
class Search {
public:
    Search(PatternTables const& tables, std::string_view pattern, std::string_view name)
        : _tables(tables), _pattern(pattern), _name(name) {}

    int Run();
    void CopyCaptures(PatternCapture* captures) const;

private:
    bool RunFrom(int start);
    bool Match(int at, int end, int place, Rest const* rest);
    bool MatchHere(int at, int end, int place, Rest const* rest);
    bool RepeatElement(std::string_view element, Repetition const& repetition, int after, int end, int place,
                       Rest const* rest);
    bool RepeatOften(std::string_view element, Repetition const& repetition, int after, int end, int place,
                     Rest const* rest);
    bool RepeatSeldom(std::string_view element, Repetition const& repetition, int after, int end, int place,
                      Rest const* rest);
    bool EnterGroup(int at, int end, int place, Rest const* rest);
    bool TakeTurns(Rest const& loop, int place);
    bool TakeTurn(Rest const& loop, int place);
    bool EndTurn(Rest const* rest, int place);
    bool MatchAlternatives(PatternTables::Group const& group, int place, Rest const* rest);

    std::string_view ElementAt(int at);
    Repetition RepetitionAt(int at, int end) const;
    bool ByteMatches(std::string_view element, int place) {
        return place < NameSize() &&
               ElementMatches(element, static_cast<unsigned char>(_name[static_cast<std::size_t>(place)]),
                              _steps);
    }
    char PatternByte(int at) const { return _pattern[static_cast<std::size_t>(at)]; }
    int NameSize() const { return static_cast<int>(_name.size()); }
    bool IsGivenUp() const { return _steps > kMaxPatternSteps || _isTooDeep; }

    PatternTables const& _tables;
    std::string_view const _pattern;
    std::string_view const _name;
    PatternCapture _captures[kMaxPatternGroups + 1];
    int _matchEnd = 0;
    int _steps = 0;
    int _depth = 0;
    bool _isTooDeep = false;
};

int Search::Run() {
    int const last = !_pattern.empty() && _pattern.front() == '^' ? 0 : NameSize();
    for (int start = 0; start <= last; ++start) {
        if (RunFrom(start)) {
            return _matchEnd;
        }
        if (IsGivenUp()) {
            return kPatternInternalError;
        }
    }
    return kPatternNoMatch;
}

bool Search::RunFrom(int start) {
    for (int group = 0; group <= _tables.GroupCount(); ++group) {
        _captures[group] = {-1, 0};
    }
    return MatchAlternatives(_tables.At(0), start, nullptr);
}

void Search::CopyCaptures(PatternCapture* captures) const {
    for (int group = 0; group < _tables.GroupCount(); ++group) {
        captures[group] = _captures[group + 1];
    }
}

bool Search::MatchAlternatives(PatternTables::Group const& group, int place, Rest const* rest) {
    int begin = group.begin;
    for (int bar = group.firstBar; bar >= 0; bar = _tables.NextBar(bar)) {
        if (Match(begin, _tables.BarOffset(bar), place, rest)) {
            return true;
        }
        begin = _tables.BarOffset(bar) + 1;
    }
    return Match(begin, group.end, place, rest);
}

// Whether the name from `place` on matches the pattern from `at` to `end` and everything in `rest`.
bool Search::Match(int at, int end, int place, Rest const* rest) {
    if (_depth == kMaxPatternDepth) {
        _isTooDeep = true;
    }
    if (IsGivenUp()) {
        return false;
    }
    ++_depth;
    bool const matches = MatchHere(at, end, place, rest);
    --_depth;
    return matches;
}

bool Search::MatchHere(int at, int end, int place, Rest const* rest) {
    while (at < end) {
        ++_steps;
        char const byte = PatternByte(at);
        if (byte == '(') {
            return EnterGroup(at, end, place, rest);
        }
        if (byte == '^' || byte == '$') {
            if (place != (byte == '^' ? 0 : NameSize())) {
                return false;
            }
            ++at;
            continue;
        }
        std::string_view const element = ElementAt(at);
        at += static_cast<int>(element.size());
        Repetition const repetition = RepetitionAt(at, end);
        if (repetition.length != 0) {
            return RepeatElement(element, repetition, at + repetition.length, end, place, rest);
        }
        if (!ByteMatches(element, place)) {
            return false;
        }
        ++place;
    }
    return EndTurn(rest, place);
}

std::string_view Search::ElementAt(int at) {
    std::string_view const rest = _pattern.substr(static_cast<std::size_t>(at));
    int length = 1;
    if (rest.front() == '[') {
        length = SetLength(rest, _steps);
    } else if (rest.front() == '\\') {
        length = EscapeLength(rest);
    }
    return rest.substr(0, static_cast<std::size_t>(length));
}

Repetition Search::RepetitionAt(int at, int end) const {
    int const length = at < end ? QuantifierLength(_pattern.substr(static_cast<std::size_t>(at))) : 0;
    if (length == 0) {
        return {1, 1, false, 0};
    }
    char const kind = PatternByte(at);
    return {kind == '+' ? 1 : 0, kind == '?' ? 1 : INT_MAX, length == 2, length};
}

bool Search::RepeatElement(std::string_view element, Repetition const& repetition, int after, int end,
                           int place, Rest const* rest) {
    return repetition.isSeldom ? RepeatSeldom(element, repetition, after, end, place, rest)
                               : RepeatOften(element, repetition, after, end, place, rest);
}

bool Search::RepeatOften(std::string_view element, Repetition const& repetition, int after, int end,
                         int place, Rest const* rest) {
    int count = 0;
    while (count < repetition.most && !IsGivenUp() && ByteMatches(element, place + count)) {
        ++count;
    }
    for (; count >= repetition.least && !IsGivenUp(); --count) {
        if (Match(after, end, place + count, rest)) {
            return true;
        }
        ++_steps;
    }
    return false;
}

bool Search::RepeatSeldom(std::string_view element, Repetition const& repetition, int after, int end,
                          int place, Rest const* rest) {
    for (int count = 0; !IsGivenUp(); ++count) {
        if (count >= repetition.least && Match(after, end, place + count, rest)) {
            return true;
        }
        if (count == repetition.most || !ByteMatches(element, place + count)) {
            return false;
        }
    }
    return false;
}

bool Search::EnterGroup(int at, int end, int place, Rest const* rest) {
    int const group = _tables.GroupThatBeginsAt(at + 1);
    int const behind = _tables.At(group).end + 1;
    Repetition const repetition = RepetitionAt(behind, end);
    Rest const loop{group, place, 0, repetition, behind + repetition.length, end, rest};
    return TakeTurns(loop, place);
}

bool Search::TakeTurns(Rest const& loop, int place) {
    if (loop.turns < loop.repetition.least) {
        return TakeTurn(loop, place);
    }
    bool const mayGoOn = loop.turns < loop.repetition.most;
    if (!loop.repetition.isSeldom && mayGoOn && TakeTurn(loop, place)) {
        return true;
    }
    if (Match(loop.after, loop.end, place, loop.outer)) {
        return true;
    }
    return loop.repetition.isSeldom && mayGoOn && TakeTurn(loop, place);
}

bool Search::TakeTurn(Rest const& loop, int place) {
    PatternTables::Group const& group = _tables.At(loop.group);
    if (group.begin == group.end) {
        return false;
    }
    Rest turn = loop;
    turn.turnBegin = place;
    ++turn.turns;
    return MatchAlternatives(group, place, &turn);
}

// A turn of the innermost group has matched up to `place`; without a group, the whole pattern has.
bool Search::EndTurn(Rest const* rest, int place) {
    if (rest == nullptr) {
        _matchEnd = place;
        return true;
    }
    PatternCapture const before = _captures[rest->group];
    _captures[rest->group] = {rest->turnBegin, place - rest->turnBegin};
    // A turn that took nothing would do so for ever.
    bool const matches = place == rest->turnBegin ? Match(rest->after, rest->end, place, rest->outer)
                                                  : TakeTurns(*rest, place);
    if (!matches) {
        _captures[rest->group] = before;
    }
    return matches;
}

}  // namespace

int MatchPattern(std::string_view pattern, std::string_view name, PatternCapture* captures,
                 int captureCount) {
    if (pattern.size() >= INT_MAX || name.size() >= INT_MAX) {
        return kPatternInternalError;
    }
    PatternTables tables;
    if (int const problem = tables.Read(pattern); problem != 0) {
        return problem;
    }
    if (captures != nullptr && captureCount < tables.GroupCount()) {
        return kPatternTooFewCaptures;
    }
    Search search(tables, pattern, name);
    int const result = search.Run();
    if (captures != nullptr && result >= 0) {
        search.CopyCaptures(captures);
    }
    return result;
}

}  // namespace Velmor
