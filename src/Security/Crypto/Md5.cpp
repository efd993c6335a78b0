#include "Security/Crypto/Md5.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "Platform/File.h"

namespace Ubrix::Crypto {
namespace {

constexpr std::size_t kBlock = 64;
constexpr std::size_t kLengthField = 8;
constexpr std::size_t kDigest = 16;
constexpr std::size_t kFilePiece = 1024;

// RFC 1321, 3.4: the integer part of 2^32 times the absolute sine of 1 to 64.
constexpr std::uint32_t kSine[64] = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

constexpr unsigned int kShift[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

void WriteLittleEndian(unsigned char* bytes, std::uint64_t value, int count) {
    for (int i = 0; i < count; ++i) {
        bytes[i] = static_cast<unsigned char>(value >> (8 * i));
    }
}

std::uint32_t ReadWord(unsigned char const* bytes) {
    return bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8 | static_cast<std::uint32_t>(bytes[2]) << 16 |
           static_cast<std::uint32_t>(bytes[3]) << 24;
}

std::uint32_t RotateLeft(std::uint32_t word, unsigned int bits) {
    return word << bits | word >> (32 - bits);
}

class Md5Context {
public:
    void Update(unsigned char const* data, std::size_t length) {
        _length += length;
        while (length > 0) {
            if (_used == 0 && length >= kBlock) {
                Compress(data);
                data += kBlock;
                length -= kBlock;
                continue;
            }
            std::size_t const taken = length < kBlock - _used ? length : kBlock - _used;
            std::memcpy(_buffer + _used, data, taken);
            _used += taken;
            data += taken;
            length -= taken;
            if (_used == kBlock) {
                Compress(_buffer);
                _used = 0;
            }
        }
    }

    void Finish(void* digest) {
        std::uint64_t const bits = _length * 8;
        static constexpr unsigned char kPadding[kBlock] = {0x80};
        std::size_t const room = (2 * kBlock - kLengthField - _used - 1) % kBlock + 1;
        Update(kPadding, room);
        unsigned char field[kLengthField];
        WriteLittleEndian(field, bits, kLengthField);
        Update(field, kLengthField);
        for (std::size_t i = 0; i < 4; ++i) {
            WriteLittleEndian(static_cast<unsigned char*>(digest) + 4 * i, _state[i], 4);
        }
    }

private:
    void Compress(unsigned char const* block) {
        std::uint32_t word[16];
        for (std::size_t i = 0; i < 16; ++i) {
            word[i] = ReadWord(block + 4 * i);
        }
        std::uint32_t a = _state[0];
        std::uint32_t b = _state[1];
        std::uint32_t c = _state[2];
        std::uint32_t d = _state[3];
        for (unsigned int step = 0; step < 64; ++step) {
            unsigned int index = step;
            std::uint32_t mixed = 0;
            switch (step / 16) {
                case 0:
                    mixed = (b & c) | (~b & d);
                    break;
                case 1:
                    mixed = (b & d) | (c & ~d);
                    index = 5 * step + 1;
                    break;
                case 2:
                    mixed = b ^ c ^ d;
                    index = 3 * step + 5;
                    break;
                default:
                    mixed = c ^ (b | ~d);
                    index = 7 * step;
                    break;
            }
            std::uint32_t const sum = a + mixed + word[index % 16] + kSine[step];
            a = d;
            d = c;
            c = b;
            b += RotateLeft(sum, kShift[step / 16][step % 4]);
        }
        _state[0] += a;
        _state[1] += b;
        _state[2] += c;
        _state[3] += d;
    }

    std::uint32_t _state[4] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    std::uint64_t _length = 0;
    std::size_t _used = 0;
    unsigned char _buffer[kBlock];
};

}  // namespace

void Md5Digest(void* digest, void const* data, unsigned int length) {
    Md5Context context;
    context.Update(static_cast<unsigned char const*>(data), length);
    context.Finish(digest);
}

void Md5File(void* digest, char const* path) {
    Platform::File file = Platform::File::Open(path, Platform::File::Mode::Read);
    if (!file.IsOpen()) {
        return;
    }
    Md5Context context;
    unsigned char piece[kFilePiece];
    while (std::size_t const count = file.Read(piece, sizeof piece)) {
        context.Update(piece, count);
    }
    context.Finish(digest);
}

void Md5Hex(void const* digest, char* text) {
    static constexpr char kDigits[] = "0123456789abcdef";
    auto const* bytes = static_cast<unsigned char const*>(digest);
    for (std::size_t i = 0; i < kDigest; ++i) {
        text[2 * i] = kDigits[bytes[i] >> 4];
        text[2 * i + 1] = kDigits[bytes[i] & 15];
    }
    text[2 * kDigest] = '\0';
}

std::string Md5FileHex(char const* path) {
    unsigned char digest[kDigest] = {};
    Md5File(digest, path);
    char text[2 * kDigest + 1];
    Md5Hex(digest, text);
    return text;
}

}  // namespace Ubrix::Crypto
