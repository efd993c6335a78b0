#include "Security/Crypto/Secp256k1Wide.h"

#include "Security/Crypto/Curves.h"
#include "Security/Crypto/Secp256k1Field.h"
#include "Security/Crypto/Wipe.h"

#if defined(__SIZEOF_INT128__)

namespace Ubrix::Crypto {
namespace Secp256k1 {
namespace {

constexpr int kWindowBits = 4;
constexpr int kWindows = 64;
constexpr int kTableSize = 8;
// As a factor, it brings a number back to bound 1.
constexpr Field<1> kOneField = {{1, 0, 0, 0, 0}};

// (x / z^2, y / z^3), with the bounds that the formulas below leave. z = 0: the point at infinity.
struct Jacobian {
    Field<10> x;
    Field<10> y;
    Field<2> z;
};

// A point with z = 1, or on a z that the context keeps.
struct Affine {
    Field<1> x;
    Field<1> y;
};

// Neither formula knows the curve's b. So a point (x, y) may be taken for (x z^2, y z^3) on the curve with b
// z^6 throughout, and z comes back in at the end.

Jacobian Double(Jacobian const& point) {
    Field<1> const ySquared = Square(point.y);
    Field<1> const cross = point.x * ySquared;
    Field<3> const slope = Times<3>(Square(point.x));
    Jacobian result;
    Field<10> const x = Square(slope) - Times<8>(cross);
    result.z = Times<2>(point.y * point.z);
    result.y = slope * (Times<4>(cross) - x) - Times<8>(Square(ySquared));
    result.x = x;
    return result;
}

// Adds a point that is neither equal to the first nor its opposite: with those, or with z = 0, the result's z
// is zero. zRatio is the result's z over the old one.
Jacobian Add(Jacobian const& point, Field<1> const& x, Field<2> const& y, Field<12>& zRatio) {
    Field<1> const zSquared = Square(point.z);
    Field<12> const xStep = x * zSquared - point.x;
    Field<12> const yStep = y * (zSquared * point.z) - point.y;
    Field<1> const stepSquared = Square(xStep);
    Field<1> const stepCubed = stepSquared * xStep;
    Field<1> const raisedX = point.x * stepSquared;
    Jacobian result;
    Field<6> const sumX = Square(yStep) - (stepCubed + Times<2>(raisedX));
    result.y = yStep * (raisedX - sumX) - point.y * stepCubed;
    result.x = sumX;
    result.z = point.z * xStep;
    zRatio = xStep;
    return result;
}

// 1, 3, 5 to 15 times a point, all on one z.
struct OddMultiples {
    Affine entry[kTableSize];
    Field<1> z;
};

void BuildTable(OddMultiples& table, Affine const& point) {
    Jacobian const twice = Double({point.x, point.y, kOneField});
    // On the curve where twice the point is affine: all further additions are by an affine point.
    Field<1> const scale = Square(twice.z);
    Field<1> const stepX = twice.x * kOneField;
    Field<1> const stepY = twice.y * kOneField;
    Jacobian multiple = {point.x * scale, point.y * (scale * twice.z), kOneField};
    Jacobian chain[kTableSize];
    Field<12> ratio[kTableSize];
    chain[0] = multiple;
    for (int i = 1; i < kTableSize; ++i) {
        chain[i] = multiple = Add(multiple, stepX, stepY, ratio[i]);
    }
    // Back from the last: what brings each entry's z to the last one's.
    Field<1> missing = kOneField;
    for (int i = kTableSize - 1; i >= 0; --i) {
        Field<1> const square = Square(missing);
        table.entry[i].x = chain[i].x * square;
        table.entry[i].y = chain[i].y * (square * missing);
        if (i > 0) {
            missing = missing * ratio[i];
        }
    }
    table.z = multiple.z * twice.z;
}

// All ones if left equals right, else zero. Both are small.
Limb EqualMask(Limb left, Limb right) {
    return 0 - (((left ^ right) - 1) >> 63);
}

// The odd digit 2 * window - 15 times the point, reading every entry.
void ReadTable(OddMultiples const& table, Limb window, Field<1>& x, Field<2>& y) {
    Limb const negative = 0 - ((window >> (kWindowBits - 1)) ^ 1);
    Limb const index = (window ^ negative) & (kTableSize - 1);
    Affine chosen = table.entry[0];
    for (Limb i = 1; i < kTableSize; ++i) {
        Limb const mask = EqualMask(index, i);
        ChooseField(chosen.x, table.entry[i].x, mask);
        ChooseField(chosen.y, table.entry[i].y, mask);
    }
    x = chosen.x;
    y = chosen.y;
    ChooseField(y, -chosen.y, negative);
}

// The scalar below n and odd: itself or its opposite, shifted right by one under a new top bit. Then the
// windows w are digits 2w - 15, since every odd number is a sum of all the powers of two with signs that its
// bits tell. Returns 1 if it is the opposite.
Word Recode(Word* windows, Word const* scalar) {
    Word changed[kMaxCurveWords];
    Word const borrow = WordsSubtract(changed, scalar, kSecp256k1.n, kMaxCurveWords);
    WordsSet(windows, scalar, kMaxCurveWords);
    WordsChoose(windows, changed, borrow ^ 1U, kMaxCurveWords);
    Word const even = (windows[0] & 1U) ^ 1U;
    WordsSubtract(changed, kSecp256k1.n, windows, kMaxCurveWords);
    WordsChoose(windows, changed, even, kMaxCurveWords);
    WordsHalve(windows, 1, kMaxCurveWords);
    Wipe(changed, sizeof changed);
    return even;
}

// The sum of the windows' digits, from the top. No addition meets an equal or opposite point when the point
// has order n: before the last, sixteen times what was summed is below n and even, and the digit is small and
// odd; at the last, equal or opposite would need a scalar that the digit's own bits exclude.
Jacobian SumWindows(OddMultiples const& table, Word const* windows) {
    Field<1> x;
    Field<2> y;
    Field<12> unused;
    ReadTable(table, windows[kMaxCurveWords - 1] >> (kWordBits - kWindowBits), x, y);
    Jacobian sum = {x, y, kOneField};
    for (int window = kWindows - 2; window >= 0; --window) {
        for (int i = 0; i < kWindowBits; ++i) {
            sum = Double(sum);
        }
        int const bit = window * kWindowBits;
        ReadTable(table, windows[bit / kWordBits] >> (bit % kWordBits) & 15U, x, y);
        sum = Add(sum, x, y, unused);
    }
    return sum;
}

}  // namespace
}  // namespace Secp256k1

void Secp256k1Multiply(CurvePoint& result, CurvePoint const& point, Word const* scalar,
                       Word const* startingZ) {
    using namespace Secp256k1;
    static constexpr Word kOne[kMaxCurveWords] = {1};
    Field<1> const blind = ReadField(startingZ != nullptr ? startingZ : kOne);
    Field<1> const blindSquared = Square(blind);
    OddMultiples table;
    WipeAtExit const wipeTable(table);
    BuildTable(table, {ReadField(point.x) * blindSquared, ReadField(point.y) * (blindSquared * blind)});

    Word windows[kMaxCurveWords];
    WipeAtExit const wipeWindows(windows);
    Word const opposite = Recode(windows, scalar);
    Jacobian sum = SumWindows(table, windows);
    WipeAtExit const wipeSum(sum);

    Field<1> const inverse = Inverse(sum.z * (table.z * blind));
    Field<1> const inverseSquared = Square(inverse);
    Field<1> const y = sum.y * (inverseSquared * inverse);
    Field<2> chosenY = y;
    ChooseField(chosenY, -y, 0 - static_cast<Limb>(opposite));
    WriteField(result.x, sum.x * inverseSquared);
    WriteField(result.y, chosenY);
}

}  // namespace Ubrix::Crypto

#endif
