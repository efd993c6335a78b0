// The published curves of SEC 2 that the key arithmetic knows. Immutable.
#pragma once

#include "Security/Crypto/CurveRecord.h"

namespace Ubrix::Crypto {

extern CurveRecord const kSecp160r1;
extern CurveRecord const kSecp192r1;
extern CurveRecord const kSecp224r1;
extern CurveRecord const kSecp256r1;
extern CurveRecord const kSecp256k1;

}  // namespace Ubrix::Crypto
