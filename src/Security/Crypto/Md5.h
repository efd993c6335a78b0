// MD5 as RFC 1321 gives it, for recognising damaged files: it protects nothing against an attacker.
// All functions are thread-safe.
#pragma once

#include <string>

namespace Ubrix::Crypto {

// In:  data:   length bytes; may be null if length is 0
// Out: digest: 16 bytes
void Md5Digest(void* digest, void const* data, unsigned int length);

// In:  path:   a zero-terminated path, not null
// Out: digest: 16 bytes; unchanged if the file can't be opened. A read error counts as the end of the file.
void Md5File(void* digest, char const* path);

// In:  digest: 16 bytes
// Out: text:   33 bytes: 32 lower-case hexadecimal digits and a terminator
void Md5Hex(void const* digest, char* text);

// Returns: the 32 lower-case digits of Md5File; 32 zeros if the file can't be opened
std::string Md5FileHex(char const* path);

}  // namespace Ubrix::Crypto
