#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

#include "Serializer/WYR/WyrError.h"
#include "Serializer/WYR/WyrIO.h"
#include "Serializer/WYR/WyrParse.h"
#include "Serializer/WYR/WyrStrptime.h"
#include "Serializer/WYR/WyrTypeUtil.h"

using namespace Ubrix;

namespace {

// 300 for BIG, -2 for MINUS, 55 as failure for any other.
int Macro(int* value, char const* name, void* context) {
    ++*static_cast<int*>(context);
    *value = std::strcmp(name, "BIG") == 0 ? 300 : -2;
    return std::strcmp(name, "BIG") == 0 || std::strcmp(name, "MINUS") == 0 ? 0 : 55;
}

template <class T>
using Parser = int (*)(T*, char*, unsigned*, T, WyrParse::Callback, void*);

// The code and the value, which begins as 77, the default being 9.
template <class T>
std::string Parsed(Parser<T> parser, std::string text) {
    T value = 77;
    int calls = 0;
    int const code = parser(&value, text.data(), nullptr, 9, Macro, &calls);
    return std::to_string(code) + " " + std::to_string(value);
}

template <class T>
void ExpectRange(Parser<T> parser, std::string const& below, std::string const& least,
                 std::string const& most, std::string const& above) {
    EXPECT_EQ(Parsed(parser, least), "0 " + least);
    EXPECT_EQ(Parsed(parser, most), "0 " + most);
    EXPECT_EQ(Parsed(parser, below), "-21 77");
    EXPECT_EQ(Parsed(parser, above), "-21 77");
    EXPECT_EQ(Parsed(parser, "99999999999999999999"), "-21 77");
}

template <class Text>
std::string Shown(int (*show)(char*, size_t, Text), Text value) {
    char text[32];
    EXPECT_EQ(show(text, sizeof text, value), 0);
    return text;
}

}  // namespace

TEST(WyrParse, HoldsEachTypesRange) {
    ExpectRange(WyrParse::parseByte, "-1", "0", "255", "256");
    ExpectRange(WyrParse::parseUInt8, "-1", "0", "255", "300");
    ExpectRange(WyrParse::parseChar, "-129", "-128", "127", "128");
    ExpectRange(WyrParse::parseInt8, "-129", "-128", "127", "128");
    ExpectRange(WyrParse::parseUInt16, "-1", "0", "65535", "65536");
    ExpectRange(WyrParse::parseInt16, "-32769", "-32768", "32767", "32768");
    ExpectRange(WyrParse::parseUInt32, "-1", "0", "4294967295", "4294967296");
    ExpectRange(WyrParse::parseInt32, "-2147483649", "-2147483648", "2147483647", "2147483648");
    EXPECT_EQ(Parsed(WyrParse::parseUInt64, "18446744073709551615"), "0 18446744073709551615");
    EXPECT_EQ(Parsed(WyrParse::parseUInt64, "-1"), "0 18446744073709551615");
    EXPECT_EQ(Parsed(WyrParse::parseInt64, "-9223372036854775808"), "0 -9223372036854775808");
    EXPECT_EQ(Parsed(WyrParse::parseInt64, "99999999999999999999"), "0 9223372036854775807");
    EXPECT_EQ(Parsed(WyrParse::parseUInt8, "BIG"), "-21 77");
    EXPECT_EQ(Parsed(WyrParse::parseUInt16, "MINUS"), "-21 77");
    EXPECT_EQ(Parsed(WyrParse::parseUInt16, "BIG"), "0 300");
    EXPECT_EQ(Parsed(WyrParse::parseUInt32, "MINUS"), "0 4294967294");
    EXPECT_EQ(Parsed(WyrParse::parseUInt64, "MINUS"), "0 18446744073709551614");
    EXPECT_EQ(Parsed(WyrParse::parseInt8, "OTHER"), "55 77");
}

