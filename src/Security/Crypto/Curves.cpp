#include "Security/Crypto/Curves.h"

#include "Security/Crypto/CurveField.h"
#include "Security/Crypto/CurveReduction.h"

namespace Ubrix::Crypto {
namespace {

// The rest of a doubling, once half the slope's numerator is known. All of z, x, y at half, quarter and
// eighth of the usual size, which names the same point. The point at infinity stays as it is, by mask.
void DoubleBySlope(Word* x, Word* y, Word* z, Word const* slope, CurveRecord const& curve) {
    Word const isInfinity = WordsAreZero(z, curve.numWords);
    Word sameX[kMaxCurveWords];
    Word sameY[kMaxCurveWords];
    WordsSet(sameX, x, curve.numWords);
    WordsSet(sameY, y, curve.numWords);
    Word ySquared[kMaxCurveWords];
    Word cross[kMaxCurveWords];
    ModMultiply(z, y, z, curve);
    ModSquare(ySquared, y, curve);
    ModMultiply(cross, x, ySquared, curve);
    ModSquare(x, slope, curve);
    ModSubtract(x, x, cross, curve);
    ModSubtract(x, x, cross, curve);
    ModSubtract(cross, cross, x, curve);
    ModMultiply(y, slope, cross, curve);
    ModSquare(ySquared, ySquared, curve);
    ModSubtract(y, y, ySquared, curve);
    WordsChoose(x, sameX, isInfinity, curve.numWords);
    WordsChoose(y, sameY, isInfinity, curve.numWords);
}

// slope = 3 * slope / 2
void ThreeHalves(Word* slope, CurveRecord const& curve) {
    Word twice[kMaxCurveWords];
    ModAdd(twice, slope, slope, curve);
    ModAdd(slope, slope, twice, curve);
    ModHalve(slope, curve);
}

void DoubleForZero(Word* x, Word* y, Word* z, CurveRecord const& curve) {
    Word slope[kMaxCurveWords];
    ModSquare(slope, x, curve);
    ThreeHalves(slope, curve);
    DoubleBySlope(x, y, z, slope, curve);
}

void DoubleForMinusThree(Word* x, Word* y, Word* z, CurveRecord const& curve) {
    Word slope[kMaxCurveWords];
    Word zSquared[kMaxCurveWords];
    Word sum[kMaxCurveWords];
    ModSquare(zSquared, z, curve);
    ModAdd(sum, x, zSquared, curve);
    ModSubtract(slope, x, zSquared, curve);
    ModMultiply(slope, slope, sum, curve);
    ThreeHalves(slope, curve);
    DoubleBySlope(x, y, z, slope, curve);
}

void XSideForZero(Word* result, Word const* x, CurveRecord const& curve) {
    Word side[kMaxCurveWords];
    ModSquare(side, x, curve);
    ModMultiply(side, side, x, curve);
    ModAdd(result, side, curve.b, curve);
}

void XSideForMinusThree(Word* result, Word const* x, CurveRecord const& curve) {
    static constexpr Word kThree[kMaxCurveWords] = {3};
    Word side[kMaxCurveWords];
    ModSquare(side, x, curve);
    ModSubtract(side, side, kThree, curve);
    ModMultiply(side, side, x, curve);
    ModAdd(result, side, curve.b, curve);
}

// For p = 3 modulo 4: the power (p + 1) / 4.
void ModSqrt(Word* a, CurveRecord const& curve) {
    static constexpr Word kOne[kMaxCurveWords] = {1};
    Word exponent[kMaxCurveWords];
    WordsAdd(exponent, curve.p, kOne, curve.numWords);
    WordsHalve(exponent, 0, curve.numWords);
    WordsHalve(exponent, 0, curve.numWords);
    ModPower(a, a, exponent, curve);
}

bool IsOne(Word const* words, CurveRecord const& curve) {
    static constexpr Word kOne[kMaxCurveWords] = {1};
    Word difference[kMaxCurveWords];
    WordsSubtract(difference, words, kOne, curve.numWords);
    return WordsAreZero(difference, curve.numWords) != 0;
}

void SquareTimes(Word* words, int times, CurveRecord const& curve) {
    for (int i = 0; i < times; ++i) {
        ModSquare(words, words, curve);
    }
}

// Tonelli and Shanks, for p - 1 = (2^128 - 1) * 2^96. Each round halves the order of the error, so there are
// 96 at most.
void ModSqrtOf224(Word* a, CurveRecord const& curve) {
    static constexpr Word kNonResidue[kMaxCurveWords] = {11};
    static constexpr Word kOddPart[kMaxCurveWords] = {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF};
    static constexpr Word kHalfOddPart[kMaxCurveWords] = {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0x7FFFFFFF};
    Word factor[kMaxCurveWords];
    Word error[kMaxCurveWords];
    Word root[kMaxCurveWords];
    ModPower(factor, kNonResidue, kOddPart, curve);
    ModPower(error, a, kOddPart, curve);
    ModPower(root, a, kHalfOddPart, curve);
    ModMultiply(root, root, a, curve);
    for (int order = 96; order > 0 && !IsOne(error, curve);) {
        Word power[kMaxCurveWords];
        WordsSet(power, error, curve.numWords);
        int rest = 0;
        while (rest < order && !IsOne(power, curve)) {
            ModSquare(power, power, curve);
            ++rest;
        }
        SquareTimes(factor, order - rest - 1, curve);
        ModMultiply(root, root, factor, curve);
        ModSquare(factor, factor, curve);
        ModMultiply(error, error, factor, curve);
        order = rest < order ? rest : 0;
    }
    WordsSet(a, root, curve.numWords);
}

template <int count>
constexpr void Set(Word (&field)[count], Word const (&words)[count]) {
    for (int i = 0; i < count; ++i) {
        field[i] = words[i];
    }
}

constexpr CurveRecord MakeSecp160r1() {
    CurveRecord curve{};
    curve.numWords = 5;
    curve.numBytes = 20;
    curve.numNBits = 161;
    Set(curve.p,
        {0x7FFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0x00000000, 0x00000000, 0x00000000});
    Set(curve.n,
        {0xCA752257, 0xF927AED3, 0x0001F4C8, 0x00000000, 0x00000000, 0x00000001, 0x00000000, 0x00000000});
    Set(curve.G,
        {0x13CBFC82, 0x68C38BB9, 0x46646989, 0x8EF57328, 0x4A96B568, 0x00000000, 0x00000000, 0x00000000,
         0x7AC5FB32, 0x04235137, 0x59DCC912, 0x3168947D, 0x23A62855, 0x00000000, 0x00000000, 0x00000000});
    Set(curve.b,
        {0xC565FA45, 0x81D4D4AD, 0x65ACF89F, 0x54BD7A8B, 0x1C97BEFC, 0x00000000, 0x00000000, 0x00000000});
    curve.doubleJacobian = DoubleForMinusThree;
    curve.modSqrt = ModSqrt;
    curve.xSide = XSideForMinusThree;
    curve.mmodFast = ReduceSecp160r1;
    return curve;
}

constexpr CurveRecord MakeSecp192r1() {
    CurveRecord curve{};
    curve.numWords = 6;
    curve.numBytes = 24;
    curve.numNBits = 192;
    Set(curve.p,
        {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFE, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0x00000000, 0x00000000});
    Set(curve.n,
        {0xB4D22831, 0x146BC9B1, 0x99DEF836, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0x00000000, 0x00000000});
    Set(curve.G,
        {0x82FF1012, 0xF4FF0AFD, 0x43A18800, 0x7CBF20EB, 0xB03090F6, 0x188DA80E, 0x00000000, 0x00000000,
         0x1E794811, 0x73F977A1, 0x6B24CDD5, 0x631011ED, 0xFFC8DA78, 0x07192B95, 0x00000000, 0x00000000});
    Set(curve.b,
        {0xC146B9B1, 0xFEB8DEEC, 0x72243049, 0x0FA7E9AB, 0xE59C80E7, 0x64210519, 0x00000000, 0x00000000});
    curve.doubleJacobian = DoubleForMinusThree;
    curve.modSqrt = ModSqrt;
    curve.xSide = XSideForMinusThree;
    curve.mmodFast = ReduceSecp192r1;
    return curve;
}

constexpr CurveRecord MakeSecp224r1() {
    CurveRecord curve{};
    curve.numWords = 7;
    curve.numBytes = 28;
    curve.numNBits = 224;
    Set(curve.p,
        {0x00000001, 0x00000000, 0x00000000, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0x00000000});
    Set(curve.n,
        {0x5C5C2A3D, 0x13DD2945, 0xE0B8F03E, 0xFFFF16A2, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0x00000000});
    Set(curve.G,
        {0x115C1D21, 0x343280D6, 0x56C21122, 0x4A03C1D3, 0x321390B9, 0x6BB4BF7F, 0xB70E0CBD, 0x00000000,
         0x85007E34, 0x44D58199, 0x5A074764, 0xCD4375A0, 0x4C22DFE6, 0xB5F723FB, 0xBD376388, 0x00000000});
    Set(curve.b,
        {0x2355FFB4, 0x270B3943, 0xD7BFD8BA, 0x5044B0B7, 0xF5413256, 0x0C04B3AB, 0xB4050A85, 0x00000000});
    curve.doubleJacobian = DoubleForMinusThree;
    curve.modSqrt = ModSqrtOf224;
    curve.xSide = XSideForMinusThree;
    curve.mmodFast = ReduceSecp224r1;
    return curve;
}

constexpr CurveRecord MakeSecp256r1() {
    CurveRecord curve{};
    curve.numWords = 8;
    curve.numBytes = 32;
    curve.numNBits = 256;
    Set(curve.p,
        {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0x00000000, 0x00000000, 0x00000000, 0x00000001, 0xFFFFFFFF});
    Set(curve.n,
        {0xFC632551, 0xF3B9CAC2, 0xA7179E84, 0xBCE6FAAD, 0xFFFFFFFF, 0xFFFFFFFF, 0x00000000, 0xFFFFFFFF});
    Set(curve.G,
        {0xD898C296, 0xF4A13945, 0x2DEB33A0, 0x77037D81, 0x63A440F2, 0xF8BCE6E5, 0xE12C4247, 0x6B17D1F2,
         0x37BF51F5, 0xCBB64068, 0x6B315ECE, 0x2BCE3357, 0x7C0F9E16, 0x8EE7EB4A, 0xFE1A7F9B, 0x4FE342E2});
    Set(curve.b,
        {0x27D2604B, 0x3BCE3C3E, 0xCC53B0F6, 0x651D06B0, 0x769886BC, 0xB3EBBD55, 0xAA3A93E7, 0x5AC635D8});
    curve.doubleJacobian = DoubleForMinusThree;
    curve.modSqrt = ModSqrt;
    curve.xSide = XSideForMinusThree;
    curve.mmodFast = ReduceSecp256r1;
    return curve;
}

constexpr CurveRecord MakeSecp256k1() {
    CurveRecord curve{};
    curve.numWords = 8;
    curve.numBytes = 32;
    curve.numNBits = 256;
    Set(curve.p,
        {0xFFFFFC2F, 0xFFFFFFFE, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF});
    Set(curve.n,
        {0xD0364141, 0xBFD25E8C, 0xAF48A03B, 0xBAAEDCE6, 0xFFFFFFFE, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF});
    Set(curve.G,
        {0x16F81798, 0x59F2815B, 0x2DCE28D9, 0x029BFCDB, 0xCE870B07, 0x55A06295, 0xF9DCBBAC, 0x79BE667E,
         0xFB10D4B8, 0x9C47D08F, 0xA6855419, 0xFD17B448, 0x0E1108A8, 0x5DA4FBFC, 0x26A3C465, 0x483ADA77});
    Set(curve.b,
        {0x00000007, 0x00000000, 0x00000000, 0x00000000, 0x00000000, 0x00000000, 0x00000000, 0x00000000});
    curve.doubleJacobian = DoubleForZero;
    curve.modSqrt = ModSqrt;
    curve.xSide = XSideForZero;
    curve.mmodFast = ReduceSecp256k1;
    return curve;
}

}  // namespace

// Constant-initialised: they read right in whatever order the library's files come up.
constexpr CurveRecord kSecp160r1 = MakeSecp160r1();
constexpr CurveRecord kSecp192r1 = MakeSecp192r1();
constexpr CurveRecord kSecp224r1 = MakeSecp224r1();
constexpr CurveRecord kSecp256r1 = MakeSecp256r1();
constexpr CurveRecord kSecp256k1 = MakeSecp256k1();

}  // namespace Ubrix::Crypto
