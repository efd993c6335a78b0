// A file pattern as a row of small steps.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Base/Configure/Pattern/PatternTables.h"

namespace Velmor {

struct PatternStep {
    enum class Kind : unsigned char {
        Byte,     // takes one byte that `element` means
        AtStart,  // goes on at the name's start,
        AtEnd,    // at its end
        Fork,     // goes on at `first`, or else at `second`
        Enter,    // begins a group's first turn
        Leave,    // ends a group's turn
        Fail,
        Done,
    };
    Kind kind;
    // Leave: another turn is taken only if nothing else will do.
    bool isSeldom;
    int first;
    int second;
    // Enter and Leave: the group's number, from 0; and if the group may repeat, how many groups that may
    // repeat are open inside it, itself included; else 0.
    int group;
    int level;
    // Leave: the step behind the group's Enter.
    int turn;
    std::string_view element;
};

// Reads a pattern and translates it. A step goes on at the next one unless it says otherwise. No step but
// Leave goes back, except to a Byte. Immutable.
class PatternProgram {
public:
    explicit PatternProgram(std::string_view pattern);
    PatternProgram(PatternProgram const&) = delete;
    PatternProgram& operator=(PatternProgram const&) = delete;

    // 0, or the PatternResult of a pattern that is none; it has no steps then.
    int Problem() const { return _problem; }
    std::vector<PatternStep> const& Steps() const { return _steps; }
    int GroupCount() const { return _tables.GroupCount(); }
    // Groups that may repeat, one inside another.
    int Depth() const { return _depth; }
    // Only a match from the name's start counts.
    bool IsAnchored() const { return !_pattern.empty() && _pattern.front() == '^'; }

private:
    struct Repetition;

    int Here() const { return static_cast<int>(_steps.size()); }
    int Add(PatternStep::Kind kind);
    void SetFork(int fork, int inner, bool isSeldom);
    void AddAlternatives(PatternTables::Group const& group, int level);
    void AddSequence(int at, int end, int level);
    int AddElement(int at, int end);
    int AddGroup(int at, int end, int level);
    Repetition RepetitionAt(int at, int end) const;
    std::string_view ElementAt(int at) const;

    std::string const _pattern;
    PatternTables _tables;
    int _problem;
    int _depth = 0;
    std::vector<PatternStep> _steps;
};

}  // namespace Velmor
