#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

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
void ExpectRange(Parser<T> parser, char const* below, std::string const& least, std::string const& most,
                 char const* above) {
    EXPECT_EQ(Parsed(parser, least), "0 " + least);
    EXPECT_EQ(Parsed(parser, most), "0 " + most);
    for (char const* text : {below, above, "99999999999999999999"}) {
        EXPECT_EQ(Parsed(parser, text), "-21 77") << text;
    }
}

template <class Text>
std::string Shown(int (*show)(char*, size_t, Text), Text value) {
    char text[32];
    EXPECT_EQ(show(text, sizeof text, value), 0);
    return text;
}

wyr_date_t Date(char const* text) {
    wyr_date_t date = 0;
    EXPECT_EQ(WyrTypeUtil::str2date(&date, text), 0) << text;
    return date;
}

}  // namespace

TEST(WyrParse, HoldsEachTypesRange) {
    ExpectRange(WyrParse::parseUInt8, "-1", "0", "255", "256");
    ExpectRange(WyrParse::parseChar, "-129", "-128", "127", "128");
    ExpectRange(WyrParse::parseInt16, "-32769", "-32768", "32767", "32768");
    ExpectRange(WyrParse::parseUInt32, "-1", "0", "4294967295", "4294967296");
    ExpectRange(WyrParse::parseInt32, "-2147483649", "-2147483648", "2147483647", "2147483648");
    EXPECT_EQ(Parsed(WyrParse::parseUInt64, "-1"), "0 18446744073709551615");
    EXPECT_EQ(Parsed(WyrParse::parseInt64, "99999999999999999999"), "0 9223372036854775807");
    EXPECT_EQ(Parsed(WyrParse::parseUInt8, "BIG"), "-21 77");
    EXPECT_EQ(Parsed(WyrParse::parseUInt16, "MINUS"), "-21 77");
    EXPECT_EQ(Parsed(WyrParse::parseUInt32, "MINUS"), "0 4294967294");
    EXPECT_EQ(Parsed(WyrParse::parseUInt64, "MINUS"), "0 18446744073709551614");
    EXPECT_EQ(Parsed(WyrParse::parseInt8, "OTHER"), "55 77");
}

TEST(WyrParse, ReadsTheFirstWordOfAScalar) {
    std::pair<char const*, char const*> const cases[] = {
        {"0x10", "0 16"},      {"010", "0 8"},  {"12abc", "0 12"}, {"+7 x", "0 7"},
        {"\r\n\t 5\n", "0 5"}, {"-", "-29 77"}, {"+x", "-29 77"},  {" \t\r\n", "0 9"}};
    for (auto const& [text, result] : cases) {
        EXPECT_EQ(Parsed(WyrParse::parseUInt8, text), result) << text;
    }
    // The code, the value and the count of words.
    auto const asked = [](std::string text) {
        unsigned char value = 77;
        unsigned found = 5;
        int const code = WyrParse::parseUInt8(&value, text.data(), &found, 9, nullptr, nullptr);
        return std::vector<long>{code, value, found};
    };
    EXPECT_EQ(asked("ABC"), (std::vector<long>{-30, 77, 5}));
    EXPECT_EQ(asked("   "), (std::vector<long>{0, 77, 0}));
    EXPECT_EQ(asked(" 6"), (std::vector<long>{0, 6, 1}));
}

