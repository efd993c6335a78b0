#include "Serializer/URLEncoder.h"

#include <gtest/gtest.h>

#include <string>

using Ubrix::URLEncoder;

TEST(URLEncoder, EncodesByTheTableAndBack) {
    std::pair<std::string, char const*> const cases[] = {
        {"a b", "a+b"},
        {"a+b", "a%2Bb"},
        {"-_.~azAZ09", "-_.~azAZ09"},
        {"\xE4", "%E4"},
        {std::string("\0x", 2), "%00x"},
        {"@[`{/:", "%40%5B%60%7B%2F%3A"},
    };
    for (auto const& [plain, encoded] : cases) {
        EXPECT_EQ(URLEncoder::Encode(plain), encoded);
        EXPECT_EQ(URLEncoder::Decode(encoded), plain);
    }
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    EXPECT_EQ(URLEncoder::Decode(URLEncoder::Encode(all)), all);
}

TEST(URLEncoder, DecodesForeignAndMalformedTextInOrder) {
    std::pair<char const*, char const*> const cases[] = {
        {"%e4%E4", "\xE4\xE4"}, {"%G1", "\x01"}, {"%zz", "\x53"},  {"%", "%"},     {"a%4", "a%4"},
        {"%%41", "%A"},         {"%4-", "%4-"},  {"%-41", "%-41"}, {"%+1", "% 1"}, {"100%", "100%"},
    };
    for (auto const& [text, decoded] : cases) {
        EXPECT_EQ(URLEncoder::Decode(text), decoded) << text;
    }
}
