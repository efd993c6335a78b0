// The patterns by which the server names files.
#pragma once

#include <string_view>

namespace Velmor {

// What a match answers when it is no offset. Every one of them means that the name doesn't match.
enum PatternResult : int {
    kPatternNoMatch = -1,
    kPatternNothingToRepeat = -2,
    kPatternUnbalancedBrackets = -3,
    kPatternInternalError = -4,  // the search was given up: too many steps, or nested too deeply
    kPatternBadSet = -5,
    kPatternBadEscape = -6,
    kPatternTooFewCaptures = -7,
    kPatternTooManyBars = -8,
    kPatternTooManyGroups = -9,
};

// Where a group of the pattern stands in the name; begin -1 for a group that took no part.
struct PatternCapture {
    int begin;
    int length;
};

constexpr int kMaxPatternGroups = 99;
constexpr int kMaxPatternBars = 100;
// Elements tried in one search, over all its starts: about a millisecond's worth.
constexpr int kMaxPatternSteps = 100000;
// How deeply the search may nest. A step down costs some 400 bytes of stack.
constexpr int kMaxPatternDepth = 1000;

// Searches `name` for `pattern`, regardless of the case of ASCII letters, and answers the offset behind the
// leftmost match, or a PatternResult. An empty pattern matches anything. Backtracks, within the bounds above;
// all its tables stand on the stack.
//
//   ^            the start of the name; at the pattern's start it keeps the search to offset 0
//   $            the end of the name
//   .            any byte
//   * + ?        repetition of the element before, as often as possible; *? +? ?? as seldom
//   [ab] [a-z]   a set; [^ab] what is not in it. Escapes count in it, and other metacharacters don't
//   ( ) |        a group, alternatives. An empty group matches nowhere
//   \S \s \d     not blank, blank, decimal digit
//   \b \f \n \r \t \v \xHH   that byte; a backslash before a metacharacter: that character
//
// `captures`, unless null, takes what each group matched, in the order of the opening brackets;
// `captureCount` entries, no fewer than the pattern has groups. They are written on a match only.
int MatchPattern(std::string_view pattern, std::string_view name, PatternCapture* captures = nullptr,
                 int captureCount = 0);

}  // namespace Velmor
