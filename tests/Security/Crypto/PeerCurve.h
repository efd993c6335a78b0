// The five curves as OpenSSL computes them.
#pragma once

#include <gtest/gtest.h>
#include <openssl/bn.h>
#include <openssl/ec.h>
#include <openssl/obj_mac.h>

#include <memory>
#include <string>

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
inline constexpr Curve const& kKoblitz = kCurves[4];

class Peer {
public:
    explicit Peer(Curve const& curve) : _group(EC_GROUP_new_by_curve_name(curve.id)) {}

    // The big-endian scalar times a point, X then Y, or times the base point for an empty one. Empty for the
    // point at infinity, and for a point that isn't on the curve.
    std::string Multiply(std::string const& scalar, std::string const& point = "") const {
        auto const* scalarBytes = reinterpret_cast<unsigned char const*>(scalar.data());
        BigNumber const k(BN_bin2bn(scalarBytes, static_cast<int>(scalar.size()), nullptr));
        std::unique_ptr<EC_POINT, Free> const product(EC_POINT_new(_group.get()));
        EC_POINT_copy(product.get(), EC_GROUP_get0_generator(_group.get()));
        unsigned char bytes[65] = {POINT_CONVERSION_UNCOMPRESSED};
        point.copy(reinterpret_cast<char*>(bytes + 1), 64);
        if (!point.empty() &&
            EC_POINT_oct2point(_group.get(), product.get(), bytes, 1 + point.size(), nullptr) == 0) {
            return "";
        }
        EC_POINT_mul(_group.get(), product.get(), nullptr, product.get(), k.get(), nullptr);
        std::size_t const size = EC_POINT_point2oct(
            _group.get(), product.get(), POINT_CONVERSION_UNCOMPRESSED, bytes, sizeof bytes, nullptr);
        return {bytes + 1, bytes + size};
    }

private:
    std::unique_ptr<EC_GROUP, Free> _group;
};

}  // namespace PeerCurve