TEST(WyrParse, ReadsArraysAndTheirDefaults) {
    // The code, the count of words and the values.
    auto const parsed = [](std::string text, bool asksFound) {
        unsigned char v[] = {77, 77, 77};
        unsigned found = 99;
        unsigned* const asked = asksFound ? &found : nullptr;
        int const code = WyrParse::parseUInt8Array(v, 3, text.data(), asked, 9, nullptr, nullptr);
        return std::vector<long>{code, found, v[0], v[1], v[2]};
    };
    EXPECT_EQ(parsed("1 2", false), (std::vector<long>{0, 99, 1, 2, 9}));
    EXPECT_EQ(parsed("1 2", true), (std::vector<long>{0, 2, 1, 2, 77}));
    EXPECT_EQ(parsed("1\t2\n3 4", true), (std::vector<long>{0, 3, 1, 2, 3}));
    EXPECT_EQ(parsed("1 - 3", true), (std::vector<long>{-29, 99, 1, 77, 77}));
    double reals[5];
    char numbers[] = " 1.5 -2e3x 0x1p4 0xinf";
    EXPECT_EQ(WyrParse::parseDoubleArray(reals, 5, numbers, nullptr, 0.25), 0);
    EXPECT_EQ(std::vector<double>(reals, reals + 5), (std::vector<double>{1.5, -2000, 16, 0, 0.25}));
    float real = 0;
    EXPECT_EQ(WyrParse::parseFloat(&real, std::string("abc").data(), nullptr, 1), -29);
    wyr_date_t dates[3];
    char oneDate[] = "2024-01-02";
    EXPECT_EQ(WyrParse::parseDateArray(dates, 3, oneDate, nullptr, "2025-03-04"), 0);
    EXPECT_EQ(dates[0], Date("2024-01-02"));
    EXPECT_EQ(dates[2], Date("2025-03-04"));
    EXPECT_EQ(WyrParse::parseDate(dates, oneDate + 10, nullptr, "nonsense"), -14);
    EXPECT_EQ(dates[0], Date("2024-01-02"));
    EXPECT_EQ(WyrParse::parseDate(dates, oneDate + 10, nullptr, nullptr), 0);
    EXPECT_EQ(dates[0], 0U);
    wyr_ip_t ip = 0;
    EXPECT_EQ(WyrParse::parseIp(&ip, std::string("1.2.3.4 ").data(), nullptr, nullptr), 0);
    EXPECT_EQ(Shown(WyrTypeUtil::ip2str, ip), "1.2.3.4");
    wyr_time_t time = 0;
    EXPECT_EQ(WyrParse::parseTime(&time, std::string().data(), nullptr, "1:2:3"), 0);
    EXPECT_EQ(Shown(WyrTypeUtil::time2str, time), "01:02:03");
}

TEST(WyrTypeUtil, ChecksDatesAndTimes) {
    std::pair<char const*, char const*> const accepted[] = {
        {"2024-02-29", "2024-02-29"}, {"2000-02-29", "2000-02-29"},    {"2024-00-00", "2024-00-00"},
        {"-9999-1-1", "-9999-01-01"}, {"2024-01-02xyz", "2024-01-02"}, {" 7- +3- 9", "   7-03-09"}};
    for (auto const& [text, shown] : accepted) {
        EXPECT_EQ(Shown(WyrTypeUtil::date2str, Date(text)), shown);
    }
    wyr_date_t date = 77;
    for (char const* text : {"2023-02-29", "1900-02-29", "2024-13-01", "2024-04-31", "2024-11-31",
                             "2024-01-32", "10000-1-1", "67560-1-1", "2024-257-1", "2024-1-257", "2024--1-1",
                             "4294969320-1-1", "99999999999999999999-1-1", "2024-01"}) {
        EXPECT_EQ(WyrTypeUtil::str2date(&date, text), -14) << text;
    }
    for (char const* text : {"12:60:00", "12:00:60", "1000:0:0", "-1000:0:0", "1:-1:0", "65537:0:0"}) {
        EXPECT_EQ(WyrTypeUtil::str2time(&date, text), -13) << text;
    }
    EXPECT_EQ(date, 77U);
    wyr_time_t time = 0;
    EXPECT_EQ(WyrTypeUtil::str2time(&time, "25:00:59"), 0);
    EXPECT_EQ(time, 25U | 59U << 24);
    wyr_datetime_t moment = 0;
    EXPECT_EQ(WyrTypeUtil::str2datetime(&moment, "2024-01-02 3:4:60"), -15);
    ASSERT_EQ(WyrTypeUtil::str2datetime(&moment, "2024-01-02 3:4:5"), 0);
    EXPECT_EQ(Shown(WyrTypeUtil::datetime2str, moment), "2024-01-02 03:04:05");
    char text[19];
    EXPECT_EQ(WyrTypeUtil::date2str(text, 0, 0), -19);
    EXPECT_EQ(WyrTypeUtil::date2str(nullptr, 5, 0), -19);
    EXPECT_EQ(WyrTypeUtil::date2str(text, 10, date), -1);
    EXPECT_EQ(WyrTypeUtil::datetime2str(text, 19, moment), -1);

    long long seconds = 0;
    ASSERT_EQ(WyrTypeUtil::datetime2utc(&seconds, moment), 0);
    wyr_datetime_t back = 0;
    EXPECT_EQ(WyrTypeUtil::utc2datetime(&back, seconds), 0);
    EXPECT_EQ(back, moment);
    EXPECT_EQ(WyrTypeUtil::utc2datetime(&back, LLONG_MAX), -16);
    // In a year that a calendar of 32 bits holds counted from 1900, but not from 0.
    EXPECT_EQ(WyrTypeUtil::utc2datetime(&back, 67768036000000000), -16);
    EXPECT_EQ(WyrTypeUtil::utc2datetime(&back, 1LL << 40), -15);
    EXPECT_EQ(WyrTypeUtil::datetime2utc(&seconds, moment | 60ULL << 48), -15);
}

