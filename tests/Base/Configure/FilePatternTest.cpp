#include "Base/Configure/FilePattern.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace {

using namespace Velmor;

std::string Repeated(std::string const& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

TEST(FilePatternTest, AnswersTheOffsetBehindTheMatch) {
    struct {
        char const* pattern;
        char const* name;
        int result;
    } const rows[] = {
        // Anchors and literals, regardless of case.
        {"", "", 0},
        {"", "abc", 0},
        {"LOG", "game.log", 8},
        {"^log", "game.log", -1},
        {"^a|m", "game", -1},
        {"log$", "a.log.log", 9},
        {"log$", "a.log.1", -1},
        {"a|^g", "game", 1},
        {"e^", "game", -1},
        {"^$", "", 0},
        {"a$b", "a$b", -1},
        {"\xC4", "\xE4", -1},
        {"a.c", "a\nc", 3},
        // Repetition.
        {"^a*", "aaab", 3},
        {"^a*?", "aaab", 0},
        {"^a+?", "aaab", 1},
        {"^a??b", "ab", 2},
        {"^a?b", "b", 1},
        {"a+b", "b", -1},
        {"^.*b", "abab", 4},
        {"^.*?b", "abab", 2},
        {"^(ab)*a", "ababa", 5},
        {"^(ab)*?a", "ababa", 1},
        {"^(a|ab)(c|bcd)$", "abcd", 4},
        {"^(a*)*$", "aaa", 3},
        {"^(a*)+b", "aab", 3},
        {"^(a|b)+?b$", "abb", 3},
        {"^(|a)+b", "ab", 2},
        {"(a?"
         "?)*b",
         "aab", 3},
        {"^((a)|b)*c", "abac", 4},
        // Sets.
        {"^[a-c]+", "AbCd", 3},
        {"^[^a-c]+", "xYbz", 2},
        {"^[X\\x2d\\]]+$", "x-]", 3},
        {"^[.*$(|]+$", ".*$(|", 5},
        {"^[-a]+$", "-a", 2},
        {"^[a-]+$", "-a", 2},
        {"^[\\d_]+$", "2026_11", 7},
        {"[^\\s]", " \t", -1},
        {"[0-9][0-9]\\.log", "game_22.log", 11},
        {"^[A-z]$", "m", 1},
        {"^[a-Z]$", "M", 1},
        {"[^\\S]", "a b", 2},
        // Groups, bars and escapes.
        {"()", "a", -1},
        {"a()", "a", -1},
        {"a()*b", "ab", 2},
        {"x|()", "x", 1},
        {"a||b", "c", 0},
        {"(|)c", "c", 1},
        {"\\^\\$\\(\\)\\.\\[\\]\\*\\+\\?\\|\\\\", "^$().[]*+?|\\", 12},
        {"\\x41\\x7a", "aZ", 2},
        {"\\S\\s\\d", "a 7", 3},
        {"\\b\\f\\n\\r\\t\\v", "\b\f\n\r\t\v", 6},
        {"\\s", "\x1F", -1},
        // What is malformed.
        {"*", "a", -2},
        {"^+", "a", -2},
        {"a|?", "a", -2},
        {"(*a)", "a", -2},
        {"a**", "a", -2},
        {"a???", "a", -2},
        {"$*", "a", -2},
        {"(a", "a", -3},
        {"a)", "a", -3},
        {"a]", "a", -3},
        {"[a", "a", -5},
        {"[]", "a", -5},
        {"[^]", "a", -5},
        {"[b-a]", "a", -5},
        {"[\\d-z]", "a", -5},
        {"[a-\\d]", "a", -5},
        {"\\", "a", -6},
        {"\\q", "a", -6},
        {"\\-", "a", -6},
        {"\\x4", "a", -6},
        {"\\xg0", "a", -6},
        {"[\\w]", "a", -6},
        {"a\\D", "x", -6},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(MatchPattern(row.pattern, row.name), row.result) << row.pattern << " on " << row.name;
    }
}

TEST(FilePatternTest, CapturesWhatTheLastTurnTook) {
    PatternCapture captures[3];
    EXPECT_EQ(MatchPattern("(a|(x))*-(b+)", "zaaa-bb", captures, 3), 7);
    int const expected[3][2] = {{3, 1}, {-1, 0}, {5, 2}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(captures[i].begin, expected[i][0]) << i;
        EXPECT_EQ(captures[i].length, expected[i][1]) << i;
    }
    EXPECT_EQ(MatchPattern("(a)(b)", "ab", captures, 1), kPatternTooFewCaptures);
}

TEST(FilePatternTest, KeepsItsLimits) {
    EXPECT_EQ(MatchPattern(Repeated("(a)", 99), Repeated("a", 99)), 99);
    EXPECT_EQ(MatchPattern(Repeated("(", 99) + "a" + Repeated(")", 99), "a"), 1);
    EXPECT_EQ(MatchPattern(Repeated("(a)", 100), "a"), kPatternTooManyGroups);
    EXPECT_EQ(MatchPattern(Repeated("b|", 100) + "a[|]", "xa|"), 3);
    EXPECT_EQ(MatchPattern(Repeated("b|", 101), "b"), kPatternTooManyBars);
    // The longest name that a file can bear.
    EXPECT_EQ(MatchPattern("^((a))*$", Repeated("a", 255)), 255);
    EXPECT_EQ(MatchPattern("^.*_.*\\.log$", Repeated("a_", 125) + ".log"), 254);
}

TEST(FilePatternTest, GivesHostilePatternsUp) {
    std::string const deep = Repeated("a?", 500000);
    std::string const set = "[" + Repeated("b", 1000000) + "]*c";
    std::string const long1 = Repeated("a", 255);
    std::string const patterns[] = {
        "(a*)*(a*)*b", "(a|a)*(a|aa)+b", "^(((a*)*)*)*b", "a*a*a*a*a*b", "(.*?)*?x.*x", deep + "b", set};
    for (std::string const& pattern : patterns) {
        auto const begin = std::chrono::steady_clock::now();
        EXPECT_EQ(MatchPattern(pattern, long1), kPatternInternalError) << pattern.substr(0, 20);
        // Far more than it takes, for sanitizers and busy machines.
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
    }
    EXPECT_EQ(MatchPattern("(a)*b", Repeated("a", 100000)), kPatternInternalError);
}

}  // namespace
