#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "Serializer/WYR/WyrBuf.h"
#include "Serializer/WYR/WyrBufUtil.h"
#include "Serializer/WYR/WyrError.h"
#include "Serializer/WYR/WyrTypeUtil.h"

using namespace Ubrix;

TEST(WyrError, TellsTheTextOfItsCode) {
    EXPECT_STREQ(WyrError::errorText(5), "no error");
    EXPECT_STREQ(WyrError::errorText(-37), "null array shouldn't be packed");
    EXPECT_STREQ(WyrError::errorText(INT_MIN), "unknown error");
}

TEST(WyrBuf, NeverWritesBeyondItsRoom) {
    char memory[8] = "";
    WyrBuf buf(memory, 4);
    EXPECT_EQ(buf.textize("%s", "abcd"), -1);
    EXPECT_EQ(buf.position, 0U);
    EXPECT_EQ(buf.textize("%s", "abc"), 0);
    EXPECT_EQ(buf.writeBytes(nullptr, 0), -8);
    EXPECT_EQ(buf.writeChar('d'), 0);
    EXPECT_EQ(buf.writeChar('e'), -1);
    EXPECT_STREQ(memory, "abcd");
    WyrBuf nothing(nullptr, 100);
    EXPECT_EQ(nothing.writeChar('a'), -1);
    WyrBuf owner(static_cast<char*>(std::malloc(4)), 4);
    owner.own();
}

TEST(WyrBuf, TurnsBytesIntoHexadecimalTextAndBack) {
    char memory[2] = {'\x0A', '\xFF'};
    char text[5] = "";
    size_t used = 0;
    WyrBuf buf(memory, 2);
    EXPECT_EQ(buf.dumpHex(text, 4, &used), -1);
    EXPECT_EQ(buf.dumpHex(text, 0, &used), -1);
    EXPECT_EQ(buf.dumpHex(text, 5, &used), 0);
    EXPECT_STREQ(text, "0AFF");
    EXPECT_EQ(used, 5U);
    struct {
        char const* text;
        int code;
        size_t used, length;
        char const* bytes;
    } const cases[] = {{"0aFF", 0, 4, 2, "\x0A\xFF"}, {"00112233", 0, 4, 2, "\x00\x11"},
                       {"7f", 0, 2, 1, "\x7F."},      {"0", -17, 99, 2, ".."},
                       {"0g", -18, 0, 2, ".."},       {"41@0", -18, 2, 2, "A."}};
    for (auto const& c : cases) {
        std::memcpy(memory, "..", 2);
        WyrBuf target(memory, 2);
        used = 99;
        EXPECT_EQ(target.loadHex(c.text, std::strlen(c.text), &used), c.code) << c.text;
        EXPECT_EQ(used, c.used) << c.text;
        EXPECT_EQ(target.length, c.length) << c.text;
        EXPECT_EQ(std::memcmp(memory, c.bytes, 2), 0) << c.text;
    }
}

TEST(WyrBufUtil, PrintsEachKindOfField) {
    char memory[256];
    unsigned short const wide[] = {'A', 0};
    wyr_datetime_t moment = 0;
    ASSERT_EQ(WyrTypeUtil::str2datetime(&moment, "-5-1-2 100:4:5"), 0);
    auto const date = static_cast<wyr_date_t>(moment);
    auto const time = static_cast<wyr_time_t>(moment >> 32);
    auto const print = [&](size_t size) {
        WyrBuf buf(memory, size);
        int results[] = {WyrBufUtil::printName(buf, 1, ';', "n", true),
                         WyrBufUtil::printName(buf, 0, ';', "n", 4294967295U, true),
                         WyrBufUtil::printName(buf, 0, ';', "n", 2U, false),
                         WyrBufUtil::printArrayName(buf, -1, "a", 0),
                         WyrBufUtil::printValue(buf, 0, ';', "v", 7U, "%d %s", 5, "x"),
                         WyrBufUtil::printString(buf, 0, ';', "s", 1U, "%s"),
                         WyrBufUtil::printWideString(buf, 2, ';', "w", 0U, wide),
                         WyrBufUtil::printIp(buf, 0, ';', "i", 3U, 0),
                         WyrBufUtil::printDate(buf, 0, ';', "d", 1U, date),
                         WyrBufUtil::printTime(buf, 0, ';', "t", 1U, time),
                         WyrBufUtil::printDateTime(buf, 0, ';', "m", moment),
                         WyrBufUtil::printDateTime(buf, 0, ';', "m", 1U, moment)};
        return *std::min_element(std::begin(results), std::end(results));
    };
    ASSERT_EQ(print(sizeof memory), 0);
    EXPECT_STREQ(
        memory,
        "    n;n[4294967295];n[2]: a[0 : -1]:v[7]: 5 x;s[1]: %s;        w[0]:  0x0041 0x0000;i[3]: 0.0.0.0;"
        "d[1]:   -5-01-02;t[1]: 100:04:05;m:   -5-01-02 100:04:05;m[1]:   -5-01-02 100:04:05;");
    size_t const whole = std::strlen(memory);
    EXPECT_EQ(print(whole + 1), 0);
    for (size_t size = 0; size <= whole; ++size) {
        EXPECT_EQ(print(size), -1) << size;
    }
}
