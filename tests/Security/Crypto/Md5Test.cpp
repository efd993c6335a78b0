#include "Security/Crypto/Md5.h"

#include <gtest/gtest.h>

#include <string>

#include "Readers/EncipheredFileDecoder.h"
#include "Readers/Files.h"

namespace {

using namespace Ubrix::Crypto;

std::string HexOf(void const* digest) {
    char text[34];
    text[33] = '!';
    Md5Hex(digest, text);
    EXPECT_EQ(text[33], '!');
    return text;
}

TEST(Md5, MemoryAndFileAgreeWithThePeerAtEveryEdge) {
    EXPECT_EQ(HexOf(::Test::Md5("message digest").data()), "f96b697d7cb7938d525a2f31aaf161d0")
        << "RFC 1321, A.5";
    // Around the place of the length field, the block, the pieces of a file, and a bit count above 16 bits.
    for (std::size_t const size : {0U, 1U, 55U, 56U, 57U, 63U, 64U, 65U, 119U, 120U, 127U, 128U, 129U, 1023U,
                                   1024U, 1025U, 1080U, 70000U}) {
        std::string data(size, '\xA5');
        for (std::size_t i = 0; i < size; ++i) {
            data[i] = static_cast<char>(i * 7 + (i >> 8));
        }
        std::string const expected = ::Test::Md5(data);
        std::string digest(16, '?');
        Md5Digest(digest.data(), data.data(), static_cast<unsigned int>(size));
        EXPECT_EQ(digest, expected) << size;
        ::Test::WriteWholeFile("digest.bin", data);
        EXPECT_EQ(Md5FileHex("digest.bin"), HexOf(expected.data())) << size;
    }
    unsigned char digest[16] = "left as it was!";
    Md5File(digest, "missing.bin");
    EXPECT_STREQ(reinterpret_cast<char*>(digest), "left as it was!");
    EXPECT_EQ(Md5FileHex("missing.bin"), std::string(32, '0'));
}

}  // namespace
