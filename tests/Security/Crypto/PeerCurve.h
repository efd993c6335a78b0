// The five curves as OpenSSL computes them.
#pragma once

#include <gtest/gtest.h>
#include <openssl/bn.h>
#include <openssl/ec.h>
#include <openssl/obj_mac.h>

#include <memory>
#include <vector>

#include "Security/Crypto/CurveRecord.h"

namespace PeerCurve {

struct Free {
    void operator()(BIGNUM* number) const { BN_free(number); }
    void operator()(BN_CTX* context) const { BN_CTX_free(context); }
    void operator()(EC_GROUP* group) const { EC_GROUP_free(group); }
    void operator()(EC_POINT* point) const { EC_POINT_free(point); }
};
using BigNumber = std::unique_ptr<BIGNUM, Free>;
using Context = std::unique_ptr<BN_CTX, Free>;
using Bytes = std::vector<unsigned char>;

struct Curve {
    char const* name;
    Ubrix::CurveRecord const* record;
    int id;
};

// Only the record itself is computed on 64-bit words, a copy on 32-bit words as the other curves are.
inline Ubrix::CurveRecord const kNarrowSecp256k1 = Ubrix::kSecp256k1;
inline constexpr Curve kCurves[] = {{"secp160r1 ", &Ubrix::kSecp160r1, NID_secp160r1},
                                    {"secp192r1 ", &Ubrix::kSecp192r1, NID_X9_62_prime192v1},
                                    {"secp224r1 ", &Ubrix::kSecp224r1, NID_secp224r1},
                                    {"secp256r1 ", &Ubrix::kSecp256r1, NID_X9_62_prime256v1},
                                    {"secp256k1 ", &Ubrix::kSecp256k1, NID_secp256k1},
                                    {"narrow secp256k1 ", &kNarrowSecp256k1, NID_secp256k1}};

// The big-endian scalar times a point, X then Y, or times the base point for an empty one. Empty for the
// point at infinity.
inline Bytes Multiply(Curve const& curve, Bytes const& scalar, Bytes point = {}) {
    std::unique_ptr<EC_GROUP, Free> const group(EC_GROUP_new_by_curve_name(curve.id));
    BigNumber const k(BN_bin2bn(scalar.data(), static_cast<int>(scalar.size()), nullptr));
    std::unique_ptr<EC_POINT, Free> const product(
        EC_POINT_dup(EC_GROUP_get0_generator(group.get()), group.get()));
    if (!point.empty()) {
        point.insert(point.begin(), POINT_CONVERSION_UNCOMPRESSED);
        EXPECT_EQ(EC_POINT_oct2point(group.get(), product.get(), point.data(), point.size(), nullptr), 1);
    }
    EC_POINT_mul(group.get(), product.get(), nullptr, product.get(), k.get(), nullptr);
    point.resize(65);
    point.resize(EC_POINT_point2oct(group.get(), product.get(), POINT_CONVERSION_UNCOMPRESSED, point.data(),
                                    65, nullptr));
    return {point.begin() + 1, point.end()};
}

}  // namespace PeerCurve
