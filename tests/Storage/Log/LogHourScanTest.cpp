#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "Storage/Log/log_buffer.h"
#include "Support/Files.h"

namespace {

using namespace Ubrix;

// A block of 80 bytes, or with a body length other than its own.
std::string Block(int begin, int end, char start = 8,
                  std::string const& length = std::string("\6\0\0\0", 4)) {
    return start + std::string("\1\0", 2) + static_cast<char>(begin) + static_cast<char>(end) + length +
           std::string(64, 'k') + std::string("123456\0", 7);
}

std::string Found(std::string const& file, int beginHour, int endHour) {
    ::Test::WriteWholeFile("blocks", file);
    unsigned long begin = 77;
    unsigned long end = 77;
    std::string error;
    bool const found = LogBuffer::FindHourRange("blocks", beginHour, endHour, begin, end, error);
    EXPECT_EQ(found, error.empty());
    return found ? std::to_string(begin) + "-" + std::to_string(end) : error;
}

constexpr char kRanOut[] = "ftell(file) + __GetHeaderLen() + sizeof(kMagicEnd)) > file_size error";

TEST(LogHourScanTest, FindsTheRangeOfWholeHours) {
    std::string const day = Block(5, 5, 6) + Block(6, 7, 7) + Block(9, 9, 9);
    std::string const junk(100, '\x9');
    // Longer than what is read at a time.
    std::string const longer = Block(4, 4, 8, std::string("\x06\x20\0\0", 4)).substr(0, 79) +
                               std::string(0x2000, '\7') + std::string(1, '\0');
    std::string const huge = Block(1, 1, 8, "\xFF\xFF\xFF\xFF");
    std::tuple<std::string, int, int, std::string> const rows[] = {
        {day, 5, 6, "0-80"},
        {day, 5, 7, "0-160"},
        {day, 6, 9, "80-160"},
        {day, 7, 8, "80-160"},
        {day, 8, 24, "160-240"},
        {day, 10, 11, std::string(kRanOut) + "begintpos:0, endpos:0, filesize:240."},
        {Block(23, 0) + Block(1, 1), 1, 24, "80-160"},
        {Block(5, 5) + junk + Block(6, 6), 6, 7, "180-260"},
        {junk + Block(6, 6) + junk, 6, 7, "100-280"},
        {Block(5, 5) + Block(6, 6).substr(0, 79), 5, 6, "0-159"},
        {longer + Block(5, 5) + Block(6, 6), 5, 6, "8272-8352"},
        {longer.substr(0, 8271), 4, 5, std::string(kRanOut) + "begintpos:0, endpos:0, filesize:8271."},
        {huge + Block(3, 3), 3, 4, "80-160"},
        {Block(-128, 127) + Block(99, 99), 3, 4, "0-80"},
        {"", 1, 2, std::string(kRanOut) + "begintpos:0, endpos:0, filesize:0."},
        {day, 5, 5, "NULL == _logPath || _endHour <= _beginHour, 5, 5"},
    };
    for (auto const& [file, begin, end, found] : rows) {
        EXPECT_EQ(Found(file, begin, end), found);
    }
    unsigned long position = 0;
    std::string error;
    EXPECT_FALSE(LogCrypt::FindHourRange("missing", 1, 2, position, position, error));
    EXPECT_EQ(error, "open file fail:No such file or directory");
}

}  // namespace
