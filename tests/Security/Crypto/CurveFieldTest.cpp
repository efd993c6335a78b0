#include "Security/Crypto/CurveField.h"

#include <gtest/gtest.h>
#include <openssl/bn.h>

#include <random>

#include "Security/Crypto/PeerCurve.h"
#include "Security/Crypto/Secp256k1Field.h"

namespace {

using namespace Ubrix;
using namespace PeerCurve;

// Words of zeros, ones and random bits mixed, where carries go astray.
void FillAwkwardly(std::mt19937& random, Word* words, int count) {
    for (int i = 0; i < count; ++i) {
        unsigned const kind = random() % 4;
        words[i] = kind == 0 ? 0 : kind == 1 ? 0xFFFFFFFF : static_cast<Word>(random());
    }
}

BigNumber Number(Word const* words, int count) {
    BigNumber number(BN_new());
    EXPECT_NE(BN_lebin2bn(reinterpret_cast<unsigned char const*>(words), count * 4, number.get()), nullptr);
    return number;
}

TEST(CurveFieldTest, ReductionAgreesWithThePeerOnAwkwardProducts) {
    std::mt19937 random(1);
    Context const context(BN_CTX_new());
    for (Curve const& curve : kCurves) {
        CurveRecord const& record = *curve.record;
        int const count = static_cast<unsigned char>(record.numWords);
        BigNumber const p = Number(record.p, count);
        for (int turn = 0; turn < 3000; ++turn) {
            Word product[2 * kMaxCurveWords];
            FillAwkwardly(random, product, 2 * count);
            if (turn < 4) {
                // Multiples of p and their neighbours.
                WordsClear(product, 2 * count);
                WordsSet(product + (turn < 2 ? 0 : count), record.p, count);
                product[0] -= static_cast<Word>(turn % 2);
            }
            BigNumber const expected = Number(product, 2 * count);
            BN_mod(expected.get(), expected.get(), p.get(), context.get());
            Word result[kMaxCurveWords];
            record.mmodFast(result, product, record);
            ASSERT_EQ(BN_cmp(Number(result, count).get(), expected.get()), 0) << curve.name << " " << turn;
        }
    }
}

TEST(CurveFieldTest, SquareRootsOfTheEquationGiveThePoint) {
    for (Curve const& curve : kCurves) {
        Peer const peer(curve);
        CurveRecord const& record = *curve.record;
        for (unsigned int multiple = 1; multiple <= 20; ++multiple) {
            std::string const point = peer.Multiply(BigEndian(multiple, 32), "");
            Word x[kMaxCurveWords];
            Word y[kMaxCurveWords];
            Word root[kMaxCurveWords];
            auto const* bytes = reinterpret_cast<unsigned char const*>(point.data());
            WordsFromBytes(x, kMaxCurveWords, bytes, record.numBytes);
            WordsFromBytes(y, kMaxCurveWords, bytes + record.numBytes, record.numBytes);
            record.xSide(root, x, record);
            record.modSqrt(root, record);
            Word sum[kMaxCurveWords];
            Word difference[kMaxCurveWords];
            ModAdd(sum, root, y, record);
            ModSubtract(difference, root, y, record);
            EXPECT_EQ(WordsAreZero(sum, record.numWords) + WordsAreZero(difference, record.numWords), 1U)
                << curve.name << " " << multiple;
        }
        // A number without a root ends too, and its result shows itself as none.
        Word square[kMaxCurveWords];
        Word root[kMaxCurveWords] = {11};
        BigNumber const p = Number(record.p, record.numWords);
        Context const context(BN_CTX_new());
        BigNumber candidate(BN_new());
        for (Word small = 2; BN_kronecker(candidate.get(), p.get(), context.get()) != -1; ++small) {
            BN_set_word(candidate.get(), small);
            root[0] = small;
        }
        Word const original = root[0];
        record.modSqrt(root, record);
        ModSquare(square, root, record);
        EXPECT_NE(square[0], original) << curve.name;
    }
}

#if defined(__SIZEOF_INT128__)

template <int kBound>
Secp256k1::Field<kBound> AwkwardField(std::mt19937& random) {
    Secp256k1::Field<kBound> field;
    for (Secp256k1::Limb& limb : field.limb) {
        Secp256k1::Limb const most = kBound * (Secp256k1::kLimbMask + 1);
        unsigned const kind = random() % 4;
        Secp256k1::Limb const any = static_cast<Secp256k1::Limb>(random()) << 32 | random();
        limb = kind == 0 ? 0 : kind == 1 ? most : kind == 2 ? most - 1 : any % most;
    }
    return field;
}

template <int kBound>
BigNumber Number(Secp256k1::Field<kBound> const& field) {
    BigNumber number(BN_new());
    BigNumber const limb(BN_new());
    for (int i = Secp256k1::kLimbs - 1; i >= 0; --i) {
        BN_lshift(number.get(), number.get(), Secp256k1::kLimbBits);
        BN_set_word(limb.get(), field.limb[i]);
        BN_add(number.get(), number.get(), limb.get());
    }
    return number;
}

template <int kBound>
void ExpectRest(Secp256k1::Field<kBound> const& field, BigNumber const& expected) {
    Word words[kMaxCurveWords];
    Secp256k1::WriteField(words, field);
    BigNumber const p = Number(kSecp256k1.p, kMaxCurveWords);
    Context const context(BN_CTX_new());
    BN_nnmod(expected.get(), expected.get(), p.get(), context.get());
    ASSERT_EQ(BN_cmp(Number(words, kMaxCurveWords).get(), expected.get()), 0);
}

template <int kBound>
void ExpectWithinBound(Secp256k1::Field<kBound> const& field) {
    for (Secp256k1::Limb const limb : field.limb) {
        ASSERT_LE(limb, kBound * (Secp256k1::kLimbMask + 1));
    }
}

TEST(CurveFieldTest, WideLimbsAgreeWithThePeerUpToTheirBounds) {
    std::mt19937 random(2);
    Context const context(BN_CTX_new());
    BigNumber const expected(BN_new());
    for (int turn = 0; turn < 3000; ++turn) {
        auto const left = AwkwardField<25>(random);
        auto const right = AwkwardField<32>(random);
        auto const small = AwkwardField<28>(random);
        BN_mul(expected.get(), Number(left).get(), Number(right).get(), context.get());
        ExpectWithinBound(left * right);
        ASSERT_NO_FATAL_FAILURE(ExpectRest(left * right, expected)) << turn;
        BN_sqr(expected.get(), Number(small).get(), context.get());
        ExpectWithinBound(Square(small));
        ASSERT_NO_FATAL_FAILURE(ExpectRest(Square(small), expected)) << turn;
        BN_sub(expected.get(), Number(left).get(), Number(right).get());
        ExpectWithinBound(left - right);
        ASSERT_NO_FATAL_FAILURE(ExpectRest(left - right, expected)) << turn;
    }
    // Numbers that carry beyond bit 256 when their excess is folded in.
    constexpr Secp256k1::Limb kOnes = Secp256k1::kLimbMask;
    for (Secp256k1::Limb const top : {kOnes >> 4, kOnes >> 3, kOnes}) {
        Secp256k1::Field<1> const full = {{kOnes, kOnes, kOnes, kOnes, top}};
        ExpectRest(full, Number(full));
    }
    // Around p, and at the greatest number that the words hold.
    for (int step = -2; step <= 2; ++step) {
        Word words[kMaxCurveWords];
        WordsSet(words, kSecp256k1.p, kMaxCurveWords);
        words[0] += static_cast<Word>(step);
        ExpectRest(Secp256k1::ReadField(words), Number(words, kMaxCurveWords));
    }
    Word most[kMaxCurveWords];
    std::fill_n(most, kMaxCurveWords, 0xFFFFFFFF);
    ExpectRest(Secp256k1::ReadField(most), Number(most, kMaxCurveWords));
}

#endif

}  // namespace
