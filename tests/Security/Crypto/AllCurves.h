// Every curve that the key arithmetic knows, and the peer's number of it.
#pragma once

#include "Readers/PeerCurve.h"
#include "Security/Crypto/Curves.h"

struct Curve {
    char const* name;
    Ubrix::Crypto::CurveRecord const* record;
    int id;
};

// Only the record itself is computed on 64-bit words, a copy on 32-bit words as the other curves are.
inline Ubrix::Crypto::CurveRecord const kNarrowSecp256k1 = Ubrix::Crypto::kSecp256k1;
inline constexpr Curve kCurves[] = {{"secp160r1 ", &Ubrix::Crypto::kSecp160r1, NID_secp160r1},
                                    {"secp192r1 ", &Ubrix::Crypto::kSecp192r1, NID_X9_62_prime192v1},
                                    {"secp224r1 ", &Ubrix::Crypto::kSecp224r1, NID_secp224r1},
                                    {"secp256r1 ", &Ubrix::Crypto::kSecp256r1, NID_X9_62_prime256v1},
                                    {"secp256k1 ", &Ubrix::Crypto::kSecp256k1, NID_secp256k1},
                                    {"narrow secp256k1 ", &kNarrowSecp256k1, NID_secp256k1}};
