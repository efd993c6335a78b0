#include "Security/Crypto/Tea.h"

#include <gtest/gtest.h>

#include <climits>
#include <set>
#include <string>

#include "Readers/EncipheredFileDecoder.h"

namespace {

using namespace Ubrix::Crypto;

std::string const kKey = "\x01\x92 a key\xFFof 16..";

std::string Encrypt(std::string const& plain) {
    int const size = zk_symmetry_encrypt2_length(static_cast<int>(plain.size()));
    std::string cipher(static_cast<std::size_t>(size), '?');
    int length = -1;
    zk_symmetry_encrypt2(plain.data(), static_cast<int>(plain.size()), kKey.data(), cipher.data(), &length);
    EXPECT_EQ(length, size);
    return cipher;
}

// True and the plain text, given room bytes of room, with a guard byte behind them.
bool Decrypt(std::string const& cipher, std::string const& key, int room, std::string& plain) {
    std::string out(static_cast<std::size_t>(room) + 1, '\x7E');
    int length = room;
    bool const good =
        zk_symmetry_decrypt2(cipher.data(), static_cast<int>(cipher.size()), key.data(), out.data(), &length);
    EXPECT_EQ(out.back(), '\x7E');
    EXPECT_LE(length, room);
    plain = out.substr(0, static_cast<std::size_t>(length));
    return good;
}

TEST(Tea, EveryLengthComesBackIntoExactlyItsRoom) {
    std::string text;
    for (int length = 0; length <= 64; ++length) {
        std::string const cipher = Encrypt(text);
        EXPECT_EQ(cipher.size(), static_cast<std::size_t>(length + 17) / 8 * 8);
        EXPECT_EQ(::Test::Decipher(cipher, kKey), text);
        std::string plain;
        EXPECT_TRUE(Decrypt(cipher, kKey, length, plain));
        EXPECT_EQ(plain, text);
        if (length > 0) {
            EXPECT_FALSE(Decrypt(cipher, kKey, length - 1, plain));
            EXPECT_EQ(plain, std::string(static_cast<std::size_t>(length) - 1, '\x7E'));
        }
        text += static_cast<char>(200 + 3 * length);
    }
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        seen.insert(Encrypt("same").substr(0, 8));
    }
    EXPECT_EQ(seen.size(), 100U) << "the padding is random";
}

TEST(Tea, RefusesBadLengths) {
    EXPECT_EQ(zk_symmetry_encrypt2_length(-1), 0);
    EXPECT_EQ(zk_symmetry_encrypt2_length(INT_MAX - 16), 0);
    std::string plain;
    for (std::size_t const size : {0U, 8U, 15U, 17U, 23U}) {
        EXPECT_FALSE(Decrypt(Encrypt("0123456789").substr(0, size), kKey, 64, plain)) << size;
    }
    int length = -1;
    zk_symmetry_encrypt2(nullptr, -5, kKey.data(), nullptr, &length);
    EXPECT_EQ(length, 0);
    // A first block that names a pad of 7 leaves 16 bytes no room for the tail.
    std::string cipher(16, '\0');
    TeaEncryptBlock("\x07######", kKey.data(), cipher.data());
    EXPECT_FALSE(Decrypt(cipher, kKey, 64, plain));
}

TEST(Tea, ChangedTextAndWrongKeysFail) {
    std::string const cipher = Encrypt("a text that fills some blocks of the cipher");
    std::string const whole = kKey + cipher;
    std::string plain;
    for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
        std::string changed = whole;
        changed[bit / 8] = static_cast<char>(changed[bit / 8] ^ (1 << bit % 8));
        EXPECT_FALSE(Decrypt(changed.substr(16), changed.substr(0, 16), 64, plain)) << bit;
    }
}

}  // namespace
