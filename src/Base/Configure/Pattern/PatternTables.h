// Where the groups and alternatives of a file pattern are.
#pragma once

#include <string_view>

#include "Base/Configure/Pattern/PatternResult.h"

namespace Velmor {

// Filled once, read afterwards. Belongs to one thread; holds no memory but its own.
class PatternTables {
public:
    // A group's content: offsets of the pattern, without the brackets. Group 0 is the whole pattern.
    struct Group {
        int begin;
        int end;
        int firstBar;  // -1 for none
        int lastBar;
    };

    // Reads the pattern, checks all of it, and notes groups and bars. Answers 0 or a PatternResult.
    int Read(std::string_view pattern);

    // Groups in brackets.
    int GroupCount() const { return _groupCount - 1; }
    Group const& At(int group) const { return _groups[group]; }
    // The group whose content begins at `begin`.
    int GroupThatBeginsAt(int begin) const;
    int BarOffset(int bar) const { return _bars[bar].offset; }
    // The next bar of the same group; -1 for none.
    int NextBar(int bar) const { return _bars[bar].next; }

private:
    struct Bar {
        int offset;
        int next;
    };

    int TakeElement(std::string_view pattern, int& offset);
    int Open(int offset);
    int Close(int offset);
    int AddBar(int offset);

    Group _groups[kMaxPatternGroups + 1];
    Bar _bars[kMaxPatternBars];
    // The groups that are open, innermost last.
    int _open[kMaxPatternGroups + 1];
    int _groupCount = 0;
    int _barCount = 0;
    int _openCount = 0;
    // A quantifier may follow.
    bool _isRepeatable = false;
};

// The length of the quantifier at the front of `text`, its "?" for seldom included; 0 for none.
int QuantifierLength(std::string_view text);

}  // namespace Velmor
