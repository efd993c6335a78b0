#include "Storage/Log/log_buffer.h"

#include <gtest/gtest.h>

#include <string>
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

std::string Text(AutoBuffer const& buffer) {
    return {buffer.Ptr(), buffer.Length()};
}

bool Put(LogBuffer& buffer, std::string const& text) {
    return buffer.Write(text.data(), text.size());
}

std::string Flushed(LogBuffer& buffer) {
    AutoBuffer out;
    buffer.Flush(out);
    return Text(out);
}

template <typename Buffer>
std::string Walk(Buffer& buffer) {
    char read[4] = {};
    buffer.Write("abcdef", 6);
    buffer.Seek(-4, FromEnd);
    std::string seen(read, buffer.Read(read, 3));
    seen = read;
    buffer.Move(2);
    buffer.Write("XYZ", 3);  // over the last byte, and on
    buffer.Move(-3);
    buffer.Seek(-0x7FFFFFFFFFFFFFFFLL - 1, FromPosition);
    buffer.Seek(0x7FFFFFFFFFFFFFFFLL, FromPosition);
    return seen + "|" + std::string(buffer.Ptr(), buffer.Length()) + "|" + std::to_string(buffer.Pos());
}

TEST(LogBuffersTest, BothKindsMoveAlikeUpToTheEndOfTheirMemory) {
    AutoBuffer grown(8);
    EXPECT_EQ(Walk(grown), "cde|bcdeXYZ|7");
    EXPECT_EQ(grown.Capacity(), 16U);
    char memory[9];
    PtrBuffer fixed(memory, 0, sizeof memory);
    EXPECT_EQ(Walk(fixed), "cde|bcdeXY|6");
    fixed.Length(3, 100);
    EXPECT_EQ(fixed.Length(), sizeof memory);
    AutoBuffer zeros;
    zeros.AddCapacity(129);
    EXPECT_EQ(std::string(zeros.Ptr(), zeros.Capacity()), std::string(256, '\0'));
    EXPECT_DEATH(zeros.Length(2, 1), "_nPos <= _nLenght");
    EXPECT_DEATH(zeros.AddCapacity(AutoBuffer::kLongest + 1), "_len <= 20 \\* 1024 \\* 1024");
    EXPECT_DEATH(PtrBuffer(memory, 10, 9), "length_ <= max_length_");
}

TEST(LogBufferTest, EveryKindOfBlockReadsBack) {
    std::string const badDigit = std::string(kPublicKey).replace(100, 1, "g");
    std::string const shortKey(kPublicKey, 127);
    struct {
        char const* key;
        unsigned int start;
        bool compress;
    } const kinds[] = {
        {kPublicKey, 6, false},      {kPublicKey, 7, true},       {nullptr, 8, false},
        {shortKey.c_str(), 9, true}, {badDigit.c_str(), 9, true},
    };
    for (auto const& kind : kinds) {
        SCOPED_TRACE(kind.start);
        std::vector<char> memory(4000);
        LogBuffer buffer(memory.data(), memory.size(), kind.compress, kind.key);
        EXPECT_EQ(Flushed(buffer), "");
        EXPECT_FALSE(buffer.Write(nullptr, 1) || buffer.Write("x", 0));
        ::Test::FakeClock clock({2036, 3, 5, 23, 50, 0, 0});
        std::string text;
        for (int length : {5, 5, 5, 1, 17, 300}) {
            std::string const part(static_cast<std::size_t>(length), static_cast<char>('a' + length % 26));
            ASSERT_TRUE(Put(buffer, part));
            text += part;
        }
        clock.SetLocal({2036, 3, 6, 0, 10, 0, 0});
        std::string file = Flushed(buffer);
        ASSERT_TRUE(Put(buffer, "second"));
        file += Flushed(buffer);
        AutoBuffer once;
        ASSERT_TRUE(buffer.Write("at once", 7, once));
        std::vector<::Test::LogBlock> const blocks = ::Test::DecodeBlocks(file, kPrivateKey);
        ASSERT_EQ(blocks.size(), 2U);
        EXPECT_EQ(blocks[0].text + blocks[1].text, text + "second");
        EXPECT_EQ(blocks[0].beginHour * 100 + blocks[0].endHour, 2300U);
        EXPECT_EQ(blocks[0].sequence + 10 * blocks[1].sequence, kind.compress ? 21U : 0U);
        EXPECT_EQ(blocks[0].publicKey == std::string(64, '\0'), kind.start > 7);
        EXPECT_EQ(blocks[1].start, kind.start);
        EXPECT_EQ(Text(once).substr(73), std::string("at once\0", 8));
        EXPECT_EQ(once.Ptr()[0], kind.start < 8 ? 6 : 8);
    }
}

