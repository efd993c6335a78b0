#include "Security/Crypto/CurveLadder.h"

#include "Security/Crypto/CurveField.h"
#include "Security/Crypto/Wipe.h"

namespace Ubrix::Crypto {
namespace {

constexpr Word kZero[kMaxCurveWords] = {};
constexpr Word kOne[kMaxCurveWords] = {1};

// Both points on the Z they share.
struct Pair {
    CurvePoint first;
    CurvePoint second;
};

void ExchangeIf(Word choice, Pair& pair, int count) {
    WordsExchange(pair.first.x, pair.second.x, choice, count);
    WordsExchange(pair.first.y, pair.second.y, choice, count);
}

// From the point with Z = 1 to its form with the Z given.
void ApplyZ(CurvePoint& point, Word const* z, CurveRecord const& curve) {
    Word power[kMaxCurveWords];
    ModSquare(power, z, curve);
    ModMultiply(point.x, point.x, power, curve);
    ModMultiply(power, power, z, curve);
    ModMultiply(point.y, point.y, power, curve);
}

// What both Co-Z additions begin with: puts x1 and x2 onto the new Z, which is the old one times x2 - x1, and
// leaves y1 times (x2 - x1)^3 in raisedY.
void RaiseZ(Word* x1, Word* x2, Word const* y1, Word* raisedY, CurveRecord const& curve) {
    Word square[kMaxCurveWords];
    ModSubtract(square, x2, x1, curve);
    ModSquare(square, square, curve);
    ModMultiply(x1, x1, square, curve);
    ModMultiply(x2, x2, square, curve);
    ModSubtract(raisedY, x2, x1, curve);
    ModMultiply(raisedY, raisedY, y1, curve);
}

// The sum from the slope, with x1, x2 and raisedY already on the new Z: x may be x2.
void SumBySlope(Word* x, Word* y, Word const* x1, Word const* x2, Word const* raisedY, Word const* slope,
                CurveRecord const& curve) {
    Word sumX[kMaxCurveWords];
    ModSquare(sumX, slope, curve);
    ModSubtract(sumX, sumX, x1, curve);
    ModSubtract(sumX, sumX, x2, curve);
    Word difference[kMaxCurveWords];
    ModSubtract(difference, x1, sumX, curve);
    ModMultiply(difference, difference, slope, curve);
    ModSubtract(y, difference, raisedY, curve);
    WordsSet(x, sumX, curve.numWords);
}

// other = point + other, and point comes onto the same Z.
void AddCoZ(CurvePoint& point, CurvePoint& other, CurveRecord const& curve) {
    Word slope[kMaxCurveWords];
    Word raisedY[kMaxCurveWords];
    ModSubtract(slope, other.y, point.y, curve);
    RaiseZ(point.x, other.x, point.y, raisedY, curve);
    SumBySlope(other.x, other.y, point.x, other.x, raisedY, slope, curve);
    WordsSet(point.y, raisedY, curve.numWords);
}

// other = point + other and point = point - other, on one Z.
void AddConjugateCoZ(CurvePoint& point, CurvePoint& other, CurveRecord const& curve) {
    Word slope[kMaxCurveWords];
    Word conjugate[kMaxCurveWords];
    Word raisedY[kMaxCurveWords];
    ModSubtract(slope, other.y, point.y, curve);
    ModAdd(conjugate, other.y, point.y, curve);
    ModSubtract(conjugate, kZero, conjugate, curve);
    RaiseZ(point.x, other.x, point.y, raisedY, curve);
    CurvePoint difference;
    SumBySlope(difference.x, difference.y, point.x, other.x, raisedY, conjugate, curve);
    SumBySlope(other.x, other.y, point.x, other.x, raisedY, slope, curve);
    point = difference;
}

// Brings the scalar to at most half of n: itself or its opposite. Returns 1 if it is the opposite.
//
// A ladder on additions that share one Z goes astray where a sum on its way is the point at infinity. That
// happens for 0, 1, n - 2 and n - 1 alone; of these, this leaves 0, which is to end there, and 1.
Word Fold(Word* folded, Word const* scalar, CurveRecord const& curve) {
    int const count = OrderWords(curve);
    Word changed[kMaxCurveWords];
    WordsSet(folded, scalar, count);
    Word const borrow = WordsSubtract(changed, folded, curve.n, count);
    WordsChoose(folded, changed, borrow ^ 1U, count);
    WordsSubtract(changed, curve.n, folded, count);
    Word const opposite = WordsAreBelow(changed, folded, count);
    WordsChoose(folded, changed, opposite, count);
    Wipe(changed, sizeof changed);
    return opposite;
}

// Adds n or 2n, whichever gives numNBits + 1 bits, so that every scalar makes the ladder equally long. The
// top bit isn't written where it doesn't fit the words.
void Regularise(Word* regular, Word const* scalar, CurveRecord const& curve) {
    int const count = OrderWords(curve);
    Word twice[kMaxCurveWords];
    Word longEnough = WordsAdd(regular, scalar, curve.n, count);
    if (curve.numNBits < count * kWordBits) {
        longEnough |= WordsBit(regular, curve.numNBits);
    }
    WordsAdd(twice, regular, curve.n, count);
    WordsChoose(regular, twice, longEnough ^ 1U, count);
    Wipe(twice, sizeof twice);
}

Word IsOne(Word const* words, int count) {
    Word difference[kMaxCurveWords];
    WordsSubtract(difference, words, kOne, count);
    return WordsAreZero(difference, count);
}

// One whole turn of the ladder for a bit.
void Turn(Pair& pair, Word bit, CurveRecord const& curve) {
    ExchangeIf(bit ^ 1U, pair, curve.numWords);
    AddConjugateCoZ(pair.first, pair.second, curve);
    AddCoZ(pair.second, pair.first, curve);
    ExchangeIf(bit ^ 1U, pair, curve.numWords);
}

// The last turn, for bit 0; gives the inverse of the Z that it ends with.
void LastTurn(Pair& pair, Word bit, CurvePoint const& point, Word* inverseZ, CurveRecord const& curve) {
    ExchangeIf(bit ^ 1U, pair, curve.numWords);
    AddConjugateCoZ(pair.first, pair.second, curve);
    // The first is now the point itself or its opposite, and so tells the Z.
    CurvePoint const known = pair.first;
    ExchangeIf(bit ^ 1U, pair, curve.numWords);
    ModSubtract(inverseZ, pair.first.x, pair.second.x, curve);
    ModMultiply(inverseZ, inverseZ, known.y, curve);
    ModMultiply(inverseZ, inverseZ, point.x, curve);
    ModInverse(inverseZ, inverseZ, curve);
    ModMultiply(inverseZ, inverseZ, point.y, curve);
    ModMultiply(inverseZ, inverseZ, known.x, curve);
    ExchangeIf(bit ^ 1U, pair, curve.numWords);
    AddCoZ(pair.second, pair.first, curve);
    ExchangeIf(bit ^ 1U, pair, curve.numWords);
}

// Twice the point in first, the point in second.
void Start(Pair& pair, CurvePoint const& point, Word const* startingZ, CurveRecord const& curve) {
    Word z[kMaxCurveWords] = {1};
    pair = {point, point};
    if (startingZ != nullptr) {
        WordsSet(z, startingZ, curve.numWords);
        ApplyZ(pair.first, z, curve);
    }
    curve.doubleJacobian(pair.first.x, pair.first.y, z, curve);
    ApplyZ(pair.second, z, curve);
}

}  // namespace

void LadderMultiply(CurvePoint& result, CurvePoint const& point, Word const* scalar, Word const* startingZ,
                    CurveRecord const& curve) {
    Word folded[kMaxCurveWords] = {};
    Word regular[kMaxCurveWords] = {};
    WipeAtExit const wipeFolded(folded);
    WipeAtExit const wipeRegular(regular);
    Word const opposite = Fold(folded, scalar, curve);
    Regularise(regular, folded, curve);

    // With m the bits seen so far: first is (m + 1) times the point, second m times.
    Pair pair;
    WipeAtExit const wipePair(pair);
    Start(pair, point, startingZ, curve);
    for (int bit = curve.numNBits - 1; bit > 0; --bit) {
        Turn(pair, WordsBit(regular, bit), curve);
    }
    Word inverseZ[kMaxCurveWords];
    LastTurn(pair, WordsBit(regular, 0), point, inverseZ, curve);
    ApplyZ(pair.second, inverseZ, curve);

    Word const isOne = IsOne(folded, OrderWords(curve));
    WordsChoose(pair.second.x, point.x, isOne, curve.numWords);
    WordsChoose(pair.second.y, point.y, isOne, curve.numWords);
    Word opposed[kMaxCurveWords];
    ModSubtract(opposed, kZero, pair.second.y, curve);
    WordsChoose(pair.second.y, opposed, opposite, curve.numWords);
    result = {};
    WordsSet(result.x, pair.second.x, curve.numWords);
    WordsSet(result.y, pair.second.y, curve.numWords);
}

}  // namespace Ubrix::Crypto
