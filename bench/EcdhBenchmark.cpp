// The key agreement beside OpenSSL's constant-time multiplication: one of the base point and one of another
// point each. The time spent on draws, inversions and encoding counts against the agreement alone.
#include "Security/Crypto/Ecdh.h"

#include <benchmark/benchmark.h>
#include <openssl/ec.h>
#include <openssl/obj_mac.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <vector>

#include "Security/Crypto/CurveLadder.h"
#include "Security/Crypto/Curves.h"

namespace {

using namespace Ubrix::Crypto;

struct Free {
    void operator()(BIGNUM* number) const { BN_clear_free(number); }
    void operator()(BN_CTX* context) const { BN_CTX_free(context); }
    void operator()(EC_GROUP* group) const { EC_GROUP_free(group); }
    void operator()(EC_POINT* point) const { EC_POINT_free(point); }
};

class Peer {
public:
    Peer()
        : _group(EC_GROUP_new_by_curve_name(NID_secp256k1)),
          _context(BN_CTX_new()),
          _scalar(BN_new()),
          _server(EC_POINT_new(_group.get())),
          _product(EC_POINT_new(_group.get())) {
        Draw();
        Multiply(_server.get(), nullptr);
    }

    void Agree() {
        Draw();
        Multiply(_product.get(), nullptr);
        Multiply(_product.get(), _server.get());
    }

private:
    void Draw() { BN_priv_rand_range(_scalar.get(), EC_GROUP_get0_order(_group.get())); }
    void Multiply(EC_POINT* product, EC_POINT const* point) {
        BIGNUM const* const ofBase = point == nullptr ? _scalar.get() : nullptr;
        BIGNUM const* const ofPoint = point == nullptr ? nullptr : _scalar.get();
        if (EC_POINT_mul(_group.get(), product, ofBase, point, ofPoint, _context.get()) != 1) {
            std::abort();
        }
    }

    std::unique_ptr<EC_GROUP, Free> _group;
    std::unique_ptr<BN_CTX, Free> _context;
    std::unique_ptr<BIGNUM, Free> _scalar;
    std::unique_ptr<EC_POINT, Free> _server;
    std::unique_ptr<EC_POINT, Free> _product;
};

// The base point itself: any point on the curve serves.
constexpr char kServerKey[] =
    "79BE667EF9DCBBAC55A06295CE870B07029BFCDB2DCE28D959F2815B16F81798"
    "483ADA7726A3C4655DA4FBFC0E1108A8FD17B448A68554199C47D08FFB10D4B8";

void Agree() {
    unsigned char key[32];
    unsigned char publicKey[64];
    MakeEcdhKey(kServerKey, key, sizeof key, publicKey);
    benchmark::DoNotOptimize(key);
    benchmark::DoNotOptimize(publicKey);
}

template <typename Work>
double SecondsOf(Work work) {
    auto const begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double Median(std::vector<double> values) {
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void MakeEcdhKeyAgreement(benchmark::State& state) {
    while (state.KeepRunning()) {
        Agree();
    }
}
BENCHMARK(MakeEcdhKeyAgreement)->Unit(benchmark::kMicrosecond);

// What a machine without 64-bit words does, for the same two products.
void MakeEcdhKeyOn32BitWords(benchmark::State& state) {
    CurvePoint base = {};
    WordsSet(base.x, kSecp256k1.G, kMaxCurveWords);
    WordsSet(base.y, kSecp256k1.G + kMaxCurveWords, kMaxCurveWords);
    Word const scalar[kMaxCurveWords] = {0x6BAD1DEA, 0x0DDBA115, 0xFACADE, 0x5EA1ED};
    while (state.KeepRunning()) {
        CurvePoint product;
        LadderMultiply(product, base, scalar, nullptr, kSecp256k1);
        LadderMultiply(product, product, scalar, scalar, kSecp256k1);
        benchmark::DoNotOptimize(product);
    }
}
BENCHMARK(MakeEcdhKeyOn32BitWords)->Unit(benchmark::kMicrosecond);

void OpensslPointMul(benchmark::State& state) {
    Peer peer;
    while (state.KeepRunning()) {
        peer.Agree();
    }
}
BENCHMARK(OpensslPointMul)->Unit(benchmark::kMicrosecond);

// Both in turn, so that a change of the machine's pace hits both alike. The counter is the peer's median time
// over ours: how many times its rate.
void MakeEcdhKeyRateOverOpenssl(benchmark::State& state) {
    Peer peer;
    std::vector<double> own;
    std::vector<double> others;
    while (state.KeepRunning()) {
        own.push_back(SecondsOf(Agree));
        others.push_back(SecondsOf([&peer] { peer.Agree(); }));
    }
    state.counters["ratio"] = Median(others) / Median(own);
}
BENCHMARK(MakeEcdhKeyRateOverOpenssl)->Iterations(2000)->Unit(benchmark::kMicrosecond);

}  // namespace