TEST(LogBufferTest, TheTailUnderAUnitStaysPlainAndSequencesSkipZero) {
    char memory[200] = {};
    LogBuffer buffer(memory, sizeof memory, false, kPublicKey);
    EXPECT_TRUE(Put(buffer, "01234") && Put(buffer, "56789") && Put(buffer, "abcde"));
    ::Test::LogBlock const block = ::Test::DecodeBlocks(Flushed(buffer), kPrivateKey).at(0);
    EXPECT_EQ(block.body.substr(8), "89abcde");
    EXPECT_EQ(block.body.find("01"), std::string::npos);
    LogCrypt crypt(nullptr);
    for (int i = 1; i < 65535; ++i) {
        crypt.NextSequence(true);
    }
    EXPECT_EQ(crypt.NextSequence(true), 65535);
    EXPECT_EQ(crypt.NextSequence(false), 0);
    EXPECT_EQ(crypt.NextSequence(true), 1);
}

// What runs past the memory is cut, and the block stays whole.
TEST(LogBufferTest, FullMemoryCutsText) {
    for (bool compress : {false, true}) {
        // As many bytes behind the memory show that none is touched.
        std::string memory(400, '#');
        LogBuffer buffer(memory.data(), 200, compress, kPublicKey);
        std::string text;
        for (int i = 0; i < 200; ++i) {
            text += static_cast<char>(' ' + i * 37 % 91);
            Put(buffer, text);
        }
        std::vector<::Test::LogBlock> const blocks = ::Test::DecodeBlocks(Flushed(buffer), kPrivateKey);
        ASSERT_EQ(blocks.size(), 1U);
        EXPECT_EQ(blocks[0].body.size(), 200U - 74);
        EXPECT_EQ(blocks[0].text.substr(0, 6), "  E Ej");
        EXPECT_EQ(memory.substr(200), std::string(200, '#'));
    }
    char tiny[73] = {};
    LogBuffer none(tiny, sizeof tiny, true, nullptr);
    EXPECT_FALSE(Put(none, "x"));
}

TEST(LogBufferTest, MemoryOfAnEarlierRunComesOut) {
    struct {
        bool compress;
        char const* key;
        bool continues;
    } const rows[] = {{false, nullptr, true}, {true, nullptr, false}, {false, kPublicKey, false}};
    for (auto const& row : rows) {
        std::vector<char> memory(500);
        {
            LogBuffer earlier(memory.data(), memory.size(), row.compress, row.key);
            ASSERT_TRUE(Put(earlier, "earlier run "));
        }
        LogBuffer buffer(memory.data(), memory.size(), row.compress, row.key);
        EXPECT_EQ(Put(buffer, "now"), row.continues);
        EXPECT_EQ(::Test::DecodeBlocks(Flushed(buffer), kPrivateKey).at(0).text,
                  row.continues ? "earlier run now" : "earlier run ");
        EXPECT_TRUE(Put(buffer, "next"));
    }
    // A body that just fits, its end byte included, and such as can't be the memory's.
    struct {
        std::string length;
        std::size_t used;
    } const lengths[] = {{{126, 0, 0, 0}, 199}, {{127, 0, 0, 0}, 0}, {std::string(4, '\xFF'), 0}};
    for (auto const& row : lengths) {
        std::string memory(200, '\xFF');
        memory[0] = 8;
        memory.replace(5, 4, row.length);
        LogBuffer buffer(memory.data(), memory.size(), false, nullptr);
        EXPECT_EQ(buffer.Buffer().Length(), row.used);
        EXPECT_EQ(Flushed(buffer).size(), row.used == 0 ? 0 : 200U);
    }
}

}  // namespace
