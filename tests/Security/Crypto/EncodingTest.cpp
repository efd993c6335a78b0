#include "Security/Crypto/Base64.h"
#include "Security/Crypto/Hex.h"

#include <gtest/gtest.h>

namespace {

using namespace Ubrix;

TEST(Base64Test, PublishedVectorsBothWays) {
    // RFC 4648, section 10, and the two characters that other alphabets replace.
    struct {
        std::string plain;
        char const* text;
    } const cases[] = {{"", ""},
                       {"f", "Zg=="},
                       {"fo", "Zm8="},
                       {"foo", "Zm9v"},
                       {"foob", "Zm9vYg=="},
                       {"fooba", "Zm9vYmE="},
                       {"foobar", "Zm9vYmFy"},
                       {std::string("\xFB\xEF\xFF\0", 4), "++//AA=="}};
    for (auto const& each : cases) {
        EXPECT_EQ(Base64Encode(each.plain.data(), static_cast<unsigned int>(each.plain.size())), each.text);
        EXPECT_EQ(Base64Decode(each.text), each.plain);
    }
    EXPECT_EQ(Base64Encode(nullptr, 0), "");
}

TEST(Base64Test, DecodingEndsAtTheFirstForeignCharacter) {
    struct {
        std::string text;
        char const* plain;
    } const cases[] = {{"QUI=", "AB"},
                       {"QUI", "AB"},
                       {"QU!I", "A"},
                       {"Q", ""},
                       {"QUJDR", "ABC"},
                       {"=QUI", ""},
                       {"QUI=QUI=", "AB"},
                       {"QUJD\nQUJD", "ABC"},
                       {"QUJDQ\xC3\xA9", "ABC"},
                       {"QUJD-_", "ABC"},
                       {std::string("QUJD\0QUJD", 9), "ABC"}};
    for (auto const& each : cases) {
        EXPECT_EQ(Base64Decode(each.text), each.plain) << each.text;
    }
}

TEST(HexTest, DecodesPairsUpToTheFirstForeignCharacter) {
    unsigned char bytes[4] = {9, 9, 9, 9};
    EXPECT_TRUE(HexToBytes("09aFC0ff", 8, bytes));
    EXPECT_EQ(std::string(bytes, bytes + 4), "\x09\xAF\xC0\xFF");
    for (char const* text : {"01g0", "010G", "01 2", "01/0", "01:0", "010@", "01`0"}) {
        bytes[1] = 7;
        EXPECT_FALSE(HexToBytes(text, 4, bytes)) << text;
        EXPECT_EQ(bytes[0], 1);
        EXPECT_EQ(bytes[1], 7);
    }
    EXPECT_TRUE(HexToBytes(nullptr, 4, bytes));
    EXPECT_TRUE(HexToBytes("", 0, bytes));
    EXPECT_TRUE(HexToBytes("zzz", 3, bytes));
    EXPECT_EQ(bytes[1], 7);
}

}  // namespace
