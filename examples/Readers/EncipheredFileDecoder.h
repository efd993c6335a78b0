// Reads an enciphered INI file by its documented form alone, with nothing of the library's own code.
#pragma once

#include <openssl/evp.h>

#include <cstdint>
#include <string>

#include "Readers/PeerCurve.h"

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

// The 16 bytes that a key's text stands for.
inline std::string FromBase64(std::string const& text) {
    std::string bytes(text.size(), '\0');
    EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()),
                    reinterpret_cast<unsigned char const*>(text.data()), static_cast<int>(text.size()));
    return bytes.substr(0, 16);
}

// What the server computes: the first 16 bytes of the X coordinate of its private key times the public key
// that stands in the file's head.
inline std::string ServerKey(std::string const& privateKeyHex, std::string const& file) {
    BIGNUM* number = nullptr;
    BN_hex2bn(&number, privateKeyHex.c_str());
    PeerCurve::BigNumber const secret(number);
    PeerCurve::Bytes product =
        PeerCurve::Multiply(NID_secp256k1, *secret, {file.begin() + 16, file.begin() + 80});
    product.resize(16);
    return {product.begin(), product.end()};
}

inline std::uint64_t BigEndian(std::string const& bytes, std::size_t at, std::size_t size) {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < size; ++i) {
        number = number << 8 | static_cast<unsigned char>(bytes[at + i]);
    }
    return number;
}

// `word` gives the key's four.
template <typename Word>
std::uint64_t TeaDecrypt(std::uint64_t block, Word const& word) {
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
    auto const word = [&](std::size_t i) { return static_cast<std::uint32_t>(BigEndian(key, 4 * i, 4)); };
    std::string stream;
    std::uint64_t mixed = 0;
    std::uint64_t before = 0;
    for (std::size_t at = 0; at < body.size(); at += 8) {
        std::uint64_t const block = BigEndian(body, at, 8);
        mixed = TeaDecrypt(block ^ mixed, word);
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