TEST(WyrParse, ReadsTheFirstWordOfAScalar) {
    struct {
        char const* text;
        char const* result;
    } const cases[] = {{"0x10", "0 16"}, {"010", "0 8"},        {"12abc", "0 12"},
                       {"+7 8", "0 7"},  {"\r\n\t 5\n", "0 5"}, {"-", "-29 77"},
                       {"+x", "-29 77"}, {" \t\r\n", "0 9"},    {"", "0 9"}};
    for (auto const& c : cases) {
        EXPECT_EQ(Parsed(WyrParse::parseUInt8, c.text), c.result) << c.text;
    }
    char macro[] = "ABC";
    char blanks[] = "   ";
    char word[] = " 6";
    unsigned char value = 77;
    unsigned found = 5;
    EXPECT_EQ(WyrParse::parseUInt8(&value, macro, &found, 9, nullptr, nullptr), -30);
    EXPECT_EQ(found, 5U);
    EXPECT_EQ(WyrParse::parseUInt8(&value, blanks, &found, 9, nullptr, nullptr), 0);
    EXPECT_EQ(found, 0U);
    EXPECT_EQ(value, 77);
    EXPECT_EQ(WyrParse::parseUInt8(&value, word, &found, 9, nullptr, nullptr), 0);
    EXPECT_EQ(found, 1U);
    EXPECT_EQ(value, 6);
}

TEST(WyrParse, ReadsArraysAndTheirDefaults) {
    struct {
        char const* text;
        bool asksFound;
        int code;
        unsigned found;
        int values[3];
    } const cases[] = {{"1 2", false, 0, 99, {1, 2, 9}},     {"1 2", true, 0, 2, {1, 2, 77}},
                       {"1\t2\n3 4", true, 0, 3, {1, 2, 3}}, {"1 - 3", true, -29, 99, {1, 77, 77}},
                       {"", false, 0, 99, {9, 9, 9}},        {"1 300", true, -21, 99, {1, 77, 77}}};
    for (auto const& c : cases) {
        unsigned char values[] = {77, 77, 77};
        unsigned found = 99;
        std::string text = c.text;
        EXPECT_EQ(WyrParse::parseUInt8Array(values, 3, text.data(), c.asksFound ? &found : nullptr, 9,
                                            nullptr, nullptr),
                  c.code);
        EXPECT_EQ(found, c.found) << c.text;
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(values[i], c.values[i]) << c.text << " " << i;
        }
    }
    double reals[4];
    char numbers[] = " 1.5 -2e3x 0x1p4";
    EXPECT_EQ(WyrParse::parseDoubleArray(reals, 4, numbers, nullptr, 0.25), 0);
    EXPECT_EQ(std::vector<double>(reals, reals + 4), (std::vector<double>{1.5, -2000, 16, 0.25}));
    float real = 0;
    char noNumber[] = "abc";
    EXPECT_EQ(WyrParse::parseFloat(&real, noNumber, nullptr, 1), -29);
    wyr_date_t dates[3];
    char oneDate[] = "2024-01-02";
    EXPECT_EQ(WyrParse::parseDateArray(dates, 3, oneDate, nullptr, "2025-03-04"), 0);
    EXPECT_EQ(Shown(WyrTypeUtil::date2str, dates[0]), "2024-01-02");
    EXPECT_EQ(Shown(WyrTypeUtil::date2str, dates[2]), "2025-03-04");
    EXPECT_EQ(WyrParse::parseDate(dates, oneDate + 10, nullptr, nullptr), 0);
    EXPECT_EQ(dates[0], 0U);
    EXPECT_EQ(WyrParse::parseDate(dates, oneDate + 10, nullptr, "nonsense"), -14);
}

