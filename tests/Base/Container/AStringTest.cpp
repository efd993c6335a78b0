#include <VelmorCore/Object.h>
#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

using namespace Ubrix;

TEST(AString, IsNeverWithoutText) {
    EXPECT_NE(AString().data(), nullptr);
    AString text(nullptr);
    EXPECT_STREQ(text.c_str(), "");
    text = std::string(200, 'x').c_str();
    text = "";
    EXPECT_STREQ(text.c_str(), "");
    text = nullptr;
    EXPECT_NE(text.data(), nullptr);
    for (size_t const size : {0U, 1U, 63U, 64U, 65U, 127U, 128U, 200U}) {
        std::string const expected(size, 'a');
        AString const taken(expected.c_str());
        text = AString(taken);
        EXPECT_EQ((text + taken + "z").c_str(), expected + expected + "z");
    }
}

TEST(AString, CountsZeroBytesWhereToldTo) {
    AString const zeros("ab\0cd", 5);
    EXPECT_TRUE(zeros == "ab");
    AString all("x");
    all += zeros;
    EXPECT_STREQ(all.Dump("").c_str(), "78,61,62,00,63,64");
    AString cut("x");
    cut.append(zeros).append(nullptr).append("yz", 1).append("yz", 0);
    cut += '\0';
    cut += '!';
    cut += cut;
    cut.append(cut.c_str() + 8);
    EXPECT_EQ(std::string(cut.c_str(), static_cast<size_t>(cut.size())), "xaby!xaby!y!");
    EXPECT_STREQ(AString("\x01\xAB").Dump(nullptr).c_str(), "0x01,0xab");
    ANumber const one(1);
    EXPECT_FALSE(AString("1").IsEqual(&one));
    EXPECT_FALSE(zeros.IsEqual(nullptr));
}

TEST(AString, TellsNumbersFromText) {
    std::tuple<char const*, bool, bool, long long, double> const cases[] = {
        {"12", true, false, 12, 12}, {"-12", true, false, -12, -12}, {"007", true, false, 7, 7},
        {"1.9", true, true, 1, 1.9}, {".5", true, true, 0, 0.5},     {"5.", true, true, 5, 5},
        {"-.", true, true, 0, 0},    {"1-2.5", false, true, 0, 0},   {"", false, false, 0, 0},
        {"-", false, false, 0, 0},   {".", false, false, 0, 0},      {"+5", false, false, 0, 0},
        {" 5", false, false, 0, 0},  {"1e3", false, false, 0, 0},    {"1.2.3", false, false, 0, 0},
    };
    for (auto const& [text, isNumeric, isReal, integer, number] : cases) {
        EXPECT_EQ(AString(text).IsNumberic(), isNumeric) << text;
        EXPECT_EQ(AString(text).IsReal(), isReal) << text;
        EXPECT_EQ(AString(text).AsInt64(), integer) << text;
        EXPECT_DOUBLE_EQ(AString(text).AsDouble(), number) << text;
    }
    EXPECT_EQ(AString("9223372036854775808").AsInt64(), LLONG_MAX);
    EXPECT_FALSE(AString("4294967296").AsBoolean());
}

TEST(AString, ComparesEnds) {
    std::tuple<char const*, char const*, bool, bool> const cases[] = {
        {"abc", "", false, false},    {"abc", "abc", true, true},   {"ab", "abc", false, false},
        {"abc", "ab", true, false},   {"abc", "bc", false, true},   {"", "a", false, false},
        {nullptr, "a", false, false}, {"a", nullptr, false, false},
    };
    for (auto const& [text, part, starts, ends] : cases) {
        EXPECT_EQ(AString::StartWith(text, part), starts) << text << "," << part;
        EXPECT_EQ(AString::EndWith(text, part), ends) << text << "," << part;
    }
}

TEST(AString, SplitsLikeStrsep) {
    std::tuple<char const*, char const*, char const*> const cases[] = {
        {"a,,b", ",", "<a><><b>"}, {"a;b,c", ";,", "<a><b><c>"}, {"", ",", "<>"},
        {"a,", ",", "<a><>"},      {"abc", "", "<abc>"},         {",", ",", "<><>"},
    };
    AArray pieces;
    for (auto const& [source, delimiters, joined] : cases) {
        // The source is the first element of what grows.
        pieces.RemoveAll();
        pieces.Add(source);
        EXPECT_TRUE(AString::Split(&pieces, pieces.FirstCString(), delimiters));
        std::string all;
        for (int i = 1; i < pieces.Count(); ++i) {
            all += std::string("<") + pieces.CStringAtIndex(i) + ">";
        }
        EXPECT_EQ(all, joined) << source;
    }
    EXPECT_FALSE(AString::Split(&pieces, nullptr, ","));
    EXPECT_FALSE(AString::Split(&pieces, "a", nullptr));
}

TEST(AString, PrintsAndReadsIntegersToTheirBounds) {
    EXPECT_STREQ(int2str(INT_MIN).c_str(), "-2147483648");
    EXPECT_STREQ(ll2str(LLONG_MIN).c_str(), "-9223372036854775808");
    EXPECT_STREQ(ull2str(ULLONG_MAX).c_str(), "18446744073709551615");
    std::pair<char const*, int> const cases[] = {
        {" +12x", 12}, {"-3", -3}, {"x", 7}, {"0x10", 0}, {"010", 10}, {"99999999999", INT_MAX},
    };
    for (auto const& [text, value] : cases) {
        int read = 7;
        str2int(text, &read);
        EXPECT_EQ(read, value) << text;
    }
}

TEST(AStringBuilder, KeepsItsTextTerminated) {
    AStringBuilder builder;
    std::string expected;
    for (int i = 0; i < 100; ++i) {
        builder += AString("abcde");
        ASSERT_EQ(builder.ToString(), expected += "abcde");
    }
    builder.Append(builder.ToString());
    builder = builder.ToString();
    EXPECT_EQ(builder.ToString(), expected + expected);
    std::unique_ptr<AObject> const clone(builder.Clone());
    EXPECT_TRUE(builder.IsEqual(clone.get()));
    builder = AString("new");
    builder.Append(static_cast<AString const*>(nullptr));
    EXPECT_STREQ(builder.ToString(), "new");
    EXPECT_FALSE(builder.IsEqual(clone.get()));
    AStringBuilder const empty;
    AStringBuilder blockless(empty);
    EXPECT_EQ(blockless.ToString(), nullptr);
    blockless.Append("");
    EXPECT_STREQ(blockless.ToString(), "");
}
