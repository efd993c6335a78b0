// Key pairs and ECDH secrets on the curves of Curves.h. No allocation, no lock; thread-safe once the
// random function is settled. Time doesn't depend on a private key.
//
// Outside numbers are big-endian: a private key has (numNBits + 7) / 8 bytes, a public key 2 * numBytes (X,
// then Y), a secret numBytes (the X coordinate).
#pragma once

#include <cstddef>

#include "Security/Crypto/CurveRecord.h"

namespace Ubrix::Crypto {

using EccRandomFunction = bool (*)(void* bytes, std::size_t length);

// Replaces the process-wide random function, which starts as Platform::RandomBytes. Null: no
// key can be made, and secrets are computed without blinding. Not thread-safe: set it before any use.
void EccSetRandom(EccRandomFunction random);

// Draws a private key and computes its public half.
// Returns: 1; 0 if the random function fails or gives no usable key in 64 draws
// In:      curve:      one of the five records
// Out:     publicKey:  2 * numBytes bytes
//          privateKey: (numNBits + 7) / 8 bytes
// On failure both outputs are untouched.
int EccMakeKey(unsigned char* publicKey, unsigned char* privateKey, CurveRecord const* curve);

// Computes the public half of a private key.
// Returns: 1; 0 if the private key is zero modulo the order
// In:      privateKey: (numNBits + 7) / 8 bytes
// Out:     publicKey:  2 * numBytes bytes; all zero on failure
int EccPublicKey(unsigned char const* privateKey, unsigned char* publicKey, CurveRecord const* curve);

// Computes the X coordinate of privateKey times the point publicKey. The point isn't checked for lying on the
// curve; if it doesn't, the secret has no meaning. A drawn number blinds the intermediate values, if there is
// a random function.
//
// Returns: 1; 0 if that draw fails or the product is the point at infinity
// In:      publicKey:  2 * numBytes bytes
//          privateKey: (numNBits + 7) / 8 bytes
// Out:     secret:     numBytes bytes; untouched if the draw fails, all zero for the point at infinity
int EccSharedSecret(unsigned char const* publicKey, unsigned char const* privateKey, unsigned char* secret,
                    CurveRecord const* curve);

}  // namespace Ubrix::Crypto
