// Arithmetic modulo a curve's p. Operands and results are numWords words below p; a result may be an operand.
// Time doesn't depend on the operands, but for an exponent. No state: any thread.
#pragma once

#include "Security/Crypto/CurveRecord.h"

namespace Ubrix::Crypto {

void ModAdd(Word* result, Word const* left, Word const* right, CurveRecord const& curve);
void ModSubtract(Word* result, Word const* left, Word const* right, CurveRecord const& curve);
void ModMultiply(Word* result, Word const* left, Word const* right, CurveRecord const& curve);
void ModSquare(Word* result, Word const* number, CurveRecord const& curve);
// Half of number modulo p, in place.
void ModHalve(Word* number, CurveRecord const& curve);
// base to the power of exponent, numWords words. The exponent is public: its bits steer the time.
void ModPower(Word* result, Word const* base, Word const* exponent, CurveRecord const& curve);
// The inverse of zero is zero.
void ModInverse(Word* result, Word const* number, CurveRecord const& curve);

}  // namespace Ubrix::Crypto
