// Runs the key arithmetic under valgrind with the secrets marked undefined: a branch or an address that
// depends on one is an error that memcheck counts.
#include <valgrind/memcheck.h>

#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "Security/Crypto/Curves.h"
#include "Security/Crypto/Ecc.h"

namespace {

using namespace Ubrix::Crypto;

void MarkSecret(void* bytes, std::size_t length) {
    (void)VALGRIND_MAKE_MEM_UNDEFINED(bytes, length);
}

void MarkPublic(void* bytes, std::size_t length) {
    (void)VALGRIND_MAKE_MEM_DEFINED(bytes, length);
}

// Defined bytes: whether a draw is in range is public.
bool FixedRandom(void* bytes, std::size_t length) {
    std::memset(bytes, 0x35, length);
    return true;
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
    answer += EccSharedSecret(publicKey, privateKey, secret, &curve);
    MarkPublic(&answer, sizeof answer);
    if (answer != 2) {
        std::puts("the agreement failed");
    }
}

// A lookup such as the arithmetic must never make: it proves that valgrind runs and counts the errors.
int LeakOnPurpose() {
    static int const table[2] = {3, 4};
    volatile unsigned int secret = 1;
    MarkSecret(const_cast<unsigned int*>(&secret), sizeof secret);
    return table[secret & 1U];
}

}  // namespace

int main() {
    EccSetRandom(FixedRandom);
    // Only the record itself is computed on 64-bit words, a copy on 32-bit words as the other curves are.
    CurveRecord const narrow = kSecp256k1;
    for (CurveRecord const* curve :
         {&kSecp160r1, &kSecp192r1, &kSecp224r1, &kSecp256r1, &kSecp256k1, &narrow}) {
        Agree(*curve);
    }
    unsigned long const found = VALGRIND_COUNT_ERRORS;
    int volatile leaked = LeakOnPurpose();
    (void)leaked;
    unsigned long const foundOnPurpose = VALGRIND_COUNT_ERRORS - found;
    std::printf("%lu dependencies on secrets, %lu on purpose\n", found, foundOnPurpose);
    return found == 0 && foundOnPurpose == 1 ? 0 : 1;
}
