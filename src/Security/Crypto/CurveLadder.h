// Scalar multiplication on any of the curves, on 32-bit words.
#pragma once

#include "Security/Crypto/CurveRecord.h"

namespace Ubrix::Crypto {

// A Montgomery ladder of additions that share one Z: the same steps for every scalar. Thread-safe.
// In:  point:     coordinates below p; a point off the curve gives a result without meaning
//      scalar:    OrderWords(curve) words, below 2^numNBits; secret
//      startingZ: a random number from 1 to p - 1 that hides the intermediate values, or null for none
// Out: result:    the product; may be the same memory as point. All zero, the point at infinity, for a
//                 multiple of the order, and for a point with a zero coordinate, whose products the method
//                 can't tell.
void LadderMultiply(CurvePoint& result, CurvePoint const& point, Word const* scalar, Word const* startingZ,
                    CurveRecord const& curve);

}  // namespace Ubrix::Crypto
