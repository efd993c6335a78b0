#include "Security/Crypto/Base64.h"

#include <cstdint>

namespace Ubrix::Crypto {
namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The six bits of a character, or -1 for one outside the alphabet.
int SixBits(char character) {
    if (character >= 'A' && character <= 'Z') {
        return character - 'A';
    }
    if (character >= 'a' && character <= 'z') {
        return character - 'a' + 26;
    }
    if (character >= '0' && character <= '9') {
        return character - '0' + 52;
    }
    return character == '+' ? 62 : character == '/' ? 63 : -1;
}

}  // namespace

std::string Base64Encode(void const* data, unsigned int length) {
    auto const* bytes = static_cast<unsigned char const*>(data);
    std::string text;
    text.reserve((static_cast<std::size_t>(length) + 2) / 3 * 4);
    for (std::size_t i = 0; i < length; i += 3) {
        std::size_t const count = length - i < 3 ? length - i : 3;
        std::uint32_t group = static_cast<std::uint32_t>(bytes[i]) << 16;
        group |= count > 1 ? static_cast<std::uint32_t>(bytes[i + 1]) << 8 : 0;
        group |= count > 2 ? bytes[i + 2] : 0U;
        for (std::size_t digit = 0; digit < 4; ++digit) {
            text += digit <= count ? kAlphabet[group >> (18 - 6 * digit) & 63] : '=';
        }
    }
    return text;
}

std::string Base64Decode(std::string const& text) {
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 2);
    std::uint32_t bits = 0;
    unsigned int held = 0;
    for (char const character : text) {
        int const value = SixBits(character);
        if (value < 0) {
            break;
        }
        bits = bits << 6 | static_cast<std::uint32_t>(value);
        held += 6;
        if (held >= 8) {
            held -= 8;
            bytes += static_cast<char>(static_cast<unsigned char>(bits >> held & 0xFF));
        }
    }
    return bytes;
}

}  // namespace Ubrix::Crypto
