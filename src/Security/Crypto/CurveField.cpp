#include "Security/Crypto/CurveField.h"

namespace Ubrix::Crypto {

void ModAdd(Word* result, Word const* left, Word const* right, CurveRecord const& curve) {
    Word reduced[kMaxCurveWords];
    Word const carry = WordsAdd(result, left, right, curve.numWords);
    Word const borrow = WordsSubtract(reduced, result, curve.p, curve.numWords);
    WordsChoose(result, reduced, carry | (borrow ^ 1U), curve.numWords);
}

void ModSubtract(Word* result, Word const* left, Word const* right, CurveRecord const& curve) {
    Word raised[kMaxCurveWords];
    Word const borrow = WordsSubtract(result, left, right, curve.numWords);
    WordsAdd(raised, result, curve.p, curve.numWords);
    WordsChoose(result, raised, borrow, curve.numWords);
}

void ModMultiply(Word* result, Word const* left, Word const* right, CurveRecord const& curve) {
    Word product[2 * kMaxCurveWords];
    WordsMultiply(product, left, right, curve.numWords);
    curve.mmodFast(result, product, curve);
}

void ModSquare(Word* result, Word const* number, CurveRecord const& curve) {
    ModMultiply(result, number, number, curve);
}

void ModHalve(Word* number, CurveRecord const& curve) {
    Word raised[kMaxCurveWords];
    Word const odd = number[0] & 1U;
    Word const carry = WordsAdd(raised, number, curve.p, curve.numWords);
    WordsChoose(number, raised, odd, curve.numWords);
    WordsHalve(number, carry & odd, curve.numWords);
}

void ModPower(Word* result, Word const* base, Word const* exponent, CurveRecord const& curve) {
    Word power[kMaxCurveWords] = {1};
    for (int bit = curve.numWords * kWordBits - 1; bit >= 0; --bit) {
        ModSquare(power, power, curve);
        if (WordsBit(exponent, bit) != 0) {
            ModMultiply(power, power, base, curve);
        }
    }
    WordsSet(result, power, curve.numWords);
}

void ModInverse(Word* result, Word const* number, CurveRecord const& curve) {
    // By Fermat: always the same steps, which Euclid's algorithm doesn't offer.
    static constexpr Word kTwo[kMaxCurveWords] = {2};
    Word exponent[kMaxCurveWords];
    WordsSubtract(exponent, curve.p, kTwo, curve.numWords);
    ModPower(result, number, exponent, curve);
}

}  // namespace Ubrix::Crypto
