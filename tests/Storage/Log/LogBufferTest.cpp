#include "Storage/Log/log_buffer.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "Readers/Files.h"
#include "Readers/LogBlockDecoder.h"
#include "Support/FakeClock.h"

namespace {

using namespace Ubrix;

// A key pair for these tests only: the private half is 1, so the public half is the curve's generator.
constexpr char kPrivateKey[] = "0000000000000000000000000000000000000000000000000000000000000001";
constexpr char kPublicKey[] =
    "79be667ef9dcbbac55a06295ce870b07029bfcdb2dce28d959f2815b16f81798"
    "483ada7726a3c4655da4fbfc0e1108a8fd17b448a68554199c47d08ffb10d4b8";

bool Put(LogBuffer& buffer, std::string const& text) {
    return buffer.Write(text.data(), text.size());
}

std::string Flushed(LogBuffer& buffer) {
    AutoBuffer out;
    buffer.Flush(out);
    return {out.Ptr(), out.Length()};
}

template <typename Buffer>
std::string Walk(Buffer& buffer) {
    char read[4] = {};
    buffer.Write("abcdef", 6);
    buffer.Seek(-4, FromEnd);
    buffer.Read(read, 3);
    buffer.Move(2);
    buffer.Write("XYZ", 3);  // over the last byte, and on
    buffer.Move(-3);
    buffer.Seek(-0x7FFFFFFFFFFFFFFFLL - 1, FromPosition);
    buffer.Seek(0x7FFFFFFFFFFFFFFFLL, FromPosition);
    return read + std::string(buffer.Ptr(), buffer.Length()) + std::to_string(buffer.Pos());
}

TEST(LogBuffer, TheTwoBuffersMoveAlikeUpToTheEndOfTheirMemory) {
    AutoBuffer grown(8);
    EXPECT_EQ(Walk(grown), "cdebcdeXYZ7");
    char memory[7];
    PtrBuffer fixed(memory, 0, sizeof memory);
    EXPECT_EQ(Walk(fixed), "cdebcde4");
    grown.AddCapacity(129);
    EXPECT_EQ(std::string(grown.Ptr() + 12, grown.Capacity() - 12), std::string(136 - 12, '\0'));
    EXPECT_DEATH(grown.Length(2, 1), "_nPos <= _nLenght");
    EXPECT_DEATH(grown.AddCapacity(AutoBuffer::kLongest + 1), "_len <= 20 \\* 1024 \\* 1024");
    EXPECT_DEATH(PtrBuffer(memory, 10, 9), "length_ <= max_length_");
}

TEST(LogBuffer, EveryKindOfBlockReadsBack) {
    std::string const badDigit = std::string(kPublicKey).replace(100, 1, "g");
    std::string const shortKey(kPublicKey, 127);
    std::pair<char const*, unsigned int> const kinds[] = {
        {kPublicKey, 6}, {kPublicKey, 7}, {nullptr, 8}, {shortKey.c_str(), 9}, {badDigit.c_str(), 9}};
    for (auto const& [key, start] : kinds) {
        SCOPED_TRACE(start);
        bool const compress = start % 2 == 1;
        std::vector<char> memory(4000);
        LogBuffer buffer(memory.data(), memory.size(), compress, key);
        EXPECT_EQ(Flushed(buffer), "");
        ::Test::FakeClock clock({2036, 3, 5, 23, 50, 0, 0});
        std::string text;
        for (std::size_t length : {5U, 5U, 5U, 1U, 17U, 300U}) {
            text += std::string(length, 'q');
            ASSERT_TRUE(Put(buffer, std::string(length, 'q')));
        }
        clock.SetLocal({2036, 3, 6, 0, 10, 0, 0});
        std::string file = Flushed(buffer);
        ASSERT_TRUE(Put(buffer, "second"));
        file += Flushed(buffer);
        std::vector<::Test::LogBlock> const blocks = ::Test::DecodeBlocks(file, kPrivateKey);
        ASSERT_EQ(blocks.size(), 2U);
        EXPECT_EQ(blocks[0].text, text);
        EXPECT_EQ(blocks[1].text, "second");
        EXPECT_EQ(blocks[0].beginHour, 23U);
        EXPECT_EQ(blocks[0].endHour, 0U);
        EXPECT_EQ(blocks[0].sequence, compress ? 1U : 0U);
        EXPECT_EQ(blocks[1].sequence, compress ? 2U : 0U);
        EXPECT_EQ(blocks[0].publicKey == std::string(64, '\0'), start > 7);
        EXPECT_EQ(blocks[1].start, start);
        // At once: plain even under a key.
        AutoBuffer once;
        ASSERT_TRUE(buffer.Write("at once", 7, once));
        EXPECT_EQ(std::string(once.Ptr() + 73, once.Length() - 73), std::string("at once\0", 8));
        EXPECT_EQ(once.Ptr()[0], start < 8 ? 6 : 8);
    }
}

TEST(LogBuffer, SequencesSkipZero) {
    LogCrypt crypt(nullptr);
    for (int i = 1; i <= 65535; ++i) {
        ASSERT_EQ(crypt.NextSequence(true), i);
    }
    EXPECT_EQ(crypt.NextSequence(true), 1);
}

// What runs past the memory is cut, and the block stays whole.
TEST(LogBuffer, FullMemoryCutsText) {
    for (bool compress : {false, true}) {
        std::string memory(400, '#');
        LogBuffer buffer(memory.data(), 200, compress, kPublicKey);
        std::string text;
        for (int i = 0; i < 200; ++i) {
            text += static_cast<char>(' ' + i * 37 % 91);
            Put(buffer, text);
        }
        ::Test::LogBlock const block = ::Test::DecodeBlocks(Flushed(buffer), kPrivateKey).at(0);
        EXPECT_EQ(block.body.size(), 200U - 74);
        EXPECT_EQ(block.text.substr(0, 6), "  E Ej");
        EXPECT_EQ(memory.substr(200), std::string(200, '#'));
    }
}

TEST(LogBuffer, MemoryOfAnEarlierRunComesOut) {
    std::tuple<bool, char const*, std::string> const runs[] = {
        {false, nullptr, "earlier now"}, {true, nullptr, "earlier "}, {false, kPublicKey, "earlier "}};
    for (auto const& [compress, key, text] : runs) {
        std::vector<char> memory(500);
        ASSERT_TRUE(
            Put(*std::make_unique<LogBuffer>(memory.data(), memory.size(), compress, key), "earlier "));
        LogBuffer buffer(memory.data(), memory.size(), compress, key);
        Put(buffer, "now");
        EXPECT_EQ(::Test::DecodeBlocks(Flushed(buffer), kPrivateKey).at(0).text, text);
        EXPECT_TRUE(Put(buffer, "next"));
    }
    // A body that just fits, its end byte included, and such as can't be the memory's.
    std::tuple<std::string, std::size_t> const lengths[] = {
        {{126, 0, 0, 0}, 200}, {{127, 0, 0, 0}, 0}, {std::string(4, '\xFF'), 0}};
    for (auto const& [length, flushed] : lengths) {
        std::string memory = "\x8" + std::string(4, '\5') + length + std::string(191, '\xFF');
        LogBuffer buffer(memory.data(), memory.size(), false, nullptr);
        EXPECT_EQ(Flushed(buffer).size(), flushed);
    }
}

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

TEST(LogHourScan, FindsTheRangeOfWholeHours) {
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
