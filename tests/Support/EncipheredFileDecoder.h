// Reads an enciphered INI file by its documented form alone, with nothing of the library's own code.
#pragma once

#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/obj_mac.h>

#include <cstdint>
#include <memory>
#include <string>

namespace Test {

constexpr std::size_t kHeadSize = 98;

inline std::uint32_t LittleEndian(std::string const& bytes, std::size_t at, std::size_t size) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < size; ++i) {
        number |= std::uint32_t{static_cast<unsigned char>(bytes[at + i])} << (8 * i);
    }
    return number;
}

inline std::string Md5(std::string const& bytes) {
    unsigned char digest[16];
    EVP_Digest(bytes.data(), bytes.size(), digest, nullptr, EVP_md5(), nullptr);
    return {reinterpret_cast<char*>(digest), sizeof digest};
}

inline std::string FromBase64(std::string const& text) {
    std::string bytes(text.size(), '\0');
    int const size =
        EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()),
                        reinterpret_cast<unsigned char const*>(text.data()), static_cast<int>(text.size()));
    return bytes.substr(0, static_cast<std::size_t>(size < 0 ? 0 : size) -
                               (text.size() > 1 && text[text.size() - 2] == '=' ? 2 : 0));
}

// What the server computes: the first 16 bytes of the X coordinate of its private key times the public key
// that stands in the file's head.
inline std::string ServerKey(std::string const& privateKeyHex, std::string const& file) {
    BIGNUM* number = nullptr;
    BN_hex2bn(&number, privateKeyHex.c_str());
    std::unique_ptr<BIGNUM, void (*)(BIGNUM*)> const secret(number, BN_clear_free);
    std::unique_ptr<EC_GROUP, void (*)(EC_GROUP*)> const group(EC_GROUP_new_by_curve_name(NID_secp256k1),
                                                               EC_GROUP_free);
    std::unique_ptr<EC_POINT, void (*)(EC_POINT*)> const point(EC_POINT_new(group.get()), EC_POINT_free);
    std::string octets = '\4' + file.substr(16, 64);
    auto* const bytes = reinterpret_cast<unsigned char*>(octets.data());
    // The first of these refuses a point that isn't on the curve.
    if (EC_POINT_oct2point(group.get(), point.get(), bytes, 65, nullptr) != 1 ||
        EC_POINT_mul(group.get(), point.get(), nullptr, point.get(), number, nullptr) != 1 ||
        EC_POINT_point2oct(group.get(), point.get(), POINT_CONVERSION_UNCOMPRESSED, bytes, 65, nullptr) !=
            65) {
        return "no key";
    }
    return octets.substr(1, 16);
}

inline std::uint64_t BlockAt(std::string const& bytes, std::size_t at) {
    std::uint64_t block = 0;
    for (std::size_t i = 0; i < 8; ++i) {
        block = block << 8 | static_cast<unsigned char>(bytes[at + i]);
    }
    return block;
}

inline std::uint64_t TeaDecrypt(std::uint64_t block, std::string const& key) {
    auto const word = [&](std::size_t i) {
        return static_cast<std::uint32_t>(BlockAt(key, i / 2 * 8) >> (i % 2 ? 0 : 32));
    };
    auto y = static_cast<std::uint32_t>(block >> 32);
    auto z = static_cast<std::uint32_t>(block);
    for (std::uint32_t round = 16; round > 0; --round) {
        std::uint32_t const sum = round * 0x9E3779B9u;
        z -= ((y << 4) + word(2)) ^ (y + sum) ^ ((y >> 5) + word(3));
        y -= ((z << 4) + word(0)) ^ (z + sum) ^ ((z >> 5) + word(1));
    }
    return std::uint64_t{y} << 32 | z;
}

// The plain text of the body; "bad tail" if the key doesn't fit.
inline std::string Decipher(std::string const& body, std::string const& key) {
    std::string stream;
    std::uint64_t mixed = 0;
    std::uint64_t before = 0;
    for (std::size_t at = 0; at < body.size(); at += 8) {
        std::uint64_t const block = BlockAt(body, at);
        mixed = TeaDecrypt(block ^ mixed, key);
        std::uint64_t const plain = mixed ^ before;
        before = block;
        for (int shift = 56; shift >= 0; shift -= 8) {
            stream += static_cast<char>(plain >> shift);
        }
    }
    std::size_t const lead = 3u + (static_cast<unsigned char>(stream[0]) & 7u);
    if (stream.size() < lead + 7 || stream.substr(stream.size() - 7) != std::string(7, '\0')) {
        return "bad tail";
    }
    return stream.substr(lead, stream.size() - lead - 7);
}

}  // namespace Test
