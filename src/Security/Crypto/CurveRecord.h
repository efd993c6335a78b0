// What the key arithmetic knows of a curve.
#pragma once

#include "Security/Crypto/CurveWords.h"

namespace Ubrix::Crypto {

// One curve y^2 = x^3 + ax + b over the integers modulo p. Immutable. Numbers are 32-bit words, least
// significant first, zero above the curve's own word count.
struct CurveRecord {
    // Words of a coordinate.
    std::int8_t numWords;
    // Bytes of a coordinate on the outside.
    std::int8_t numBytes;
    // Bit length of the order.
    std::int16_t numNBits;
    Word p[kMaxCurveWords];
    Word n[kMaxCurveWords];
    // The base point, X then Y, eight words each.
    Word G[2 * kMaxCurveWords];
    Word b[kMaxCurveWords];
    // Doubles a point in Jacobian form in place. A point whose z is zero doesn't change.
    void (*doubleJacobian)(Word* x, Word* y, Word* z, CurveRecord const& curve);
    // Replaces a by a square root modulo p. If a has none, what is there then is no root: square it to
    // know. For public numbers: its time depends on a.
    void (*modSqrt)(Word* a, CurveRecord const& curve);
    // The right-hand side of the curve equation for x, below p. result may be x.
    void (*xSide)(Word* result, Word const* x, CurveRecord const& curve);
    // Reduces a product of 2 * numWords words to its rest modulo p. The product is overwritten.
    void (*mmodFast)(Word* result, Word* product, CurveRecord const& curve);
};

// A point in numWords words each. All zero: the point at infinity.
struct CurvePoint {
    Word x[kMaxCurveWords];
    Word y[kMaxCurveWords];
};

// Words of a number below the order.
inline int OrderWords(CurveRecord const& curve) {
    return (curve.numNBits + kWordBits - 1) / kWordBits;
}

}  // namespace Ubrix::Crypto
