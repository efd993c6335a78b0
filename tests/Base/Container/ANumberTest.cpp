#include <VelmorCore/Object.h>
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "Base/Container/Number/RealText.h"

using Ubrix::ANumber;

TEST(ANumber, ConvertsByTheTable) {
    std::tuple<ANumber, bool, int, int, long long, double, char const*, char const*> const cases[] = {
        {ANumber(), false, 0, 0, 0, 0.0, "Unknown", ""},
        {true, true, 1, 1, 1, 1.0, "Bool", "true"},
        {static_cast<unsigned char>(200), true, 200, 200, 200, 200.0, "Byte", "200"},
        {300, true, 44, 300, 300, 300.0, "Int32", "300"},
        {-1LL, true, 255, -1, -1, -1.0, "Int64", "-1"},
        {0x100000000LL, true, 0, 0, 0x100000000LL, 4294967296.0, "Int64", "4294967296"},
        {1.5F, true, 1, 1, 1, 1.5, "Float", "1.500000"},
        {-2.9, true, 254, -2, -2, -2.9, "Double", "-2.900000"},
        {3e9, true, 0, INT_MIN, 3000000000LL, 3e9, "Double", "3000000000.000000"},
        {-1e30, true, 0, INT_MIN, LLONG_MIN, -1e30, "Double", "-1000000000000000019884624838656.000000"},
        {0.0, false, 0, 0, 0, 0.0, "Double", "0.000000"},
    };
    for (auto const& [number, boolean, byte, integer, wide, real, kind, text] : cases) {
        EXPECT_EQ(number.BoolValue(), boolean) << text;
        EXPECT_EQ(number.ByteValue(), byte) << text;
        EXPECT_EQ(number.IntValue(), integer) << text;
        EXPECT_EQ(number.LongLongValue(), wide) << text;
        EXPECT_EQ(number.DoubleValue(), real) << text;
        EXPECT_EQ(number.FloatValue(), static_cast<float>(real)) << text;
        EXPECT_STREQ(number.GetTypeString(), kind);
        EXPECT_STREQ(number.ToString().c_str(), text);
    }
    EXPECT_EQ(ANumber(std::nan("")).LongLongValue(), LLONG_MIN);
    EXPECT_EQ(ANumber(-1.7976931348623157e308).ToString().size(), 1 + 309 + 7);
}

TEST(ANumber, ChoosesItsKindFromText) {
    std::pair<char const*, char const*> const cases[] = {
        {"7", "Byte 7"},      {"-2147483647", "Int32 -2147483647"},
        {"255", "Byte 255"},  {"-2147483648", "Int64 -2147483648"},
        {"256", "Int32 256"}, {"-9999999999", "Int64 -2147483648"},
        {"-7", "Int32 -7"},   {"9999999999", "Int32 2147483647"},
        {"0x10", "Byte 16"},  {"1.", "Double 1.000000"},
        {"010", "Byte 8"},    {"a.b", "Double 0.000000"},
        {"abc", "Byte 0"},    {" -1.25e2x", "Double -125.000000"},
    };
    ANumber number;
    for (auto const& [text, expected] : cases) {
        EXPECT_TRUE(number.FromString(text));
        EXPECT_EQ(std::string(number.GetTypeString()) + " " + number.ToString().c_str(), expected) << text;
    }
    EXPECT_FALSE(number.FromString(nullptr));
    EXPECT_EQ(number.IntValue(), -125) << "kept";
}

TEST(ANumber, IsLooselyEqual) {
    std::tuple<ANumber, ANumber, bool> const cases[] = {
        {ANumber(), 0, true}, {ANumber(), 0.0F, true}, {ANumber(), false, true},  {2, true, true},
        {true, 0.5, true},    {1, 1LL, true},          {0.0000001, 0, true},      {-1e-7, 1e-7, false},
        {7, 7.0000001, true}, {7, 7.00001, false},     {0x100000001LL, 1, false}, {HUGE_VAL, HUGE_VAL, false},
    };
    for (auto const& [left, right, equal] : cases) {
        SCOPED_TRACE(left.ToString().c_str() + std::string(" ") + right.ToString().c_str());
        EXPECT_EQ(left == right, equal);
        EXPECT_EQ(right != left, !equal);
    }
    Ubrix::AString const text("1");
    EXPECT_FALSE(ANumber(1).IsEqual(&text));
    EXPECT_FALSE(ANumber(1).IsEqual(nullptr));
}

// The table holds what strtod gives in the "C" locale.
TEST(RealText, ReadsAsTheStandardDoes) {
    std::string const zeros(400, '0');
    std::vector<std::string> texts = {"",      "-0",      " \t+2.5",   "--1",      "+-1",     "1e",
                                      "1e+5",  "-inf",    "0x1.8p1",   "0x",       "0xg",     "1,5",
                                      "1e999", "-1e-999", "0x1p-9999", "0x1p9999", "4.9e-324"};
    texts.insert(texts.end(),
                 {"1" + zeros, "." + zeros + "1", "1" + zeros + "e-400", "." + zeros + "1e401",
                  "1.2345678901", "." + zeros + "1.5e500", "." + zeros + "1fe500", "0xinf", "0xap+-5p9"});
    for (auto const& text : texts) {
        double const expected = std::strtod(text.c_str(), nullptr);
        double const read = Ubrix::TextToReal(text.c_str());
        EXPECT_EQ(read, expected) << text;
        EXPECT_EQ(std::signbit(read), std::signbit(expected)) << text;
    }
    EXPECT_TRUE(std::isnan(Ubrix::TextToReal("nan")));
}
