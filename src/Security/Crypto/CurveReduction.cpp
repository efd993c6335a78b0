#include "Security/Crypto/CurveReduction.h"

namespace Ubrix::Crypto {
namespace {

// (top, words) -= top * p; returns the new top.
Word SubtractMultiple(Word* words, Word top, CurveRecord const& curve) {
    DoubleWord borrow = 0;
    for (int i = 0; i < curve.numWords; ++i) {
        DoubleWord const part = static_cast<DoubleWord>(curve.p[i]) * top + borrow;
        DoubleWord const difference = static_cast<DoubleWord>(words[i]) - static_cast<Word>(part);
        words[i] = static_cast<Word>(difference);
        borrow = (part >> kWordBits) + (difference >> (2 * kWordBits - 1));
    }
    return top - static_cast<Word>(borrow);
}

// Brings (top, words), with a small top, below p. Every p here is so close under a power of the word size
// that taking top multiples of p away leaves a top of at most 1, and once more 0.
void FinishReduction(Word* words, Word top, CurveRecord const& curve) {
    top = SubtractMultiple(words, top, curve);
    SubtractMultiple(words, top, curve);
    Word reduced[kMaxCurveWords];
    Word const borrow = WordsSubtract(reduced, words, curve.p, curve.numWords);
    WordsChoose(words, reduced, borrow ^ 1U, curve.numWords);
}

// What a word size's power leaves modulo p, where that is small: factor + shifted * 2^32.
struct Remainder {
    Word factor;
    Word shifted;
};

// product = low half + high half * remainder. The factor is well below 2^32, so a column's sum fits.
void FoldHighHalf(Word* product, Remainder remainder, int count) {
    Word const* const high = product + count;
    DoubleWord sum = 0;
    Word below = 0;
    for (int i = 0; i < count; ++i) {
        sum += static_cast<DoubleWord>(high[i]) * remainder.factor + product[i];
        sum += static_cast<DoubleWord>(below) * remainder.shifted;
        below = high[i];
        product[i] = static_cast<Word>(sum);
        sum >>= kWordBits;
    }
    sum += static_cast<DoubleWord>(below) * remainder.shifted;
    WordsClear(product + count, count);
    product[count] = static_cast<Word>(sum);
    product[count + 1] = static_cast<Word>(sum >> kWordBits);
}

void ReduceByRemainder(Word* result, Word* product, Remainder remainder, CurveRecord const& curve) {
    FoldHighHalf(product, remainder, curve.numWords);
    FoldHighHalf(product, remainder, curve.numWords);
    WordsSet(result, product, curve.numWords);
    FinishReduction(result, product[curve.numWords], curve);
}

// One summand of a reduction modulo a generalised Mersenne prime (FIPS 186-4, D.2): a coefficient, and which
// word of the product is at each place, least significant first. -1: none.
struct Summand {
    int coefficient;
    int word[kMaxCurveWords];
};

template <int kCount>
void ReduceBySummands(Word* result, Word const* product, Summand const (&summands)[kCount],
                      CurveRecord const& curve) {
    // Outweighs the negative summands, four at the most.
    constexpr int kMultiplesOfP = 5;
    Word sum[kMaxCurveWords];
    std::int64_t carry = 0;
    for (int place = 0; place < curve.numWords; ++place) {
        carry += static_cast<std::int64_t>(curve.p[place]) * kMultiplesOfP;
        for (Summand const& summand : summands) {
            int const word = summand.word[place];
            carry += word < 0 ? 0 : static_cast<std::int64_t>(product[word]) * summand.coefficient;
        }
        sum[place] = static_cast<Word>(carry & 0xFFFFFFFF);
        carry >>= kWordBits;
    }
    WordsSet(result, sum, curve.numWords);
    FinishReduction(result, static_cast<Word>(carry), curve);
}

}  // namespace

void ReduceSecp160r1(Word* result, Word* product, CurveRecord const& curve) {
    ReduceByRemainder(result, product, {0x80000001, 0}, curve);
}

void ReduceSecp192r1(Word* result, Word* product, CurveRecord const& curve) {
    static constexpr Summand kSummands[] = {{1, {0, 1, 2, 3, 4, 5}},
                                            {1, {6, 7, 6, 7, -1, -1}},
                                            {1, {-1, -1, 8, 9, 8, 9}},
                                            {1, {10, 11, 10, 11, 10, 11}}};
    ReduceBySummands(result, product, kSummands, curve);
}

void ReduceSecp224r1(Word* result, Word* product, CurveRecord const& curve) {
    static constexpr Summand kSummands[] = {{1, {0, 1, 2, 3, 4, 5, 6}},
                                            {1, {-1, -1, -1, 7, 8, 9, 10}},
                                            {1, {-1, -1, -1, 11, 12, 13, -1}},
                                            {-1, {7, 8, 9, 10, 11, 12, 13}},
                                            {-1, {11, 12, 13, -1, -1, -1, -1}}};
    ReduceBySummands(result, product, kSummands, curve);
}

void ReduceSecp256r1(Word* result, Word* product, CurveRecord const& curve) {
    static constexpr Summand kSummands[] = {
        {1, {0, 1, 2, 3, 4, 5, 6, 7}},         {2, {-1, -1, -1, 11, 12, 13, 14, 15}},
        {2, {-1, -1, -1, 12, 13, 14, 15, -1}}, {1, {8, 9, 10, -1, -1, -1, 14, 15}},
        {1, {9, 10, 11, 13, 14, 15, 13, 8}},   {-1, {11, 12, 13, -1, -1, -1, 8, 10}},
        {-1, {12, 13, 14, 15, -1, -1, 9, 11}}, {-1, {13, 14, 15, 8, 9, 10, -1, 12}},
        {-1, {14, 15, -1, 9, 10, 11, -1, 13}}};
    ReduceBySummands(result, product, kSummands, curve);
}

void ReduceSecp256k1(Word* result, Word* product, CurveRecord const& curve) {
    ReduceByRemainder(result, product, {977, 1}, curve);
}

}  // namespace Ubrix::Crypto
