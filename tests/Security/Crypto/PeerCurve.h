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

inline constexpr Curve kCurves[] = {{"secp160r1", &Ubrix::kSecp160r1, NID_secp160r1},
                                    {"secp192r1", &Ubrix::kSecp192r1, NID_X9_62_prime192v1},
                                    {"secp224r1", &Ubrix::kSecp224r1, NID_secp224r1},
                                    {"secp256r1", &Ubrix::kSecp256r1, NID_X9_62_prime256v1},
                                    {"secp256k1", &Ubrix::kSecp256k1, NID_secp256k1}};
inline constexpr Curve const& kKoblitz = kCurves[4];

inline std::string BigEndian(unsigned int value, std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[size - 1 - i] = static_cast<char>(value >> (8 * i));
    }
    return bytes;
}

inline BigNumber FromBytes(std::string const& bytes) {
    return BigNumber(BN_bin2bn(reinterpret_cast<unsigned char const*>(bytes.data()),
                               static_cast<int>(bytes.size()), nullptr));
}

class Peer {
public:
    explicit Peer(Curve const& curve)
        : _context(BN_CTX_new()),
          _group(EC_GROUP_new_by_curve_name(curve.id)),
          _bytes(static_cast<std::size_t>(curve.record->numBytes)) {}

    // The big-endian scalar times a point, X then Y, or times the base point for an empty one. Empty for the
    // point at infinity, and for a point that isn't on the curve.
    std::string Multiply(std::string const& scalar, std::string const& point) const {
        BigNumber const k = FromBytes(scalar);
        std::unique_ptr<EC_POINT, Free> const product(EC_POINT_new(_group.get()));
        int good = 0;
        if (point.empty()) {
            good = EC_POINT_mul(_group.get(), product.get(), k.get(), nullptr, nullptr, _context.get());
        } else {
            std::string const encoded = "\x04" + point;
            good = EC_POINT_oct2point(_group.get(), product.get(),
                                      reinterpret_cast<unsigned char const*>(encoded.data()), encoded.size(),
                                      _context.get()) &&
                   EC_POINT_mul(_group.get(), product.get(), nullptr, product.get(), k.get(), _context.get());
        }
        if (good == 0 || EC_POINT_is_at_infinity(_group.get(), product.get()) == 1) {
            return "";
        }
        std::string encoded(1 + 2 * _bytes, '\0');
        EC_POINT_point2oct(_group.get(), product.get(), POINT_CONVERSION_UNCOMPRESSED,
                           reinterpret_cast<unsigned char*>(&encoded[0]), encoded.size(), _context.get());
        return encoded.substr(1);
    }

private:
    Context _context;
    std::unique_ptr<EC_GROUP, Free> _group;
    std::size_t _bytes;
};

}  // namespace PeerCurve
