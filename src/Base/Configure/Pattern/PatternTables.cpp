#include "Base/Configure/Pattern/PatternTables.h"

#include <algorithm>

#include "Base/Configure/Pattern/PatternElement.h"

namespace Velmor {

int QuantifierLength(std::string_view text) {
    if (text.empty() || (text[0] != '*' && text[0] != '+' && text[0] != '?')) {
        return 0;
    }
    return text.size() > 1 && text[1] == '?' ? 2 : 1;
}

int PatternTables::Read(std::string_view pattern) {
    int const size = static_cast<int>(pattern.size());
    Open(0);
    int result = 0;
    for (int offset = 0; offset < size && result == 0;) {
        result = TakeElement(pattern, offset);
    }
    if (result == 0 && _openCount != 1) {
        return kPatternUnbalancedBrackets;
    }
    _groups[0].end = size;
    return result;
}

int PatternTables::TakeElement(std::string_view pattern, int& offset) {
    std::string_view const rest = pattern.substr(static_cast<std::size_t>(offset));
    if (int const length = QuantifierLength(rest); length != 0) {
        bool const repeats = _isRepeatable;
        offset += length;
        _isRepeatable = false;
        return repeats ? 0 : kPatternNothingToRepeat;
    }
    int length = 1;
    _isRepeatable = false;
    switch (rest.front()) {
        case '(':
            return Open(++offset);
        case ')':
            return Close(offset++);
        case '|':
            return AddBar(offset++);
        case ']':
            return kPatternUnbalancedBrackets;
        case '^':
        case '$':
            ++offset;
            return 0;
        case '[':
            length = SetLength(rest);
            break;
        case '\\':
            length = EscapeLength(rest);
            length = length != 0 ? length : kPatternBadEscape;
            break;
        default:
            break;
    }
    if (length < 0) {
        return length;
    }
    offset += length;
    _isRepeatable = true;
    return 0;
}

int PatternTables::Open(int offset) {
    if (_groupCount > kMaxPatternGroups) {
        return kPatternTooManyGroups;
    }
    _groups[_groupCount] = {offset, offset, -1, -1};
    _open[_openCount++] = _groupCount++;
    return 0;
}

int PatternTables::Close(int offset) {
    if (_openCount == 1) {
        return kPatternUnbalancedBrackets;
    }
    _groups[_open[--_openCount]].end = offset;
    _isRepeatable = true;
    return 0;
}

int PatternTables::AddBar(int offset) {
    if (_barCount == kMaxPatternBars) {
        return kPatternTooManyBars;
    }
    Group& group = _groups[_open[_openCount - 1]];
    (group.firstBar < 0 ? group.firstBar : _bars[group.lastBar].next) = _barCount;
    group.lastBar = _barCount;
    _bars[_barCount++] = {offset, -1};
    return 0;
}

int PatternTables::GroupThatBeginsAt(int begin) const {
    // Groups are in the order of their opening brackets; the whole pattern, at 0, is no candidate.
    Group const* const found =
        std::lower_bound(_groups + 1, _groups + _groupCount, begin,
                         [](Group const& group, int wanted) { return group.begin < wanted; });
    return static_cast<int>(found - _groups);
}

}  // namespace Velmor
