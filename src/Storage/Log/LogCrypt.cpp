#include "Storage/Log/LogCrypt.h"

#include <algorithm>
#include <atomic>
#include <cstring>

#include "Security/Crypto/Ecdh.h"
#include "Security/Crypto/Tea.h"
#include "Security/Crypto/Wipe.h"
#include "System/Time/ClockSource.h"

namespace Ubrix {

namespace {

using Layout = LogBlockLayout;

constexpr std::size_t kUnit = 8;

enum StartByteValue : char {
    kEncipheredPlain = 6,
    kEncipheredCompressed = 7,
    kPlain = 8,
    kCompressed = 9,
};

char LocalHour() {
    return static_cast<char>(ClockSource::Current().Local().hour);
}

unsigned int ByteAt(char const* data, std::size_t at) {
    return static_cast<unsigned char>(data[at]);
}

// A signed byte, whatever the system's char is.
int HourAt(char const* data, std::size_t at) {
    int const byte = static_cast<unsigned char>(data[at]);
    return byte < 0x80 ? byte : byte - 0x100;
}

bool IsHeader(char const* data, std::size_t length) {
    return length >= Layout::kHeaderSize && data[0] >= kEncipheredPlain && data[0] <= kCompressed;
}

std::uint32_t BodyLengthAt(char const* data) {
    char const* field = data + Layout::kBodyLength;
    return ByteAt(field, 3) << 24 | ByteAt(field, 2) << 16 | ByteAt(field, 1) << 8 | ByteAt(field, 0);
}

// In one store: a process that dies here leaves the old length or the new one. And behind what it counts.
void PutBodyLength(char* data, std::uint32_t length) {
    unsigned char field[4];
    for (unsigned int i = 0; i < 4; ++i) {
        field[i] = static_cast<unsigned char>(length >> (8 * i));
    }
    std::atomic_signal_fence(std::memory_order_seq_cst);
    std::memcpy(data + Layout::kBodyLength, field, sizeof field);
}

}  // namespace

LogCrypt::LogCrypt(char const* serverPublicKey) {
    Crypto::MakeEcdhKey(serverPublicKey, teaKey_, sizeof teaKey_, clientPublicKey_);
    // No point of the curve has two zero coordinates: they are there only where no key was made.
    isCrypt_ = std::any_of(std::begin(clientPublicKey_), std::end(clientPublicKey_),
                           [](unsigned char byte) { return byte != 0; });
}

LogCrypt::~LogCrypt() {
    Crypto::Wipe(teaKey_, sizeof teaKey_);
}

char LogCrypt::StartByte(bool compressed) const {
    if (isCrypt_) {
        return compressed ? kEncipheredCompressed : kEncipheredPlain;
    }
    return compressed ? kCompressed : kPlain;
}

void LogCrypt::WriteHeader(char* data, bool compressed) {
    sequence_ = NextSequence(compressed);
    data[Layout::kStart] = StartByte(compressed);
    data[Layout::kSequence] = static_cast<char>(sequence_);
    data[Layout::kSequence + 1] = static_cast<char>(sequence_ >> 8);
    data[Layout::kBeginHour] = data[Layout::kEndHour] = LocalHour();
    PutBodyLength(data, 0);
    std::memcpy(data + Layout::kPublicKey, clientPublicKey_, sizeof clientPublicKey_);
}

std::uint16_t LogCrypt::NextSequence(bool compressed) {
    if (!compressed) {
        return 0;
    }
    if (++sequenceCounter_ == 0) {
        ++sequenceCounter_;
    }
    return sequenceCounter_;
}

void LogCrypt::WriteEndHour(char* data) {
    data[Layout::kEndHour] = LocalHour();
}

std::uint32_t LogCrypt::GetBodyLength(char const* data, std::size_t length) {
    return IsHeader(data, length) ? BodyLengthAt(data) : 0;
}

void LogCrypt::AddBodyLength(char* data, std::uint32_t add) {
    PutBodyLength(data, BodyLengthAt(data) + add);
}

bool LogCrypt::ReadHours(char const* data, std::size_t length, int& begin, int& end) {
    if (!IsHeader(data, length)) {
        return false;
    }
    begin = HourAt(data, Layout::kBeginHour);
    end = HourAt(data, Layout::kEndHour);
    return true;
}

bool LogCrypt::ReadOpenHeader(char const* data, std::size_t length, bool& compressed,
                              std::uint32_t& bodyLength) {
    if (!IsHeader(data, length)) {
        return false;
    }
    compressed = data[0] == kEncipheredCompressed || data[0] == kCompressed;
    bodyLength = BodyLengthAt(data);
    sequence_ = static_cast<std::uint16_t>(ByteAt(data, Layout::kSequence + 1) << 8 |
                                           ByteAt(data, Layout::kSequence));
    return true;
}

bool LogCrypt::IsOwnHeader(char const* data, bool compressed) const {
    return data[0] == StartByte(compressed) &&
           std::memcmp(data + Layout::kPublicKey, clientPublicKey_, sizeof clientPublicKey_) == 0;
}

void LogCrypt::EncipherSpan(char const* data, std::size_t length, AutoBuffer& out,
                            unsigned int& tailLength) const {
    out.Length(0, 0);
    out.Write(data, length);
    tailLength = 0;
    if (isCrypt_ && length > 0) {
        Crypto::TeaEncryptLittleEndian(out.Ptr(), length / kUnit, teaKey_, out.Ptr());
        tailLength = static_cast<unsigned int>(length % kUnit);
    }
}

void LogCrypt::SealPlainBlock(char const* data, std::size_t length, AutoBuffer& out) {
    out.Length(0, GetHeaderLen() + GetTailLen() + length);
    char* const block = out.Ptr();
    WriteHeader(block, false);
    AddBodyLength(block, static_cast<std::uint32_t>(length));
    WriteEndByte(block + GetHeaderLen() + length);
    std::memcpy(block + GetHeaderLen(), data, length);
}

}  // namespace Ubrix
