// Hexadecimal text. Thread-safe.
#pragma once

namespace Ubrix::Crypto {

// Decodes pairs of digits, both cases.
// Returns: false at the first character that is no digit; the pairs before it are then written, the rest of
//          bytes is untouched. True otherwise. With text or bytes null, or length zero or odd, it does
//          nothing and returns true.
// In:      text:  length characters; no terminator needed
// Out:     bytes: length / 2 bytes
bool HexToBytes(char const* text, unsigned int length, void* bytes);

}  // namespace Ubrix::Crypto
