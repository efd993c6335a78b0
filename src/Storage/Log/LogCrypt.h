// The head of a log block, the cipher of its body, and the search for blocks by hour.
// Sources: LogCrypt.cpp, LogHourScan.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "Storage/Log/autobuffer.h"

namespace Ubrix {

// Where what is in a block's head. Numbers are little-endian.
struct LogBlockLayout {
    static constexpr std::size_t kStart = 0;
    static constexpr std::size_t kSequence = 1;
    static constexpr std::size_t kBeginHour = 3;
    static constexpr std::size_t kEndHour = 4;
    static constexpr std::size_t kBodyLength = 5;
    static constexpr std::size_t kPublicKey = 9;
    static constexpr std::size_t kPublicKeySize = 64;
    static constexpr std::size_t kHeaderSize = kPublicKey + kPublicKeySize;
    static constexpr std::size_t kTailSize = 1;
};

// No lock: one thread at a time. FindHourRange and the other static operations may run on any thread.
class LogCrypt {
public:
    static constexpr char kMagicEnd = 0;

    // `serverPublicKey` is null, or 128 hexadecimal digits: a point on secp256k1, X then Y, 32 bytes each,
    // big-endian. A fresh key is agreed on; with null or a malformed text, or without random bytes, there is
    // none, and blocks stay plain.
    explicit LogCrypt(char const* serverPublicKey);
    virtual ~LogCrypt();
    LogCrypt(LogCrypt const&) = delete;
    LogCrypt& operator=(LogCrypt const&) = delete;

    std::size_t GetHeaderLen() const { return LogBlockLayout::kHeaderSize; }
    std::size_t GetTailLen() const { return LogBlockLayout::kTailSize; }

    // Writes the head of an empty block, GetHeaderLen() bytes, at the present hour.
    void WriteHeader(char* data, bool compressed);
    // 0 for an uncompressed block. Otherwise the next number from 1 to 65535, then from 1 again.
    std::uint16_t NextSequence(bool compressed);
    static void WriteEndHour(char* data);
    void WriteEndByte(char* data) const { *data = kMagicEnd; }
    // The body's length; 0 if no head starts at `data`.
    static std::uint32_t GetBodyLength(char const* data, std::size_t length);
    static void AddBodyLength(char* data, std::uint32_t add);
    // False, and no change of the outputs, if no head starts at `data`; the same for ReadOpenHeader.
    static bool ReadHours(char const* data, std::size_t length, int& begin, int& end);
    // Also takes over the head's sequence number.
    bool ReadOpenHeader(char const* data, std::size_t length, bool& compressed, std::uint32_t& bodyLength);
    // True if the head at `data` could be this writer's own: of this kind, and under this key or none.
    bool IsOwnHeader(char const* data, bool compressed) const;

    // Sets `out` to the enciphered span. Its last `tailLength` bytes, fewer than 8, stay plain. Without a key
    // all is plain, and the tail is 0.
    void EncipherSpan(char const* data, std::size_t length, AutoBuffer& out, unsigned int& tailLength) const;
    // Sets `out` to a whole uncompressed, plain block of `length` bytes.
    void SealPlainBlock(char const* data, std::size_t length, AutoBuffer& out);

    // Finds the part of a block file that holds the hours from `beginHour` on and before `endHour`. Damage is
    // slid over, byte by byte. Time grows with the size of the file, memory doesn't.
    //
    // True if the range isn't empty. Otherwise the reason is appended to `errorText`, for a human; the
    // positions are 0 if nothing was found, and unchanged if the file can't be read at all.
    static bool FindHourRange(char const* logPath, int beginHour, int endHour, unsigned long& beginPos,
                              unsigned long& endPos, std::string& errorText);

private:
    char StartByte(bool compressed) const;

    // What the last head bears.
    std::uint16_t sequence_ = 0;
    unsigned char teaKey_[16] = {};
    // All zero without a key.
    unsigned char clientPublicKey_[LogBlockLayout::kPublicKeySize] = {};
    bool isCrypt_ = false;
    std::uint16_t sequenceCounter_ = 0;
};

}  // namespace Ubrix
