// The form of an enciphered file: a head of 98 bytes, then the body. Numbers are little-endian.
//
//   offset size
//    0      2   magic 0x08E4
//    2      2   version: 2 is written, 2 or above is read
//    4      4   head length: 98
//    8      4   body length
//   12      2   encryption kind: 1, TEA
//   14      2   length of the public key: 64
//   16     64   public key of the writer
//   80      2   length of the digest: 16
//   82     16   MD5 of the body
//   98          body
#pragma once

#include <cstddef>
#include <string_view>

namespace Ubrix {

constexpr std::size_t kEncipheredHeadSize = 98;
constexpr int kEncipheredMagic = 2276;
constexpr int kEncipheredVersion = 2;
constexpr int kEncipheredPublicKeySize = 64;
constexpr int kEncipheredDigestSize = 16;

// In:  publicKey: 64 bytes
//      body:      bodySize bytes
// Out: head:      98 bytes
void MakeEncipheredHead(void const* publicKey, void const* body, unsigned int bodySize, unsigned char* head);

// What is wrong with a file, in the order in which it is looked at.
enum class EncipheredFault {
    None,
    Absent,
    Unreadable,  // now: it, or its key
    ShortBaseHead,
    Magic,
    Version,
    BadExtendedHead,
    EncryptionKind,
    PublicKeyLength,
    DigestLength,
    ShortBody,
    Digest,
    Cipher,
};

struct EncipheredContent {
    EncipheredFault fault = EncipheredFault::None;
    // The number that is at fault, for the faults that are about one.
    int number = 0;
    // Still enciphered, part of the bytes that were checked; empty if there is a fault.
    std::string_view body;
};

// Checks a file's bytes up to its digest. Bytes behind the body are ignored. Thread-safe.
EncipheredContent CheckEnciphered(std::string_view bytes);

}  // namespace Ubrix
