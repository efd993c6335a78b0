// Scalar multiplication on secp256k1 for machines with 64-bit words.
#pragma once

#include "Security/Crypto/CurveRecord.h"

namespace Ubrix::Crypto {

// Whether this machine has products of 64-bit words, and so Secp256k1Multiply.
#if defined(__SIZEOF_INT128__)
constexpr bool kHasWideWords = true;
#else
constexpr bool kHasWideWords = false;
#endif

// The same product as LadderMultiply's with kSecp256k1, several times as fast. Signed windows of four bits
// over a table that is always read whole, so that neither steps nor addresses depend on the scalar.
// Thread-safe.
//
// In:  point:     coordinates in 8 words each; a point off the curve gives a result without meaning
//      scalar:    8 words, any value; secret
//      startingZ: a random number from 1 to p - 1 that hides the intermediate values, or null for none
// Out: result:    the product; may be the same memory as point. All zero, the point at infinity, for a
//                 multiple of the order.
void Secp256k1Multiply(CurvePoint& result, CurvePoint const& point, Word const* scalar,
                       Word const* startingZ);

}  // namespace Ubrix::Crypto
