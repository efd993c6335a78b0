// What is asked of a file pattern before it counts as one, and what is answered where it isn't. Constants.
#pragma once

namespace Velmor {

// What a match answers when it is no offset. Every one of them means that the name doesn't match.
enum PatternResult : int {
    kPatternNoMatch = -1,
    kPatternNothingToRepeat = -2,
    kPatternUnbalancedBrackets = -3,
    kPatternInternalError = -4,  // pattern or name are longer than the limits below
    kPatternBadSet = -5,
    kPatternBadEscape = -6,
    kPatternTooFewCaptures = -7,
    kPatternTooManyBars = -8,
    kPatternTooManyGroups = -9,
};

constexpr int kMaxPatternGroups = 99;
constexpr int kMaxPatternBars = 100;
// In bytes.
constexpr int kMaxPatternLength = 4096;
constexpr int kMaxPatternName = 4096;

}  // namespace Velmor
