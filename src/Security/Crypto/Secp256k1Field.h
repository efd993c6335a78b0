// Integers modulo p = 2^256 - 2^32 - 977 in five limbs of 52 bits, for machines with 64-bit words.
//
// Sums aren't reduced: a type tells how far its limbs may have grown, and the compiler checks that no product
// can overflow. Nothing branches or indexes on a value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "Security/Crypto/CurveWords.h"

#if defined(__SIZEOF_INT128__)

namespace Ubrix::Crypto::Secp256k1 {

using Limb = std::uint64_t;
__extension__ using DoubleLimb = unsigned __int128;

constexpr int kLimbs = 5;
constexpr int kLimbBits = 52;
constexpr Limb kLimbMask = (Limb{1} << kLimbBits) - 1;
// 2^256 modulo p, and 2^260 modulo p.
constexpr Limb kFold256 = 0x1000003D1;
constexpr Limb kFold260 = kFold256 << 4;

template <int kValue>
using Index = std::integral_constant<int, kValue>;

// A number whose limbs are at most kBound * 2^52.
template <int kBound>
struct Field {
    static_assert(kBound >= 1 && kBound < 4096, "a limb must fit its word");
    Limb limb[kLimbs];

    // The same number under a wider promise.
    template <int kWider>
    operator Field<kWider>() const {  // NOLINT(google-explicit-constructor): loses nothing
        static_assert(kWider >= kBound, "the limbs may be greater");
        return {{limb[0], limb[1], limb[2], limb[3], limb[4]}};
    }
};

template <int kLeft, int kRight>
Field<kLeft + kRight> operator+(Field<kLeft> const& left, Field<kRight> const& right) {
    Field<kLeft + kRight> sum;
    for (int i = 0; i < kLimbs; ++i) {
        sum.limb[i] = left.limb[i] + right.limb[i];
    }
    return sum;
}

// 16p = 2^260 - 16 (2^32 + 977), with every limb as great as can be: some times this keeps every limb of an
// opposite above zero.
constexpr Field<1> kSixteenP = {{kLimbMask + 1 - kFold260, kLimbMask, kLimbMask, kLimbMask, kLimbMask}};

template <int kBound>
Field<kBound + 1> operator-(Field<kBound> const& number) {
    Field<kBound + 1> opposite;
    for (int i = 0; i < kLimbs; ++i) {
        opposite.limb[i] = (kBound + 1) * kSixteenP.limb[i] - number.limb[i];
    }
    return opposite;
}

template <int kLeft, int kRight>
Field<kLeft + kRight + 1> operator-(Field<kLeft> const& left, Field<kRight> const& right) {
    return left + -right;
}

template <int kFactor, int kBound>
Field<kFactor * kBound> Times(Field<kBound> const& number) {
    Field<kFactor * kBound> product;
    for (int i = 0; i < kLimbs; ++i) {
        product.limb[i] = number.limb[i] * kFactor;
    }
    return product;
}

// One column of a product: the sum of left[i] * right[kColumn - i].
template <int kColumn, int kLeft, int kRight>
DoubleLimb Column(Field<kLeft> const& left, Field<kRight> const& right) {
    constexpr int kFirst = kColumn < kLimbs ? 0 : kColumn - kLimbs + 1;
    constexpr int kLast = kColumn < kLimbs ? kColumn : kLimbs - 1;
    DoubleLimb sum = static_cast<DoubleLimb>(left.limb[kFirst]) * right.limb[kLast];
    for (int i = kFirst + 1; i <= kLast; ++i) {
        sum += static_cast<DoubleLimb>(left.limb[i]) * right.limb[kColumn - i];
    }
    return sum;
}

template <int kColumn, int kBound>
DoubleLimb SquareColumn(Field<kBound> const& number) {
    constexpr int kFirst = kColumn < kLimbs ? 0 : kColumn - kLimbs + 1;
    DoubleLimb sum = 0;
    for (int i = kFirst; 2 * i < kColumn; ++i) {
        sum += static_cast<DoubleLimb>(number.limb[i] * 2) * number.limb[kColumn - i];
    }
    if constexpr (kColumn % 2 == 0) {
        sum += static_cast<DoubleLimb>(number.limb[kColumn / 2]) * number.limb[kColumn / 2];
    }
    return sum;
}

// Takes the low limb off a sum below 2^116 and returns the rest. The halves are put together by an addition,
// since the double-width shift that compilers make of the plain form is slow on many processors.
inline Limb TakeLimb(DoubleLimb sum, Limb& limb) {
    limb = static_cast<Limb>(sum) & kLimbMask;
    return (static_cast<Limb>(sum >> 64) << (64 - kLimbBits)) + (static_cast<Limb>(sum) >> kLimbBits);
}

// A product from its columns, each at most 5 * 800 * 2^104, to a number of bound 1. column computes the one
// of an index.
template <typename ColumnOf>
Field<1> Reduce(ColumnOf column) {
    constexpr DoubleLimb kFold = kFold260;
    // The high columns become limbs first, so that each is folded in by a single product.
    Limb high[kLimbs];
    Limb carry = TakeLimb(column(Index<5>()), high[0]);
    carry = TakeLimb(column(Index<6>()) + carry, high[1]);
    carry = TakeLimb(column(Index<7>()) + carry, high[2]);
    high[4] = TakeLimb(column(Index<8>()) + carry, high[3]);

    Field<1> result;
    carry = TakeLimb(column(Index<0>()) + high[0] * kFold, result.limb[0]);
    carry = TakeLimb(column(Index<1>()) + high[1] * kFold + carry, result.limb[1]);
    carry = TakeLimb(column(Index<2>()) + high[2] * kFold + carry, result.limb[2]);
    carry = TakeLimb(column(Index<3>()) + high[3] * kFold + carry, result.limb[3]);
    carry = TakeLimb(column(Index<4>()) + high[4] * kFold + carry, result.limb[4]);
    // Folded once more, what is left over is below 2^49: two limbs take it up.
    carry = TakeLimb(carry * kFold + result.limb[0], result.limb[0]);
    result.limb[1] += carry;
    result.limb[2] += result.limb[1] >> kLimbBits;
    result.limb[1] &= kLimbMask;
    return result;
}

template <int kLeft, int kRight>
Field<1> operator*(Field<kLeft> const& left, Field<kRight> const& right) {
    static_assert(kLeft * kRight <= 800, "a column may overflow");
    return Reduce([&](auto index) { return Column<decltype(index)::value>(left, right); });
}

template <int kBound>
Field<1> Square(Field<kBound> const& number) {
    static_assert(kBound * kBound <= 800, "a column may overflow");
    return Reduce([&](auto index) { return SquareColumn<decltype(index)::value>(number); });
}

// to = from where mask is all ones; unchanged where it is zero.
template <int kBound>
void ChooseField(Field<kBound>& to, Field<kBound> const& from, Limb mask) {
    for (int i = 0; i < kLimbs; ++i) {
        to.limb[i] ^= (to.limb[i] ^ from.limb[i]) & mask;
    }
}

inline Field<1> SquareTimes(Field<1> number, int times) {
    for (int i = 0; i < times; ++i) {
        number = Square(number);
    }
    return number;
}

// By Fermat, with the power p - 2: 223 ones, a zero, 22 ones, 0000101101. The inverse of zero is zero.
inline Field<1> Inverse(Field<1> const& number) {
    Field<1> const ones2 = Square(number) * number;
    Field<1> const ones3 = Square(ones2) * number;
    Field<1> const ones6 = SquareTimes(ones3, 3) * ones3;
    Field<1> const ones11 = SquareTimes(SquareTimes(ones6, 3) * ones3, 2) * ones2;
    Field<1> const ones22 = SquareTimes(ones11, 11) * ones11;
    Field<1> const ones44 = SquareTimes(ones22, 22) * ones22;
    Field<1> const ones88 = SquareTimes(ones44, 44) * ones44;
    Field<1> const ones176 = SquareTimes(ones88, 88) * ones88;
    Field<1> const ones220 = SquareTimes(ones176, 44) * ones44;
    Field<1> const ones223 = SquareTimes(ones220, 3) * ones3;
    Field<1> power = SquareTimes(ones223, 23) * ones22;
    power = SquareTimes(power, 5) * number;
    power = SquareTimes(power, 3) * ones2;
    return SquareTimes(power, 2) * number;
}

inline Field<1> ReadField(Word const* words) {
    Limb half[4];
    for (std::size_t i = 0; i < 4; ++i) {
        half[i] = words[2 * i] | static_cast<Limb>(words[2 * i + 1]) << kWordBits;
    }
    return {{half[0] & kLimbMask, (half[0] >> 52 | half[1] << 12) & kLimbMask,
             (half[1] >> 40 | half[2] << 24) & kLimbMask, (half[2] >> 28 | half[3] << 36) & kLimbMask,
             half[3] >> 16}};
}

// Writes the number as eight words below p.
template <int kBound>
void WriteField(Word* words, Field<kBound> const& number) {
    constexpr int kTopBits = 256 - (kLimbs - 1) * kLimbBits;
    constexpr Limb kTopMask = (Limb{1} << kTopBits) - 1;
    Field<kBound> rest = number;
    Limb* const limb = rest.limb;
    // What is above bit 256 is folded in, which may carry beyond it once more.
    Limb carry = (limb[4] >> kTopBits) * kFold256;
    limb[4] &= kTopMask;
    for (int i = 0; i < kLimbs - 1; ++i) {
        carry += limb[i];
        limb[i] = carry & kLimbMask;
        carry >>= kLimbBits;
    }
    limb[4] += carry;
    // Adding 2^256 - p sets bit 256 exactly if the number is p or more; without that bit, it is then the
    // rest.
    Field<kBound> reduced = rest;
    carry = kFold256;
    for (Limb& each : reduced.limb) {
        carry += each;
        each = carry & kLimbMask;
        carry >>= kLimbBits;
    }
    ChooseField(rest, reduced, 0 - (reduced.limb[4] >> kTopBits));
    limb[4] &= kTopMask;
    Limb const half[4] = {limb[0] | limb[1] << 52, limb[1] >> 12 | limb[2] << 40,
                          limb[2] >> 24 | limb[3] << 28, limb[3] >> 36 | limb[4] << 16};
    for (std::size_t i = 0; i < 4; ++i) {
        words[2 * i] = static_cast<Word>(half[i]);
        words[2 * i + 1] = static_cast<Word>(half[i] >> kWordBits);
    }
}

}  // namespace Ubrix::Crypto::Secp256k1

#endif
