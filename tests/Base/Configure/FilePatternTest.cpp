#include "Base/Configure/Pattern/FilePattern.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <tuple>

namespace {

using namespace Velmor;

std::string Repeated(std::string const& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

// Pattern, name, result.
constexpr char kRows[] = R"rows(
    LOG game.log 8      ^log game.log -1     ^a|m game -1         log$ a.log.log 9     log$ a.log.1 -1
    a|^g game 1         e^ game -1           a$b a$b -1           ^a* aaab 3           ^a*? aaab 0
    ^a+? aaab 1         ^a??b ab 2           ^a?b b 1             a+b b -1             ^.*b abab 4
    ^.*?b abab 2        ^(ab)*a ababa 5      ^(ab)+?a ababa 3     ^(a*)*$ aaa 3        ^(a*)+b aab 3
    ^(a|ab)(c|bcd)$ abcd 4   ^(a|b)+?b$ abb 3     ^(|a)+b ab 2    (a??)*b aab 3        ^((a)|b)*c abac 4
    ^[a-c]+ AbCd 3      ^[^a-c]+ xYbz 2      ^[X\x2d\]]+$ x-]X 4  ^[.*$(|]+$ .*$(| 5   ^[-a]+$ -a 2
    ^[a-]+$ -a 2        ^[\d_]+$ 2026_11 7   ^[A-z]$ m 1          ^[a-Z]$ M 1          [0-9][0-9]\.l a_22.log 6
    () a -1             a() a -1             a()*b ab 2           x|() x 1             a||b c 0            a|b|c|d c 1
    (|)c c 1    ^ab ABc 2    \^\$\(\)\.\[\]\*\+\?\|\\ ^$().[]*+?|\ 12  \x41\x7a aZ 2        a[|]b a|b 3
    * a -2   ^+ a -2    a|? a -2   (*a) a -2   a** a -2   a??? a -2   $* a -2   (a a -3   a) a -3   a] a -3
    [a a -5  [] a -5    [^] a -5   [b-a] a -5  [\d-z] a -5  [a-\d] a -5   \ a -6  \q a -6   \- a -6  \D a -6
    \x4 a -6  \xg0 a -6  [\w] a -6)rows";

TEST(FilePattern, AnswersTheOffsetBehindTheMatch) {
    std::istringstream rows(kRows);
    std::string pattern;
    std::string name;
    int result = 0;
    while (rows >> pattern >> name >> result) {
        EXPECT_EQ(MatchPattern(pattern, name), result) << pattern << " on " << name;
    }
    EXPECT_TRUE(rows.eof());
    std::tuple<char const*, char const*, int> const blanks[] = {
        {"", "", 0},
        {"^$", "", 0},
        {"a.c", "a\nc", 3},
        {"\xC4", "\xE4", -1},
        {"[^\\s]", " \t", -1},
        {"\\S\\s\\d", "a 7", 3},
        {"\\b\\f\\n\\r\\t\\v", "\b\f\n\r\t\v", 6},
    };
    for (auto const& [spaced, text, end] : blanks) {
        EXPECT_EQ(MatchPattern(spaced, text), end) << spaced << " on " << text;
    }
}

TEST(FilePattern, CapturesWhatTheLastTurnTook) {
    PatternCapture captures[3];
    EXPECT_EQ(MatchPattern("(a|(x))*-(b+)", "zaaa-bb", captures, 3), 7);
    EXPECT_EQ(captures[0].begin, 3);
    EXPECT_EQ(captures[0].length, 1);
    EXPECT_EQ(captures[1].begin, -1);
    EXPECT_EQ(captures[2].begin, 5);
    EXPECT_EQ(captures[2].length, 2);
    EXPECT_EQ(MatchPattern("(a)(b)", "ab", captures, 1), kPatternTooFewCaptures);
}

TEST(FilePattern, KeepsItsLimits) {
    EXPECT_EQ(MatchPattern(Repeated("(a)", 99), Repeated("a", 99)), 99);
    EXPECT_EQ(MatchPattern(Repeated("(", 99) + "a" + Repeated(")", 99), "a"), 1);
    EXPECT_EQ(MatchPattern(Repeated("(a)", 100), "a"), kPatternTooManyGroups);
    EXPECT_EQ(MatchPattern(Repeated("b|", 100) + "a[|]", "xa|"), 3);
    EXPECT_EQ(MatchPattern(Repeated("b|", 101), "b"), kPatternTooManyBars);
    EXPECT_EQ(MatchPattern("^" + Repeated("a?", 2047) + "b", "b"), 1);
    EXPECT_EQ(MatchPattern("^" + Repeated("a?", 2047) + "bc", "b"), kPatternInternalError);
    EXPECT_EQ(MatchPattern(Repeated("a", 4096) + "|*", "a"), kPatternNothingToRepeat);
    EXPECT_EQ(MatchPattern("a", Repeated("a", 4097)), kPatternInternalError);
}

// A way that failed once isn't tried again, whatever is stacked.
TEST(FilePattern, GivesTheTrueAnswerForHostilePatterns) {
    std::tuple<std::string, int, int> const rows[] = {
        {"(a*)*(a*)*b", 4095, 4096},
        {"a*a*a*a*a*b", 4095, 4096},
        {"^(.*?)*?b$", 4095, 4096},
        {"^(((a+)+)+)+b", 4095, 4096},
        {"^(a|aa)*?$", 4095, -1},
        {Repeated("(", 99) + "a" + Repeated("*)", 99) + "*b", 255, 256},
        {"^(a|aa)+?b", 4095, 4096},
        {Repeated("a?", 1000) + Repeated("a", 1000) + "b", 1000, 1001},
        {"^(" + Repeated("a??", 1000) + ")*b", 255, 256},
    };
    for (auto const& [pattern, letters, end] : rows) {
        EXPECT_EQ(MatchPattern(pattern, Repeated("a", letters) + "b"), end) << pattern.substr(0, 40);
    }
}

}  // namespace
