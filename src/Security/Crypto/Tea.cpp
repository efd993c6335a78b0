#include "Security/Crypto/Tea.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#include "Platform/Random.h"

namespace Ubrix::Crypto {
namespace {

constexpr std::uint32_t kDelta = 0x9E3779B9;
constexpr int kRounds = 16;
constexpr int kBlock = 8;
constexpr int kSalt = 2;
constexpr int kTail = 7;
// One byte that tells the pad, the salt and the tail.
constexpr int kOverhead = 1 + kSalt + kTail;

std::uint32_t ReadWord(unsigned char const* bytes) {
    return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
           static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

void WriteWord(unsigned char* bytes, std::uint32_t word) {
    for (int i = 0; i < 4; ++i) {
        bytes[i] = static_cast<unsigned char>(word >> (24 - 8 * i));
    }
}

std::uint32_t ReadLittleWord(unsigned char const* bytes) {
    return static_cast<std::uint32_t>(bytes[3]) << 24 | static_cast<std::uint32_t>(bytes[2]) << 16 |
           static_cast<std::uint32_t>(bytes[1]) << 8 | bytes[0];
}

void WriteLittleWord(unsigned char* bytes, std::uint32_t word) {
    for (int i = 0; i < 4; ++i) {
        bytes[i] = static_cast<unsigned char>(word >> (8 * i));
    }
}

struct Key {
    using Reader = std::uint32_t (*)(unsigned char const*);

    explicit Key(void const* bytes, Reader read = ReadWord) {
        for (std::size_t i = 0; i < 4; ++i) {
            word[i] = read(static_cast<unsigned char const*>(bytes) + 4 * i);
        }
    }
    std::uint32_t word[4];
};

struct Block {
    std::uint32_t y = 0;
    std::uint32_t z = 0;

    static Block Read(unsigned char const* bytes) { return {ReadWord(bytes), ReadWord(bytes + 4)}; }
    void Write(unsigned char* bytes) const {
        WriteWord(bytes, y);
        WriteWord(bytes + 4, z);
    }
    Block operator^(Block other) const { return {y ^ other.y, z ^ other.z}; }
};

std::uint32_t Mix(std::uint32_t word, std::uint32_t sum, std::uint32_t left, std::uint32_t right) {
    return ((word << 4) + left) ^ (word + sum) ^ ((word >> 5) + right);
}

Block Encrypt(Block block, Key const& key) {
    std::uint32_t sum = 0;
    for (int round = 0; round < kRounds; ++round) {
        sum += kDelta;
        block.y += Mix(block.z, sum, key.word[0], key.word[1]);
        block.z += Mix(block.y, sum, key.word[2], key.word[3]);
    }
    return block;
}

Block Decrypt(Block block, Key const& key) {
    std::uint32_t sum = kDelta * kRounds;
    for (int round = 0; round < kRounds; ++round) {
        block.z -= Mix(block.y, sum, key.word[2], key.word[3]);
        block.y -= Mix(block.z, sum, key.word[0], key.word[1]);
        sum -= kDelta;
    }
    return block;
}

// Both chains of the mode: the cipher block before, and the value before that block's own ciphering.
class Encryptor {
public:
    explicit Encryptor(void const* key) : _key(key) {}

    void Next(unsigned char const* plain, unsigned char* out) {
        Block const mixed = Block::Read(plain) ^ _cipher;
        _cipher = Encrypt(mixed, _key) ^ _mixed;
        _mixed = mixed;
        _cipher.Write(out);
    }

private:
    Key _key;
    Block _cipher;
    Block _mixed;
};

class Decryptor {
public:
    explicit Decryptor(void const* key) : _key(key) {}

    void Next(unsigned char const* in, unsigned char* plain) {
        Block const cipher = Block::Read(in);
        _mixed = Decrypt(cipher ^ _mixed, _key);
        (_mixed ^ _cipher).Write(plain);
        _cipher = cipher;
    }

private:
    Key _key;
    Block _cipher;
    Block _mixed;
};

// Copies what of the plain stream's bytes [from, from + 8) lies in [begin, end); data starts at begin.
void CopyOut(unsigned char const* block, int from, int begin, int end, unsigned char* data) {
    int const first = std::max(from, begin);
    int const last = std::min(from + kBlock, end);
    if (first < last) {
        std::memcpy(data + (first - begin), block + (first - from), static_cast<std::size_t>(last - first));
    }
}

}  // namespace

void TeaEncryptBlock(void const* in, void const* key, void* out) {
    Encrypt(Block::Read(static_cast<unsigned char const*>(in)), Key(key))
        .Write(static_cast<unsigned char*>(out));
}

void TeaDecryptBlock(void const* in, void const* key, void* out) {
    Decrypt(Block::Read(static_cast<unsigned char const*>(in)), Key(key))
        .Write(static_cast<unsigned char*>(out));
}

void TeaEncryptLittleEndian(void const* in, std::size_t blockCount, void const* key, void* out) {
    Key const words(key, ReadLittleWord);
    auto const* next = static_cast<unsigned char const*>(in);
    auto* to = static_cast<unsigned char*>(out);
    for (; blockCount > 0; --blockCount, next += kBlock, to += kBlock) {
        Block const block = Encrypt({ReadLittleWord(next), ReadLittleWord(next + 4)}, words);
        WriteLittleWord(to, block.y);
        WriteLittleWord(to + 4, block.z);
    }
}

int zk_symmetry_encrypt2_length(int plainLength) {
    if (plainLength < 0 || plainLength > std::numeric_limits<int>::max() - kOverhead - (kBlock - 1)) {
        return 0;
    }
    return (plainLength + kOverhead + (kBlock - 1)) / kBlock * kBlock;
}

void zk_symmetry_encrypt2(void const* in, int inLength, void const* key, void* out, int* outLength) {
    int const total = zk_symmetry_encrypt2_length(inLength);
    *outLength = total;
    if (total == 0) {
        return;
    }
    int const pad = total - inLength - kOverhead;
    int const head = 1 + pad + kSalt;
    // The padding only makes equal texts differ, so a failing source does no harm. The C library's own
    // generator is left alone: its sequence belongs to the game.
    unsigned char padding[1 + kBlock - 1 + kSalt] = {};
    Platform::RandomBytes(padding, static_cast<std::size_t>(head));
    padding[0] = static_cast<unsigned char>((padding[0] & 0xF8) | pad);

    auto const* data = static_cast<unsigned char const*>(in);
    auto* next = static_cast<unsigned char*>(out);
    Encryptor encryptor(key);
    for (int from = 0; from < total; from += kBlock, next += kBlock) {
        unsigned char block[kBlock] = {};
        for (int i = 0; i < kBlock && from + i < head + inLength; ++i) {
            int const at = from + i;
            block[i] = at < head ? padding[at] : data[at - head];
        }
        encryptor.Next(block, next);
    }
}

bool zk_symmetry_decrypt2(void const* in, int inLength, void const* key, void* out, int* outLength) {
    if (inLength % kBlock != 0 || inLength < 2 * kBlock) {
        return false;
    }
    auto const* next = static_cast<unsigned char const*>(in);
    Decryptor decryptor(key);
    unsigned char block[kBlock];
    decryptor.Next(next, block);
    int const pad = block[0] & 7;
    int const plainLength = inLength - pad - kOverhead;
    if (plainLength < 0 || plainLength > *outLength) {
        return false;
    }
    *outLength = plainLength;

    int const begin = 1 + pad + kSalt;
    int const end = begin + plainLength;
    unsigned char tail[kTail] = {};
    for (int from = 0;;) {
        CopyOut(block, from, begin, end, static_cast<unsigned char*>(out));
        CopyOut(block, from, end, inLength, tail);
        from += kBlock;
        if (from == inLength) {
            break;
        }
        decryptor.Next(next + from, block);
    }
    return std::all_of(tail, tail + kTail, [](unsigned char byte) { return byte == 0; });
}

}  // namespace Ubrix::Crypto
