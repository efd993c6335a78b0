// One-sided key agreement on secp256k1: an own fresh key pair against a server's public key.
#pragma once

namespace Ubrix::Crypto {

// Makes a key pair and agrees on a key with the server: ECDH, X coordinate only. The private half is wiped
// and never leaves the function. Its time doesn't depend on the private half. Thread-safe.
//
// In:  serverPublicKeyHex: 128 hexadecimal digits: X, then Y, each 32 bytes big-endian. The point is
//                          not checked for lying on the curve: a key pair is used only once.
//      keyLength:          bytes wanted in key; at most 32 are written
// Out: key:                the first keyLength bytes of the shared X coordinate, big-endian
//      clientPublicKey:    64 bytes: X, then Y, each 32 bytes big-endian
// On failure (null or malformed hexadecimal text, no random bytes, a product at infinity) both outputs stay
// as the caller set them; nothing else tells it.
void MakeEcdhKey(char const* serverPublicKeyHex, void* key, unsigned int keyLength, void* clientPublicKey);

}  // namespace Ubrix::Crypto
