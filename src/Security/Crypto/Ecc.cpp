#include "Security/Crypto/Ecc.h"

#include "Platform/Random.h"
#include "Security/Crypto/CurveLadder.h"
#include "Security/Crypto/Curves.h"
#include "Security/Crypto/Secp256k1Wide.h"
#include "Security/Crypto/Wipe.h"

namespace Ubrix::Crypto {
namespace {

constexpr int kMaxDraws = 64;

EccRandomFunction g_random = Platform::RandomBytes;

int PrivateKeyBytes(CurveRecord const& curve) {
    return (curve.numNBits + 7) / 8;
}

// A number from 1 to bound - 1. False if the random function fails, or draws nothing usable for too long.
bool DrawBelow(Word* number, Word const* bound, int bits) {
    int const count = (bits + kWordBits - 1) / kWordBits;
    Word const topMask = ~0U >> (count * kWordBits - bits);
    if (g_random == nullptr) {
        return false;
    }
    for (int draw = 0; draw < kMaxDraws; ++draw) {
        if (!g_random(number, static_cast<std::size_t>(count) * sizeof(Word))) {
            return false;
        }
        number[count - 1] &= topMask;
        // Only whether a draw was thrown away shows in the time, nothing of the one that was kept.
        if ((WordsAreBelow(number, bound, count) & (WordsAreZero(number, count) ^ 1U)) != 0) {
            return true;
        }
    }
    return false;
}

void Multiply(CurvePoint& result, CurvePoint const& point, Word const* scalar, Word const* startingZ,
              CurveRecord const& curve) {
    if constexpr (kHasWideWords) {
        if (&curve == &kSecp256k1) {
            Secp256k1Multiply(result, point, scalar, startingZ);
            return;
        }
    }
    LadderMultiply(result, point, scalar, startingZ, curve);
}

// 0 for the point at infinity, else 1.
int IsFinite(CurvePoint const& point, CurveRecord const& curve) {
    return static_cast<int>((WordsAreZero(point.x, curve.numWords) & WordsAreZero(point.y, curve.numWords)) ^
                            1U);
}

// Reads a coordinate that anyone may have sent, and brings it below p.
void ReadCoordinate(Word* coordinate, unsigned char const* bytes, CurveRecord const& curve) {
    Word reduced[kMaxCurveWords];
    WordsFromBytes(coordinate, kMaxCurveWords, bytes, curve.numBytes);
    Word const borrow = WordsSubtract(reduced, coordinate, curve.p, curve.numWords);
    WordsChoose(coordinate, reduced, borrow ^ 1U, curve.numWords);
}

// Writes the public half of a private key; 0, with zeros written, for the point at infinity.
int WritePublicKey(unsigned char* publicKey, Word const* scalar, CurveRecord const& curve) {
    CurvePoint point = {};
    WordsSet(point.x, curve.G, curve.numWords);
    WordsSet(point.y, curve.G + kMaxCurveWords, curve.numWords);
    Multiply(point, point, scalar, nullptr, curve);
    WordsToBytes(publicKey, curve.numBytes, point.x);
    WordsToBytes(publicKey + curve.numBytes, curve.numBytes, point.y);
    return IsFinite(point, curve);
}

}  // namespace

void EccSetRandom(EccRandomFunction random) {
    g_random = random;
}

int EccMakeKey(unsigned char* publicKey, unsigned char* privateKey, CurveRecord const* curve) {
    Word scalar[kMaxCurveWords];
    WipeAtExit const wipeScalar(scalar);
    if (!DrawBelow(scalar, curve->n, curve->numNBits)) {
        return 0;
    }
    // The order is prime, so a key below it never leads to the point at infinity: no second draw is needed.
    WritePublicKey(publicKey, scalar, *curve);
    WordsToBytes(privateKey, PrivateKeyBytes(*curve), scalar);
    return 1;
}

int EccPublicKey(unsigned char const* privateKey, unsigned char* publicKey, CurveRecord const* curve) {
    Word scalar[kMaxCurveWords];
    WipeAtExit const wipeScalar(scalar);
    WordsFromBytes(scalar, kMaxCurveWords, privateKey, PrivateKeyBytes(*curve));
    return WritePublicKey(publicKey, scalar, *curve);
}

int EccSharedSecret(unsigned char const* publicKey, unsigned char const* privateKey, unsigned char* secret,
                    CurveRecord const* curve) {
    Word startingZ[kMaxCurveWords];
    WipeAtExit const wipeZ(startingZ);
    bool const blinded = g_random != nullptr;
    if (blinded && !DrawBelow(startingZ, curve->p, curve->numWords * kWordBits)) {
        return 0;
    }
    Word scalar[kMaxCurveWords];
    WipeAtExit const wipeScalar(scalar);
    WordsFromBytes(scalar, kMaxCurveWords, privateKey, PrivateKeyBytes(*curve));
    CurvePoint point;
    WipeAtExit const wipePoint(point);
    ReadCoordinate(point.x, publicKey, *curve);
    ReadCoordinate(point.y, publicKey + curve->numBytes, *curve);
    Multiply(point, point, scalar, blinded ? startingZ : nullptr, *curve);
    WordsToBytes(secret, curve->numBytes, point.x);
    return IsFinite(point, *curve);
}

}  // namespace Ubrix::Crypto
