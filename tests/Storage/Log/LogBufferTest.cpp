#include "Storage/Log/log_buffer.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "Support/FakeClock.h"
#include "Support/LogBlockDecoder.h"

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

TEST(LogBufferTest, TheTwoBuffersMoveAlikeUpToTheEndOfTheirMemory) {
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

TEST(LogBufferTest, EveryKindOfBlockReadsBack) {
    std::string const badDigit = std::string(kPublicKey).replace(100, 1, "g");
    std::string const shortKey(kPublicKey, 127);
    std::tuple<char const*, unsigned int, bool> const kinds[] = {
        {kPublicKey, 6, false},      {kPublicKey, 7, true},       {nullptr, 8, false},
        {shortKey.c_str(), 9, true}, {badDigit.c_str(), 9, true},
    };
    for (auto const& [key, start, compress] : kinds) {
        SCOPED_TRACE(start);
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
        EXPECT_EQ(blocks[0].text + blocks[1].text, text + "second");
        EXPECT_EQ(blocks[0].beginHour * 100 + blocks[0].endHour, 2300U);
        EXPECT_EQ(blocks[0].sequence + 10 * blocks[1].sequence, compress ? 21U : 0U);
        EXPECT_EQ(blocks[0].publicKey == std::string(64, '\0'), start > 7);
        EXPECT_EQ(blocks[1].start, start);
        // At once: plain even under a key.
        AutoBuffer once;
        ASSERT_TRUE(buffer.Write("at once", 7, once));
        EXPECT_EQ(std::string(once.Ptr() + 73, once.Length() - 73), std::string("at once\0", 8));
        EXPECT_EQ(once.Ptr()[0], start < 8 ? 6 : 8);
    }
}

TEST(LogBufferTest, SequencesSkipZero) {
    LogCrypt crypt(nullptr);
    for (int i = 1; i <= 65535; ++i) {
        ASSERT_EQ(crypt.NextSequence(true), i);
    }
    EXPECT_EQ(crypt.NextSequence(true), 1);
}

// What runs past the memory is cut, and the block stays whole.
TEST(LogBufferTest, FullMemoryCutsText) {
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

TEST(LogBufferTest, MemoryOfAnEarlierRunComesOut) {
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

}  // namespace