TEST(WyrTypeUtil, ChecksDatesAndTimes) {
    std::pair<char const*, char const*> const accepted[] = {
        {"2024-02-29", "2024-02-29"}, {"2000-02-29", "2000-02-29"},    {"2024-00-00", "2024-00-00"},
        {"-9999-1-1", "-9999-01-01"}, {"2024-01-02xyz", "2024-01-02"}, {" 7- +3- 9", "   7-03-09"}};
    for (auto const& [text, shown] : accepted) {
        wyr_date_t date = 0;
        EXPECT_EQ(WyrTypeUtil::str2date(&date, text), 0) << text;
        EXPECT_EQ(Shown(WyrTypeUtil::date2str, date), shown);
    }
    for (char const* text : {"2023-02-29", "1900-02-29", "2024-13-01", "2024-04-31", "2024-01-32",
                             "10000-1-1", "67560-1-1", "2024-257-1", "2024-1-257", "2024--1-1",
                             "4294969320-1-1", "99999999999999999999-1-1", "2024-01", ""}) {
        wyr_date_t date = 0;
        EXPECT_EQ(WyrTypeUtil::str2date(&date, text), -14) << text;
    }
    for (char const* text :
         {"12:60:00", "12:00:60", "1000:00:00", "-1000:0:0", "1:-1:0", "65537:0:0", "12:30"}) {
        wyr_time_t time = 0;
        EXPECT_EQ(WyrTypeUtil::str2time(&time, text), -13) << text;
    }
    wyr_time_t time = 0;
    EXPECT_EQ(WyrTypeUtil::str2time(&time, "25:00:59"), 0);
    EXPECT_EQ(time, 25U | 59U << 24);
    EXPECT_EQ(Shown(WyrTypeUtil::time2str, time), "25:00:59");
    wyr_datetime_t moment = 0;
    EXPECT_EQ(WyrTypeUtil::str2datetime(&moment, "2024-01-02 3:4:60"), -15);
    EXPECT_EQ(WyrTypeUtil::str2datetime(&moment, "2024-01-023:4:5"), -15);
    ASSERT_EQ(WyrTypeUtil::str2datetime(&moment, "2024-01-02 3:4:5"), 0);
    EXPECT_EQ(Shown(WyrTypeUtil::datetime2str, moment), "2024-01-02 03:04:05");
    char text[20];
    EXPECT_EQ(WyrTypeUtil::date2str(text, 0, 0), -19);
    EXPECT_EQ(WyrTypeUtil::date2str(nullptr, 5, 0), -19);
    EXPECT_EQ(WyrTypeUtil::datetime2str(text, 19, moment), -1);
    EXPECT_EQ(WyrTypeUtil::datetime2str(text, 20, moment), 0);

    long long seconds = 0;
    ASSERT_EQ(WyrTypeUtil::datetime2utc(&seconds, moment), 0);
    wyr_datetime_t back = 0;
    EXPECT_EQ(WyrTypeUtil::utc2datetime(&back, seconds), 0);
    EXPECT_EQ(back, moment);
    EXPECT_EQ(WyrTypeUtil::utc2datetime(&back, LLONG_MAX), -16);
    EXPECT_EQ(WyrTypeUtil::utc2datetime(&back, 1LL << 40), -15);
    EXPECT_EQ(WyrTypeUtil::datetime2utc(&seconds, moment | 60ULL << 48), -15);
}

TEST(WyrTypeUtil, ComparesByFieldsAndNotByThePackedNumber) {
    auto date = [](char const* text) {
        wyr_date_t value = 0;
        EXPECT_EQ(WyrTypeUtil::str2date(&value, text), 0);
        return value;
    };
    EXPECT_EQ(WyrTypeUtil::compareDate(date("2024-01-02"), date("2024-01-03")), -1);
    EXPECT_EQ(WyrTypeUtil::compareDate(date("2024-01-31"), date("-5-12-01")), 1);
    EXPECT_EQ(WyrTypeUtil::compareDate(date("2024-02-01"), date("2024-01-31")), 1);
    EXPECT_EQ(WyrTypeUtil::compareDateTime(date("2024-01-02") | 5ULL << 32, date("2024-01-02") | 6ULL << 32),
              -1);
    EXPECT_EQ(WyrTypeUtil::compareDateTime(date("2024-01-02"), date("2024-01-02")), 0);
}

TEST(WyrTypeUtil, ReadsAddresses) {
    std::pair<char const*, char const*> const accepted[] = {
        {"1.2.3.4", "1.2.3.4"},       {"0x7f.1", "127.0.0.1"}, {"010.0.0.1", "8.0.0.1"},
        {"1.2.65535", "1.2.255.255"}, {"16909060", "1.2.3.4"}, {"255.255.255.254", "255.255.255.254"},
        {"1.2.3.4 x", "1.2.3.4"}};
    for (auto const& [text, shown] : accepted) {
        wyr_ip_t ip = 0;
        EXPECT_EQ(WyrTypeUtil::str2ip(&ip, text), 0) << text;
        EXPECT_EQ(Shown(WyrTypeUtil::ip2str, ip), shown);
    }
    for (char const* text : {"1.2.65536", "4294967296", "255.255.255.255", "256.1.1.1", "1.2.3.4.5", "1.2.3.",
                             "1..2", "", "-1", "1.2.3.4x", "08.1.1.1", "0x", "99999999999999999999"}) {
        wyr_ip_t ip = 0;
        EXPECT_EQ(WyrTypeUtil::str2ip(&ip, text), -12) << text;
    }
}