TEST(WyrTypeUtil, ComparesByFieldsAndNotByThePackedNumber) {
    EXPECT_EQ(WyrTypeUtil::compareDate(Date("2024-01-02"), Date("2024-01-03")), -1);
    EXPECT_EQ(WyrTypeUtil::compareDate(Date("2024-01-31"), Date("-5-12-01")), 1);
    EXPECT_EQ(WyrTypeUtil::compareDate(Date("2024-02-01"), Date("2024-01-31")), 1);
    wyr_datetime_t const five = Date("2024-01-02") | 5ULL << 32;
    EXPECT_EQ(WyrTypeUtil::compareDateTime(five, Date("2024-01-02") | 6ULL << 32), -1);
    EXPECT_EQ(WyrTypeUtil::compareDateTime(Date("2024-01-01") | 6ULL << 32, five), -1);
    EXPECT_EQ(WyrTypeUtil::compareDateTime(five, five), 0);
}

TEST(WyrTypeUtil, ReadsAddresses) {
    std::pair<char const*, char const*> const accepted[] = {
        {"1.2.3.4 x", "1.2.3.4"},     {"0x7f.1", "127.0.0.1"}, {"010.0.0.1", "8.0.0.1"},
        {"1.2.65535", "1.2.255.255"}, {"16909060", "1.2.3.4"}, {"255.255.255.254", "255.255.255.254"}};
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
    struct {
        char const *input, *format;
        std::vector<int> fields;  // none where it doesn't match
    } const cases[] = {{"thuRSDAY Feb", "%A %b", {0, 1, 0, 0, 0, 0, 4, 0}},
                       {"Sun May  4 01:02:03 2025", "%c", {125, 4, 4, 1, 2, 3, 0, 0}},
                       {"21 7:08 3 100", "%C %R %u %j", {200, 0, 0, 7, 8, 0, 2, 99}},
                       {"02/03/69", "%D", {169, 1, 3, 0, 0, 0, 0, 0}},
                       {"70 12 am", "%y %I %p", {70, 0, 0, 0, 0, 0, 0, 0}},
                       {"12:05:06 PM", "%r", {0, 0, 0, 12, 5, 6, 0, 0}},
                       {"2024:5:6", "%x", {124, 4, 6, 0, 0, 0, 0, 0}},
                       {"\n\t%5Q%6", "%n%t%%%w%Q%Q%Z%Ed", {0, 0, 6, 0, 0, 0, 5, 0}},
                       {"2024 3 10", "%Y %w %U", {124, 0, 0, 0, 0, 0, 3, 72}},
                       {"2024 3 10", "%Y %w %W", {124, 0, 0, 0, 0, 0, 3, 72}},
                       {"2024 3 10", "%Y %w %V", {124, 0, 0, 0, 0, 0, 3, 73}},
                       {"2024 0 0", "%Y %w %U", {124, 0, 0, 0, 0, 0, 1, 0}},
                       {"2147483647 6 99999999999", "%Y %w %U", {2147481747, 0, 0, 0, 0, 0, 6, 2147483647}},
                       {"\n", "%t", {}},
                       {"x", "%d", {}},
                       {"Xyz", "%b", {}},
                       {"5", "%d%E", {}}};
    for (auto const& c : cases) {
        std::tm t{};
        char const* const end = wyrStrptime(c.input, c.format, &t);
        std::vector<int> const fields{t.tm_year, t.tm_mon, t.tm_mday, t.tm_hour,
                                      t.tm_min,  t.tm_sec, t.tm_wday, t.tm_yday};
        EXPECT_EQ(end == nullptr ? std::vector<int>() : fields, c.fields) << c.input;
        EXPECT_STREQ(end == nullptr ? "" : end, "") << c.input;
    }
}

TEST(WyrIO, TellsFailuresOfFiles) {
    EXPECT_EQ(WyrInput().load("missing"), WyrError::WYR_ERR_OPEN_READ);
    EXPECT_EQ(WyrInput().load("."), WyrError::WYR_ERR_FILE_READ);
    std::FILE* file = std::fopen("empty", "w");
    file = std::freopen("empty", "r", file);
    EXPECT_EQ(WyrOutput(file).printf("%d", 5), WyrError::WYR_ERR_FILE_WRITE);
    EXPECT_EQ(WyrOutput(file).write("a", 1), WyrError::WYR_ERR_FILE_WRITE);
    std::fclose(file);
}
