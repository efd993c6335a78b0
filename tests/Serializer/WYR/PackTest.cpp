#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <string>
#include <tuple>
#include <utility>

#include "Serializer/WYR/IWyrObject.h"
#include "Serializer/WYR/WyrError.h"
#include "Serializer/WYR/WyrPack.h"

using namespace Ubrix;

namespace {

// That `write` makes these bytes and `read` takes them, or nothing of them where there are fewer.
template <class Write, class Read>
void ExpectForm(std::string bytes, Write write, Read read) {
    std::string written = bytes;
    for (size_t size = 0; size <= bytes.size(); ++size) {
        SCOPED_TRACE(size);
        size_t const taken = size == bytes.size() ? size : 0;
        WyrBuf out(written.data(), size);
        EXPECT_EQ(write(out), taken > 0 ? 0 : WyrError::WYR_ERR_WRITE_SPACE);
        EXPECT_EQ(out.position, taken);
        WyrBuf in(bytes.data(), size);
        EXPECT_EQ(read(in), taken > 0 ? 0 : WyrError::WYR_ERR_READ_DATA);
        EXPECT_EQ(in.position, taken);
    }
    EXPECT_EQ(written, bytes);
}

template <class Integer>
void ExpectInteger(std::string const& bytes, Integer value) {
    Integer back = 0;
    ExpectForm(
        bytes, [&](WyrBuf& buf) { return WyrPack::writeInteger(buf, value); },
        [&](WyrBuf& buf) { return WyrPack::readInteger(buf, &back); });
    EXPECT_EQ(back, value);
}

}  // namespace

TEST(WyrPack, EachKindHasItsBytes) {
    ExpectInteger("\xFE", std::uint8_t{0xFE});
    ExpectInteger("\xFE\xD4", std::uint16_t{0xFED4});
    ExpectInteger("\x80\x01\x11\x70", std::uint32_t{0x80011170});
    ExpectInteger("\x80\x02\x03\x04\x05\x06\x07\x08", std::uint64_t{0x8002030405060708});
    char text[4];
    ExpectForm(
        std::string("\0\0\0\4ab\xFF", 8), [](WyrBuf& buf) { return WyrPack::writeString(buf, "ab\xFF", 4); },
        [&](WyrBuf& buf) { return WyrPack::readString(buf, text, sizeof text); });
    EXPECT_STREQ(text, "ab\xFF");
    unsigned short const wide[] = {0x4E00, 0x2D, 0};
    unsigned short read[3];
    ExpectForm(
        std::string("\0\0\0\3\x4E\0\0\x2D\0", 10),
        [&](WyrBuf& buf) { return WyrPack::writeWideString(buf, wide, 3); },
        [&](WyrBuf& buf) { return WyrPack::readWideString(buf, read, 3); });
    EXPECT_THAT(read, testing::ElementsAreArray(wide));
}

TEST(WyrPack, RefusesWhatAMessageMayNotSay) {
    std::tuple<char, char const*, int> const texts[] = {{0, "abc", WyrError::WYR_ERR_STRING_TOO_SHORT},
                                                        {5, "abcd", WyrError::WYR_ERR_STRING_TOO_LONG},
                                                        {4, "abcd", WyrError::WYR_ERR_STRING_SIZEINFO},
                                                        {4, "ab", WyrError::WYR_ERR_STRING_SIZEINFO}};
    for (auto const& [count, units, code] : texts) {
        std::string bytes = std::string(3, '\0') + count + units + std::string(4, '\0');
        char text[4] = "old";
        WyrBuf in(bytes.data(), bytes.size());
        EXPECT_EQ(WyrPack::readString(in, text, sizeof text), code) << units;
        EXPECT_STREQ(text, "old");
        EXPECT_EQ(in.position, 0U);
    }
    char memory[16];
    WyrBuf out(memory, sizeof memory);
    EXPECT_EQ(WyrPack::writeString(out, "abcd", 4), WyrError::WYR_ERR_STRING_TOO_LONG);

    std::pair<long long, int> const counts[] = {{LLONG_MIN, WyrError::WYR_ERR_REFER_NEGATIVE},
                                                {-1, WyrError::WYR_ERR_REFER_NEGATIVE},
                                                {0, 0},
                                                {4, 0},
                                                {5, WyrError::WYR_ERR_REFER_TOO_BIG}};
    for (auto const& [count, code] : counts) {
        EXPECT_EQ(WyrPack::checkRefer(count, 4), code) << count;
    }
}

TEST(WyrPack, ChoosesFromTheVersionsOfARecord) {
    // What is asked for; what is chosen from 2 to 4, and what comes of it in a message.
    std::tuple<int, int, int> const versions[] = {{-1, -9, -20}, {0, 4, -20}, {1, -9, -20},
                                                  {2, 2, 0},     {4, 4, 0},   {5, 4, -20}};
    for (auto const& [asked, outcome, fromNet] : versions) {
        int chosen = 0;
        int const code = WyrPack::chooseVersion(asked, 2, 4, &chosen);
        EXPECT_EQ(code != 0 ? code : chosen, outcome) << asked;
        EXPECT_EQ(WyrPack::checkVersionFromNet(asked, 2, 4), fromNet) << asked;
    }
}

TEST(IWyrObject, NeverPassesForDoneWhatItDoesNotSupport) {
    struct : IWyrObject {
    } bare;
    char text[9];
    WyrBuf buf(text, sizeof text);
    for (int code : {bare.pack(buf, 0), bare.packMemory(text, 9, nullptr, 0), bare.unpack(buf, 0),
                     bare.unpackMemory(text, 9, nullptr, 0), bare.packTlv(buf, 0, 0),
                     bare.packTlvMemory(text, 9, nullptr, 0, 0), bare.unpackTlv(buf, 9, nullptr),
                     bare.unpackTlvMemory(text, 9, nullptr, nullptr), bare.visualize(buf, 0, 'x'),
                     bare.visualizeFile(nullptr, 0, 'x'), bare.toXmlMemory(text, 9, nullptr, 0, 0),
                     bare.fromXmlMemory(text, 9, 0, 0)}) {
        EXPECT_EQ(code, WyrError::WYR_ERR_NOT_IMPLEMENTED);
    }
}
