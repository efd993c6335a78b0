// Scalar multiplication on secp256k1 for machines with 64-bit words.
#pragma once

#include "Security/Crypto/CurveRecord.h"

namespace Ubrix {

// Whether this machine has products of 64-bit words, and so Secp256k1Multiply.
#if defined(__SIZEOF_INT128__)
constexpr bool kHasWideWords = true;
#else
constexpr bool kHasWideWords = false;
#endif

// The same product as LadderMultiply's with kSecp256k1, several times as fast. Signed windows of four bits
// over a table that is always read whole, so that neither steps nor addresses depend on the scalar.
// Thread-safe. In:  point:     any coordinates; it may lie on another curve y^2 = x^3 + b: the product is
// then that curve's
//      scalar:    8 words, any value; secret
//      startingZ: a random number from 1 to p - 1 that hides the intermediate values, or null for none
// Out: result:    the product; all zero for the point at infinity, and where an off-curve point of small
// order
//                 leads there on the way
void Secp256k1Multiply(CurvePoint& result, CurvePoint const& point, Word const* scalar,
                       Word const* startingZ);

}  // namespace Ubrix
