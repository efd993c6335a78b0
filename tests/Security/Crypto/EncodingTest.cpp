#include "Security/Crypto/Base64.h"
#include "Security/Crypto/Hex.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>

namespace {

using namespace Ubrix::Crypto;

TEST(Base64, PublishedVectorsBothWays) {
    // RFC 4648, section 10, and the two characters that other alphabets replace.
    std::pair<char const*, char const*> const cases[] = {
        {"f", "Zg=="},         {"fo", "Zm8="},         {"foo", "Zm9v"},      {"foob", "Zm9vYg=="},
        {"fooba", "Zm9vYmE="}, {"foobar", "Zm9vYmFy"}, {"\xFB\xF0", "+/A="},
    };
    for (auto const& [plain, text] : cases) {
        EXPECT_EQ(Base64Encode(plain, static_cast<unsigned int>(std::strlen(plain))), text);
        EXPECT_EQ(Base64Decode(text), plain);
    }
    EXPECT_EQ(Base64Encode(nullptr, 0), "");
    EXPECT_EQ(Base64Decode(Base64Encode("\0", 2)), std::string(2, '\0'));
}

TEST(Base64, DecodingEndsAtTheFirstForeignCharacter) {
    std::pair<char const*, char const*> const cases[] = {
        {"Q", ""},    {"QUI", "AB"},     {"QU!I", "A"},      {"QUJDR", "ABC"},
        {"=QUI", ""}, {"QUJD-_", "ABC"}, {"QUI=QUI=", "AB"}, {"QUJDQ\xE9", "ABC"},
    };
    for (auto const& [text, plain] : cases) {
        EXPECT_EQ(Base64Decode(text), plain) << text;
    }
    EXPECT_EQ(Base64Decode(std::string("QUJD\0QUJD", 9)), "ABC");
    EXPECT_EQ(Base64Decode("QUJD\nQUJD"), "ABC");
}

TEST(Hex, DecodesPairsUpToTheFirstForeignCharacter) {
    char bytes[] = "####";
    EXPECT_TRUE(HexToBytes("09aFC0ff", 8, bytes));
    EXPECT_STREQ(bytes, "\x09\xAF\xC0\xFF");
    for (char const* text : {"01g0", "010G", "01 2", "01/0", "01:0", "010@", "01`0"}) {
        bytes[1] = '#';
        EXPECT_FALSE(HexToBytes(text, 4, bytes)) << text;
        EXPECT_EQ(std::string(bytes, 2), "\x01#");
    }
    EXPECT_TRUE(HexToBytes(nullptr, 4, bytes));
    EXPECT_TRUE(HexToBytes("0102", 4, nullptr));
    EXPECT_TRUE(HexToBytes("zzz", 3, bytes));
    EXPECT_EQ(bytes[0], '\x01');
}

}  // namespace
