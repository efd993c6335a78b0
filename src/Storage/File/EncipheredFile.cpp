#include "Storage/File/EncipheredFile.h"

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

#include "Security/Crypto/Md5.h"

namespace Ubrix {

namespace {

constexpr std::size_t kBaseHeadSize = 12;
constexpr std::size_t kVersionAt = 2;
constexpr std::size_t kHeadLengthAt = 4;
constexpr std::size_t kBodyLengthAt = 8;
constexpr std::size_t kKindAt = 12;
constexpr std::size_t kPublicKeyLengthAt = 14;
constexpr std::size_t kPublicKeyAt = 16;
constexpr std::size_t kDigestLengthAt = 80;
constexpr std::size_t kDigestAt = 82;
constexpr int kTea = 1;

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

void Put(unsigned char* bytes, std::uint32_t number, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<unsigned char>(number >> (8 * i));
    }
}

std::uint32_t Take(unsigned char const* bytes, std::size_t size) {
    std::uint32_t number = 0;
    for (std::size_t i = size; i-- > 0;) {
        number = number << 8 | bytes[i];
    }
    return number;
}

int TakeShort(unsigned char const* bytes) {
    return static_cast<int>(Take(bytes, 2));
}

bool ReadExactly(std::FILE* stream, void* bytes, std::size_t size) {
    return std::fread(bytes, 1, size, stream) == size;
}

EncipheredFault CheckHead(std::FILE* stream, unsigned char* head, int& number) {
    if (!ReadExactly(stream, head, kBaseHeadSize)) {
        return EncipheredFault::ShortBaseHead;
    }
    number = TakeShort(head);
    if (number != kEncipheredMagic) {
        return EncipheredFault::Magic;
    }
    number = TakeShort(head + kVersionAt);
    if (number < kEncipheredVersion) {
        return EncipheredFault::Version;
    }
    if (Take(head + kHeadLengthAt, 4) != kEncipheredHeadSize ||
        !ReadExactly(stream, head + kBaseHeadSize, kEncipheredHeadSize - kBaseHeadSize)) {
        return EncipheredFault::BadExtendedHead;
    }
    number = TakeShort(head + kKindAt);
    if (number != kTea) {
        return EncipheredFault::EncryptionKind;
    }
    number = TakeShort(head + kPublicKeyLengthAt);
    if (number != kEncipheredPublicKeySize) {
        return EncipheredFault::PublicKeyLength;
    }
    number = TakeShort(head + kDigestLengthAt);
    return number == kEncipheredDigestSize ? EncipheredFault::None : EncipheredFault::DigestLength;
}

// Whether the file goes on for `size` bytes from where it stands.
bool HasBytesLeft(std::FILE* stream, std::uint32_t size) {
    long const position = std::ftell(stream);
    if (position < 0 || size > INT_MAX || std::fseek(stream, 0, SEEK_END) != 0) {
        return false;
    }
    long const end = std::ftell(stream);
    return end >= position && end - position >= static_cast<long long>(size) &&
           std::fseek(stream, position, SEEK_SET) == 0;
}

EncipheredFault ReadBody(std::FILE* stream, unsigned char const* head, std::vector<unsigned char>& body) {
    std::uint32_t const size = Take(head + kBodyLengthAt, 4);
    if (!HasBytesLeft(stream, size)) {
        return EncipheredFault::ShortBody;
    }
    body.resize(size);
    if (!ReadExactly(stream, body.data(), size)) {
        return EncipheredFault::ShortBody;
    }
    unsigned char digest[kEncipheredDigestSize];
    Md5Digest(digest, body.data(), size);
    return std::memcmp(digest, head + kDigestAt, sizeof digest) == 0 ? EncipheredFault::None
                                                                     : EncipheredFault::Digest;
}

}  // namespace

void MakeEncipheredHead(void const* publicKey, void const* body, unsigned int bodySize, unsigned char* head) {
    Put(head, kEncipheredMagic, 2);
    Put(head + kVersionAt, kEncipheredVersion, 2);
    Put(head + kHeadLengthAt, kEncipheredHeadSize, 4);
    Put(head + kBodyLengthAt, bodySize, 4);
    Put(head + kKindAt, kTea, 2);
    Put(head + kPublicKeyLengthAt, kEncipheredPublicKeySize, 2);
    std::memcpy(head + kPublicKeyAt, publicKey, kEncipheredPublicKeySize);
    Put(head + kDigestLengthAt, kEncipheredDigestSize, 2);
    Md5Digest(head + kDigestAt, body, bodySize);
}

EncipheredContent ReadEncipheredFile(char const* path) {
    EncipheredContent content;
    Stream const stream(std::fopen(path, "rb"), std::fclose);
    if (stream == nullptr) {
        content.fault = EncipheredFault::CantOpen;
        return content;
    }
    unsigned char head[kEncipheredHeadSize];
    content.fault = CheckHead(stream.get(), head, content.number);
    if (content.fault == EncipheredFault::None) {
        content.fault = ReadBody(stream.get(), head, content.body);
    }
    if (content.fault != EncipheredFault::None) {
        content.body.clear();
    }
    return content;
}

}  // namespace Ubrix
