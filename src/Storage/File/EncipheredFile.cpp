#include "Storage/File/EncipheredFile.h"

#include <climits>
#include <cstdint>
#include <cstring>

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

EncipheredFault CheckHead(unsigned char const* head, std::size_t size, int& number) {
    if (size < kBaseHeadSize) {
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
    if (Take(head + kHeadLengthAt, 4) != kEncipheredHeadSize || size < kEncipheredHeadSize) {
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
    Crypto::Md5Digest(head + kDigestAt, body, bodySize);
}

EncipheredContent CheckEnciphered(std::string_view bytes) {
    EncipheredContent content;
    auto const* const head = reinterpret_cast<unsigned char const*>(bytes.data());
    content.fault = CheckHead(head, bytes.size(), content.number);
    if (content.fault != EncipheredFault::None) {
        return content;
    }
    std::uint32_t const size = Take(head + kBodyLengthAt, 4);
    if (size > INT_MAX || bytes.size() - kEncipheredHeadSize < size) {
        content.fault = EncipheredFault::ShortBody;
        return content;
    }
    unsigned char digest[kEncipheredDigestSize];
    Crypto::Md5Digest(digest, head + kEncipheredHeadSize, size);
    if (std::memcmp(digest, head + kDigestAt, sizeof digest) != 0) {
        content.fault = EncipheredFault::Digest;
        return content;
    }
    content.body = bytes.substr(kEncipheredHeadSize, size);
    return content;
}

}  // namespace Ubrix
