// Elliptic curves as OpenSSL computes them.
#pragma once

#include <openssl/bn.h>
#include <openssl/ec.h>
#include <openssl/obj_mac.h>

#include <map>
#include <memory>
#include <vector>

namespace PeerCurve {

struct Free {
    void operator()(BIGNUM* number) const { BN_clear_free(number); }
    void operator()(BN_CTX* context) const { BN_CTX_free(context); }
    void operator()(EC_GROUP* group) const { EC_GROUP_free(group); }
    void operator()(EC_POINT* point) const { EC_POINT_free(point); }
};
using BigNumber = std::unique_ptr<BIGNUM, Free>;
using Context = std::unique_ptr<BN_CTX, Free>;
using Bytes = std::vector<unsigned char>;

// The product with a point, X then Y, or with the base point for an empty one. Empty for the point at
// infinity, and for a point that isn't on the curve.
inline Bytes Multiply(int curve, BIGNUM const& scalar, Bytes point = {}) {
    static std::map<int, std::unique_ptr<EC_GROUP, Free>> groups;
    auto& group = groups[curve];
    if (group == nullptr) {
        group.reset(EC_GROUP_new_by_curve_name(curve));
    }
    std::unique_ptr<EC_POINT, Free> const product(
        EC_POINT_dup(EC_GROUP_get0_generator(group.get()), group.get()));
    if (!point.empty()) {
        point.insert(point.begin(), POINT_CONVERSION_UNCOMPRESSED);
        if (EC_POINT_oct2point(group.get(), product.get(), point.data(), point.size(), nullptr) == 0) {
            return {};
        }
    }
    EC_POINT_mul(group.get(), product.get(), nullptr, product.get(), &scalar, nullptr);
    point.resize(65);
    point.resize(EC_POINT_point2oct(group.get(), product.get(), POINT_CONVERSION_UNCOMPRESSED, point.data(),
                                    point.size(), nullptr));
    return {point.begin() + 1, point.end()};
}

}  // namespace PeerCurve
