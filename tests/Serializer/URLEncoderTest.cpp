#include "Serializer/URLEncoder.h"

#include <gtest/gtest.h>

#include <string>

using Ubrix::URLEncoder;

TEST(URLEncoder, EncodesByTheTableAndBack) {
    struct {
        std::string plain, encoded;
    } const cases[] = {
        {"", ""},
        {"a b", "a+b"},
        {"a+b", "a%2Bb"},
        {"a/b?c=d&e", "a%2Fb%3Fc%3Dd%26e"},
        {"-_.~azAZ09", "-_.~azAZ09"},
        {"\xE4", "%E4"},
        {std::string("\0x", 2), "%00x"},
        {"@[`{/:", "%40%5B%60%7B%2F%3A"},
    };
    for (auto const& c : cases) {
        EXPECT_EQ(URLEncoder::Encode(c.plain), c.encoded);
        EXPECT_EQ(URLEncoder::Decode(c.encoded), c.plain);
    }
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    EXPECT_EQ(URLEncoder::Decode(URLEncoder::Encode(all)), all);
}

TEST(URLEncoder, DecodesForeignAndMalformedTextInOrder) {
    struct {
        char const *text, *decoded;
    } const cases[] = {
        {"%e4%E4", "\xE4\xE4"}, {"%G1", "\x01"}, {"%zz", "\x53"},  {"%", "%"},     {"a%4", "a%4"},
        {"%%41", "%A"},         {"%4-", "%4-"},  {"%-41", "%-41"}, {"%+1", "% 1"}, {"100%", "100%"},
    };
    for (auto const& c : cases) {
        EXPECT_EQ(URLEncoder::Decode(c.text), c.decoded) << c.text;
    }
}
