// Runs the key arithmetic under valgrind with the secrets marked undefined: a branch or an address that
// depends on one is an error that memcheck counts.
#include <valgrind/memcheck.h>

#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "Security/Crypto/CurveLadder.h"
#include "Security/Crypto/Ecc.h"
#include "Security/Crypto/Secp256k1Wide.h"

namespace {

using namespace Ubrix;

void MarkSecret(void* bytes, std::size_t length) {
    (void)VALGRIND_MAKE_MEM_UNDEFINED(bytes, length);
}

void MarkPublic(void* bytes, std::size_t length) {
    (void)VALGRIND_MAKE_MEM_DEFINED(bytes, length);
}

// Defined bytes: whether a draw is in range is public.
bool FixedRandom(void* bytes, unsigned int length) {
    std::memset(bytes, 0x35, length);
    return true;
}

void MultiplyOn(CurveRecord const& curve) {
    CurvePoint point = {};
    WordsSet(point.x, curve.G, curve.numWords);
    WordsSet(point.y, curve.G + kMaxCurveWords, curve.numWords);
    Word scalar[kMaxCurveWords] = {0x1234567, 0x89ABCDE};
    Word startingZ[kMaxCurveWords] = {0x7654321};
    MarkSecret(scalar, sizeof scalar);
    MarkSecret(startingZ, sizeof startingZ);
    CurvePoint product;
    LadderMultiply(product, point, scalar, startingZ, curve);
    if constexpr (kHasWideWords) {
        Secp256k1Multiply(product, point, scalar, startingZ);
    }
}

// The two operations of the agreement; their answers are public.
void Agree(CurveRecord const& curve) {
    unsigned char privateKey[32];
    unsigned char publicKey[64];
    unsigned char secret[32];
    std::memset(privateKey, 0x2A, sizeof privateKey);
    MarkSecret(privateKey, sizeof privateKey);
    int answer = EccPublicKey(privateKey, publicKey, &curve);
    MarkPublic(publicKey, sizeof publicKey);
    MarkPublic(&answer, sizeof answer);
    int answerOfSecret = EccSharedSecret(publicKey, privateKey, secret, &curve);
    MarkPublic(&answerOfSecret, sizeof answerOfSecret);
    if (answer != 1 || answerOfSecret != 1) {
        std::puts("the agreement failed");
    }
}

// A lookup such as the arithmetic must never make: it proves that the errors are counted.
int LeakOnPurpose() {
    static int const table[2] = {3, 4};
    volatile unsigned int secret = 1;
    MarkSecret(const_cast<unsigned int*>(&secret), sizeof secret);
    return table[secret & 1U];
}

}  // namespace

int main() {
    if (RUNNING_ON_VALGRIND == 0) {
        std::puts("to be run under valgrind");
        return 2;
    }
    EccSetRandom(FixedRandom);
    for (CurveRecord const* curve : {&kSecp160r1, &kSecp192r1, &kSecp224r1, &kSecp256r1, &kSecp256k1}) {
        MultiplyOn(*curve);
        Agree(*curve);
    }
    auto const found = VALGRIND_COUNT_ERRORS;
    int volatile leaked = LeakOnPurpose();
    (void)leaked;
    auto const foundOnPurpose = VALGRIND_COUNT_ERRORS - found;
    std::printf("%u dependencies on secrets, %u on purpose\n", static_cast<unsigned int>(found),
                static_cast<unsigned int>(foundOnPurpose));
    return found == 0 && foundOnPurpose == 1 ? 0 : 1;
}