TEST(WyrStrptime, FollowsItsConversions) {
    // Year, month, day, hour, minute, second, weekday and day of the year as struct tm has them.
    struct Case {
        char const *input, *format, *fields;  // null fields where it doesn't match
    } const cases[] = {{"thuRSDAY Feb", "%A %b", "0 1 0 0 0 0 4 0"},
                       {"Sun May  4 01:02:03 2025", "%c", "125 4 4 1 2 3 0 0"},
                       {"21", "%C", "200 0 0 0 0 0 0 0"},
                       {"02/03/69", "%D", "169 1 3 0 0 0 0 0"},
                       {"70", "%y", "70 0 0 0 0 0 0 0"},
                       {"12:05:06 PM", "%r", "0 0 0 12 5 6 0 0"},
                       {"12 am", "%I %p", "0 0 0 0 0 0 0 0"},
                       {"7:08", "%R", "0 0 0 7 8 0 0 0"},
                       {"2024:5:6", "%x", "124 4 6 0 0 0 0 0"},
                       {"3 100", "%u %j", "0 0 0 0 0 0 2 99"},
                       {"\n\t%5", "%n%t%%%w", "0 0 0 0 0 0 5 0"},
                       {"\n", "%t", nullptr},
                       {"5", "%Z%Ed", "0 0 5 0 0 0 0 0"},
                       {"Q%", "%Q%Q", "0 0 0 0 0 0 0 0"},
                       {"2024 3 10", "%Y %w %U", "124 0 0 0 0 0 3 72"},
                       {"2024 3 10", "%Y %w %W", "124 0 0 0 0 0 3 72"},
                       {"2024 3 10", "%Y %w %V", "124 0 0 0 0 0 3 73"},
                       {"2024 0 0", "%Y %w %U", "124 0 0 0 0 0 1 0"},
                       {"2147483647 6 99999999999", "%Y %w %U", "2147481747 0 0 0 0 0 6 2147483647"},
                       {"x", "%d", nullptr},
                       {"Xyz", "%b", nullptr},
                       {"5", "%d%", nullptr},
                       {"5", "%d%E", nullptr}};
    for (auto const& c : cases) {
        std::tm t{};
        char const* const end = wyrStrptime(c.input, c.format, &t);
        ASSERT_EQ(end == nullptr, c.fields == nullptr) << c.input;
        std::string fields;
        for (int field :
             {t.tm_year, t.tm_mon, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec, t.tm_wday, t.tm_yday}) {
            fields += (fields.empty() ? "" : " ") + std::to_string(field);
        }
        EXPECT_TRUE(c.fields == nullptr || fields == c.fields) << c.input << ": " << fields;
        EXPECT_TRUE(c.fields == nullptr || *end == '\0') << c.input;
    }
}

TEST(WyrIO, TellsFailuresOfFiles) {
    EXPECT_EQ(WyrInput().load("missing"), WyrError::WYR_ERR_OPEN_READ);
    EXPECT_EQ(WyrInput().load("."), WyrError::WYR_ERR_FILE_READ);
    std::FILE* file = std::fopen("empty", "w");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    file = std::fopen("empty", "r");
    WyrOutput printing(file);
    EXPECT_EQ(printing.printf("%d", 5), WyrError::WYR_ERR_FILE_WRITE);
    WyrOutput writing(file);
    EXPECT_EQ(writing.write("a", 1), WyrError::WYR_ERR_FILE_WRITE);
    std::fclose(file);
    WyrInput input;
    EXPECT_EQ(input.load("empty"), 0);
    EXPECT_STREQ(input.content(), "");
}
