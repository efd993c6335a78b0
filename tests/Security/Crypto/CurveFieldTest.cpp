#include "Security/Crypto/CurveField.h"

#include <gtest/gtest.h>
#include <openssl/bn.h>

#include <cstring>
#include <random>
#include <vector>

#include "Security/Crypto/AllCurves.h"
#include "Security/Crypto/Secp256k1Field.h"

namespace {

using namespace Ubrix::Crypto;
using namespace PeerCurve;

BigNumber Number(Word const* words, int count) {
    return BigNumber(BN_lebin2bn(reinterpret_cast<unsigned char const*>(words), count * 4, nullptr));
}

// Whether the words are the number's rest modulo p.
bool IsRest(Word const* words, BigNumber const& number, CurveRecord const& record) {
    Context const context(BN_CTX_new());
    BigNumber const rest(BN_new());
    BN_nnmod(rest.get(), number.get(), Number(record.p, record.numWords).get(), context.get());
    return BN_cmp(Number(words, record.numWords).get(), rest.get()) == 0;
}

TEST(CurveField, EveryReductionAgreesWithThePeerAndEveryEquationFits) {
    std::mt19937 random(1);
    for (Curve const& curve : kCurves) {
        CurveRecord const& record = *curve.record;
        int const count = record.numWords;
        for (int turn = 0; turn < 3000; ++turn) {
            // Multiples of p and their neighbours; then words of zeros, ones and random bits mixed, where
            // carries go astray.
            Word product[2 * kMaxCurveWords] = {};
            if (turn < 4) {
                WordsSet(product + (turn < 2 ? 0 : count), record.p, count);
                product[0] -= static_cast<Word>(turn % 2);
            }
            for (int i = 0; turn >= 4 && i < 2 * count; ++i) {
                Word const kinds[] = {0, 0xFFFFFFFF, static_cast<Word>(random()),
                                      static_cast<Word>(random())};
                product[i] = kinds[random() % 4];
            }
            BigNumber const number = Number(product, 2 * count);
            Word result[kMaxCurveWords];
            record.mmodFast(result, product, record);
            ASSERT_TRUE(IsRest(result, number, record)) << curve.name << turn;
        }
        // The equation and its root fit the base point.
        Word root[kMaxCurveWords];
        Word square[kMaxCurveWords];
        record.xSide(root, record.G, record);
        record.modSqrt(root, record);
        ModSquare(root, root, record);
        ModSquare(square, record.G + kMaxCurveWords, record);
        EXPECT_EQ(std::vector<Word>(root, root + count), std::vector<Word>(square, square + count))
            << curve.name;
        Word infinity[3][kMaxCurveWords] = {{7}, {9}};
        record.doubleJacobian(infinity[0], infinity[1], infinity[2], record);
        Word const same[3][kMaxCurveWords] = {{7}, {9}};
        EXPECT_EQ(std::memcmp(infinity, same, sizeof same), 0) << curve.name;
    }
}

#if defined(__SIZEOF_INT128__)

using namespace Secp256k1;

template <int kBound>
Field<kBound> AwkwardField(std::mt19937& random) {
    Field<kBound> field;
    for (Limb& limb : field.limb) {
        Limb const most = kBound * (kLimbMask + 1);
        Limb const kinds[] = {0, most, most - 1, (static_cast<Limb>(random()) << 32 | random()) % most};
        limb = kinds[random() % 4];
    }
    return field;
}

template <int kBound>
BigNumber Number(Field<kBound> const& field) {
    BigNumber number(BN_new());
    BigNumber const limb(BN_new());
    for (int i = kLimbs - 1; i >= 0; --i) {
        BN_lshift(number.get(), number.get(), kLimbBits);
        BN_set_word(limb.get(), field.limb[i]);
        BN_add(number.get(), number.get(), limb.get());
    }
    return number;
}

template <int kBound>
void ExpectRest(Field<kBound> const& field, BigNumber const& expected) {
    for (Limb const limb : field.limb) {
        ASSERT_LE(limb, kBound * (kLimbMask + 1));
    }
    Word words[kMaxCurveWords];
    WriteField(words, field);
    ASSERT_TRUE(IsRest(words, expected, kSecp256k1));
}

TEST(CurveField, WideLimbsAgreeWithThePeerUpToTheirBounds) {
    std::mt19937 random(2);
    Context const context(BN_CTX_new());
    BigNumber const expected(BN_new());
    for (int turn = 0; turn < 3000 && !HasFatalFailure(); ++turn) {
        auto const left = AwkwardField<25>(random);
        auto const right = AwkwardField<32>(random);
        auto const small = AwkwardField<28>(random);
        BN_mul(expected.get(), Number(left).get(), Number(right).get(), context.get());
        ExpectRest(left * right, expected);
        BN_sqr(expected.get(), Number(small).get(), context.get());
        ExpectRest(Square(small), expected);
        BN_sub(expected.get(), Number(left).get(), Number(right).get());
        ExpectRest(left - right, expected);
    }
    // Numbers that carry beyond bit 256 when their excess is folded in, and all around p.
    for (Limb const top : {kLimbMask >> 4, kLimbMask >> 3, kLimbMask}) {
        Field<1> const full = {{kLimbMask, kLimbMask, kLimbMask, kLimbMask, top}};
        ExpectRest(full, Number(full));
    }
    for (Word const step : {0xFFFFFFFEU, 0xFFFFFFFFU, 0U, 1U, 976U}) {
        Word words[kMaxCurveWords];
        WordsSet(words, kSecp256k1.p, kMaxCurveWords);
        words[0] += step;
        ExpectRest(ReadField(words), Number(words, kMaxCurveWords));
    }
}

#endif

}  // namespace
