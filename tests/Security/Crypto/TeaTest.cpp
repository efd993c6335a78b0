#include "Security/Crypto/Tea.h"

#include <gtest/gtest.h>

#include <climits>
#include <set>

#include "Security/Crypto/Hex.h"

namespace {

using namespace Ubrix;

std::string Bytes(std::string const& hex) {
    std::string bytes(hex.size() / 2, '\0');
    EXPECT_TRUE(HexToBytes(hex.data(), static_cast<unsigned int>(hex.size()), bytes.data()));
    return bytes;
}

std::string Key() {
    return Bytes("000102030405060708090a0b0c0d0e0f");
}

std::string Encrypt(std::string const& plain) {
    int const size = zk_symmetry_encrypt2_length(static_cast<int>(plain.size()));
    std::string cipher(static_cast<std::size_t>(size), '?');
    int length = -1;
    zk_symmetry_encrypt2(plain.data(), static_cast<int>(plain.size()), Key().data(), cipher.data(), &length);
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

TEST(TeaTest, DeciphersWhatAnIndependentProgramEnciphered) {
    struct {
        char const *plain, *cipher;
    } const cases[] = {{"", "a8e613ffe2715f1f440e5fbba46e75e4"},
                       {"1234567", "c978a008321cd648b102c5efac1730aeaec3d01ea5b12199"},
                       {"The quick brown fox jumps",
                        "b3fed609af5395a2ceac956aaee2ca67ce8cc33c850a67a9220a34d7e35f74f6b967bc8af8f94671"}};
    for (auto const& each : cases) {
        std::string plain;
        EXPECT_TRUE(Decrypt(Bytes(each.cipher), Key(), 32, plain));
        EXPECT_EQ(plain, each.plain);
    }
}

TEST(TeaTest, EveryLengthComesBackIntoExactlyItsRoom) {
    std::string text;
    for (int length = 0; length <= 64; ++length) {
        std::string const cipher = Encrypt(text);
        EXPECT_EQ(cipher.size(), static_cast<std::size_t>(length + 17) / 8 * 8);
        std::string plain;
        EXPECT_TRUE(Decrypt(cipher, Key(), length, plain));
        EXPECT_EQ(plain, text);
        if (length > 0) {
            EXPECT_FALSE(Decrypt(cipher, Key(), length - 1, plain));
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

TEST(TeaTest, RefusesBadLengths) {
    EXPECT_EQ(zk_symmetry_encrypt2_length(-1), 0);
    EXPECT_EQ(zk_symmetry_encrypt2_length(INT_MAX - 16), 0);
    std::string plain;
    for (std::size_t const size : {0U, 8U, 15U, 17U, 23U}) {
        EXPECT_FALSE(Decrypt(Encrypt("0123456789").substr(0, size), Key(), 64, plain)) << size;
    }
    int length = -1;
    zk_symmetry_encrypt2(nullptr, -5, Key().data(), nullptr, &length);
    EXPECT_EQ(length, 0);
    // A first block that names a pad of 7 leaves 16 bytes no room for the tail.
    std::string cipher(16, '\0');
    TeaEncryptBlock("\x07######", Key().data(), cipher.data());
    EXPECT_FALSE(Decrypt(cipher, Key(), 64, plain));
}

TEST(TeaTest, ChangedTextAndWrongKeysFail) {
    std::string const cipher = Encrypt("a text that fills some blocks of the cipher");
    std::string const whole = Key() + cipher;
    std::string plain;
    for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
        std::string changed = whole;
        changed[bit / 8] = static_cast<char>(changed[bit / 8] ^ (1 << bit % 8));
        EXPECT_FALSE(Decrypt(changed.substr(16), changed.substr(0, 16), 64, plain)) << bit;
    }
}

}  // namespace
