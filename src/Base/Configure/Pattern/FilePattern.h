// The patterns by which the server names files.
#pragma once

#include <memory>
#include <string_view>

#include "Base/Configure/Pattern/PatternResult.h"

namespace Velmor {

// Where the name matched a group of the pattern; begin -1 for a group that took no part.
struct PatternCapture {
    int begin;
    int length;
};

// A pattern, read once and matched with any number of names. It searches a name for the pattern, regardless
// of the case of ASCII letters. An empty pattern matches anything. One thread at a time.
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
// The match is the one that trying every way in its order finds first, but no step of the pattern is looked
// at twice for a byte of the name, once for each loop around it: what a match costs is bounded by
// 2 * kMaxPatternLength steps times the name's length times the depth of the loops. It takes a bit a step and
// a byte of the name for that, some 4 MiB at most, and a stack that doesn't depend on either.
class FilePattern {
public:
    explicit FilePattern(std::string_view pattern);
    ~FilePattern();
    FilePattern(FilePattern&&) noexcept;
    FilePattern(FilePattern const&) = delete;
    FilePattern& operator=(FilePattern const&) = delete;

    // 0, or the PatternResult that each match answers since the pattern is none.
    int Problem() const;
    // The offset behind the leftmost match, or a PatternResult.
    // `captures`, unless null, takes what each group matched, in the order of the opening brackets;
    // `captureCount` entries, no fewer than the pattern has groups. They are written on a match only.
    int Match(std::string_view name, PatternCapture* captures = nullptr, int captureCount = 0);

private:
    class Search;

    std::unique_ptr<Search> _search;
};

// The same for one name.
int MatchPattern(std::string_view pattern, std::string_view name, PatternCapture* captures = nullptr,
                 int captureCount = 0);

}  // namespace Velmor
