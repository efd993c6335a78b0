#include "Security/Crypto/Md5.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <array>
#include <cstdio>
#include <fstream>

namespace {

using namespace Ubrix;

std::string HexOf(std::string const& data) {
    unsigned char digest[16];
    Md5Digest(digest, data.data(), static_cast<unsigned int>(data.size()));
    std::array<char, 34> text;
    text.fill('!');
    Md5Hex(digest, text.data());
    EXPECT_EQ(text[33], '!');
    return text.data();
}

std::string PeerHexOf(std::string const& data) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    EXPECT_EQ(EVP_Digest(data.data(), data.size(), digest, nullptr, EVP_md5(), nullptr), 1);
    char text[33];
    for (std::size_t i = 0; i < 16; ++i) {
        std::snprintf(text + 2 * i, 3, "%02x", digest[i]);
    }
    return text;
}

TEST(Md5Test, PublishedVectors) {
    // RFC 1321, A.5
    EXPECT_EQ(HexOf(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(HexOf("a"), "0cc175b9c0f1b6a831c399e269772661");
    EXPECT_EQ(HexOf("abc"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(HexOf("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
    EXPECT_EQ(HexOf("abcdefghijklmnopqrstuvwxyz"), "c3fcd3d76192e4007dfb496cca67e13b");
    EXPECT_EQ(HexOf("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
              "d174ab98d277d9f5a5611c2c9f419d9f");
    EXPECT_EQ(HexOf("12345678901234567890123456789012345678901234567890123456789012345678901234567890"),
              "57edf4a22be3c955ac49da2e2107b67a");
}

TEST(Md5Test, MemoryAndFileAgreeWithThePeerAtEveryEdge) {
    // Around the place of the length field, the block, the pieces of a file, and a bit count above 16 bits.
    for (std::size_t const size : {0U, 1U, 55U, 56U, 57U, 63U, 64U, 65U, 119U, 120U, 127U, 128U, 129U, 1023U,
                                   1024U, 1025U, 1080U, 70000U}) {
        std::string data;
        for (std::size_t i = 0; i < size; ++i) {
            data += static_cast<char>(i * 7 + (i >> 8));
        }
        std::ofstream("digest.bin", std::ios::binary).write(data.data(), static_cast<std::streamsize>(size));
        std::string const expected = PeerHexOf(data);
        EXPECT_EQ(HexOf(data), expected) << size;
        EXPECT_EQ(Md5FileHex("digest.bin"), expected) << size;
    }
}

TEST(Md5Test, AMissingFileLeavesTheDigest) {
    unsigned char digest[16];
    std::fill_n(digest, 16, static_cast<unsigned char>(0x5A));
    Md5File(digest, "missing.bin");
    EXPECT_EQ(std::string(digest, digest + 16), std::string(16, 0x5A));
    EXPECT_EQ(Md5FileHex("missing.bin"), std::string(32, '0'));
}

}  // namespace
