// Reduction of products modulo the five primes; see CurveRecord::mmodFast. No state: any
// thread.
#pragma once

#include "Security/Crypto/CurveRecord.h"

namespace Ubrix::Crypto {

void ReduceSecp160r1(Word* result, Word* product, CurveRecord const& curve);
void ReduceSecp192r1(Word* result, Word* product, CurveRecord const& curve);
void ReduceSecp224r1(Word* result, Word* product, CurveRecord const& curve);
void ReduceSecp256r1(Word* result, Word* product, CurveRecord const& curve);
void ReduceSecp256k1(Word* result, Word* product, CurveRecord const& curve);

}  // namespace Ubrix::Crypto
