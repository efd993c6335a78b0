#include "Security/Crypto/Ecdh.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "Security/Crypto/CurveLadder.h"
#include "Security/Crypto/Ecc.h"
#include "Security/Crypto/Hex.h"
#include "Security/Crypto/PeerCurve.h"
#include "Security/Crypto/Random.h"
#include "Security/Crypto/Secp256k1Wide.h"

namespace {

using namespace Ubrix;
using namespace PeerCurve;

unsigned char* Raw(std::string& bytes) {
    return reinterpret_cast<unsigned char*>(&bytes[0]);
}

unsigned char const* Raw(std::string const& bytes) {
    return reinterpret_cast<unsigned char const*>(bytes.data());
}

std::string FromHex(std::string const& hex) {
    std::string bytes(hex.size() / 2, '\0');
    EXPECT_TRUE(HexToBytes(hex.data(), static_cast<unsigned int>(hex.size()), Raw(bytes)));
    return bytes;
}

std::string ToHex(std::string const& bytes) {
    std::string hex;
    for (char const byte : bytes) {
        hex += "0123456789abcdef"[static_cast<unsigned char>(byte) >> 4];
        hex += "0123456789ABCDEF"[byte & 15];
    }
    return hex;
}

std::size_t ScalarBytes(CurveRecord const& record) {
    return static_cast<std::size_t>(record.numNBits + 7) / 8;
}

// The order plus a small number.
std::string OrderPlus(CurveRecord const& record, int step) {
    Word words[kMaxCurveWords];
    Word const difference[kMaxCurveWords] = {static_cast<Word>(step < 0 ? -step : step)};
    (step < 0 ? WordsSubtract : WordsAdd)(words, record.n, difference, kMaxCurveWords);
    std::string bytes(ScalarBytes(record), '\0');
    WordsToBytes(Raw(bytes), static_cast<int>(bytes.size()), words);
    return bytes;
}

std::string PublicKeyOf(CurveRecord const& record, std::string const& scalar) {
    std::string key(2 * static_cast<std::size_t>(record.numBytes), '\0');
    return EccPublicKey(Raw(scalar), Raw(key), &record) == 1 ? key : "";
}

std::string SecretOf(CurveRecord const& record, std::string const& scalar, std::string const& point) {
    std::string secret(static_cast<std::size_t>(record.numBytes), '\0');
    return EccSharedSecret(Raw(point), Raw(scalar), Raw(secret), &record) == 1 ? secret : "";
}

std::string PointBytes(CurveRecord const& record, Word const* x, Word const* y) {
    std::string bytes(2 * static_cast<std::size_t>(record.numBytes), '\0');
    WordsToBytes(Raw(bytes), record.numBytes, x);
    WordsToBytes(Raw(bytes) + record.numBytes, record.numBytes, y);
    return bytes;
}

using Multiplier = void (*)(CurvePoint&, CurvePoint const&, Word const*, Word const*, CurveRecord const&);

std::string ProductBy(Multiplier multiply, CurveRecord const& record, std::string const& scalar,
                      std::string const& point) {
    CurvePoint product = {};
    Word words[kMaxCurveWords];
    Word startingZ[kMaxCurveWords] = {3, 1, 4, 1, 5};
    WordsFromBytes(words, kMaxCurveWords, Raw(scalar), static_cast<int>(scalar.size()));
    WordsFromBytes(product.x, kMaxCurveWords, Raw(point), record.numBytes);
    WordsFromBytes(product.y, kMaxCurveWords, Raw(point) + record.numBytes, record.numBytes);
    multiply(product, product, words, startingZ, record);
    return PointBytes(record, product.x, product.y);
}

std::vector<Multiplier> Multipliers(CurveRecord const& record) {
    std::vector<Multiplier> all = {LadderMultiply};
    if constexpr (kHasWideWords) {
        if (&record == &kSecp256k1) {
            all.push_back([](CurvePoint& result, CurvePoint const& point, Word const* scalar,
                             Word const* startingZ,
                             CurveRecord const&) { Secp256k1Multiply(result, point, scalar, startingZ); });
        }
    }
    return all;
}

std::string RandomScalar(std::mt19937& random, CurveRecord const& record) {
    std::string scalar(ScalarBytes(record), '\0');
    for (char& byte : scalar) {
        byte = static_cast<char>(random());
    }
    scalar[0] = record.numNBits % 8 == 1 ? '\0' : scalar[0];
    return scalar;
}

class EcdhTest : public testing::Test {
protected:
    void TearDown() override { EccSetRandom(FillRandom); }
};

TEST_F(EcdhTest, PublishedMultiplesOfTheBasePoint) {
    struct {
        char const* scalar;
        char const* product;
    } const cases[] = {{"01",
                        "79BE667EF9DCBBAC55A06295CE870B07029BFCDB2DCE28D959F2815B16F81798"
                        "483ADA7726A3C4655DA4FBFC0E1108A8FD17B448A68554199C47D08FFB10D4B8"},
                       {"02",
                        "C6047F9441ED7D6D3045406E95C07CD85C778E4B8CEF3CA7ABAC09B95C709EE5"
                        "1AE168FEA63DC339A3C58419466CEAEEF7F632653266D0E1236431A950CFE52A"},
                       {"03",
                        "F9308A019258C31049344F85F89D5229B531C845836F99B08601F113BCE036F9"
                        "388F7B0F632DE8140FE337E62A37F3566500A99934C2231B6CB9FD7584B8E672"},
                       {"159D893D4CDD747246CDCA43590E13",
                        "E5A2636BCFD412EBF36EC45B19BFB68A1BC5F8632E678132B885F7DF99C5E9B3"
                        "736C1CE161AE27B405CAFD2A7520370153C2C861AC51D6C1D5985D9606B45F39"},
                       {"FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFEBAAEDCE6AF48A03BBFD25E8CD0364140",
                        "79BE667EF9DCBBAC55A06295CE870B07029BFCDB2DCE28D959F2815B16F81798"
                        "B7C52588D95C3B9AA25B0403F1EEF75702E84BB7597AABE663B82F6F04EF2777"}};
    for (auto const& each : cases) {
        std::string const scalar = FromHex(each.scalar);
        EXPECT_EQ(PublicKeyOf(kSecp256k1, std::string(32 - scalar.size(), '\0') + scalar),
                  FromHex(each.product));
    }
}

TEST_F(EcdhTest, AThousandPairsAgreeWithThePeer) {
    std::mt19937 random(3);
    Peer const peer(kKoblitz);
    std::string point = PublicKeyOf(kSecp256k1, BigEndian(7, 32));
    for (int turn = 0; turn < 1000; ++turn) {
        std::string const scalar = RandomScalar(random, kSecp256k1);
        std::string const own = PublicKeyOf(kSecp256k1, scalar);
        ASSERT_EQ(own, peer.Multiply(scalar, "")) << ToHex(scalar);
        ASSERT_EQ(SecretOf(kSecp256k1, scalar, point), peer.Multiply(scalar, point).substr(0, 32));
        point = own;
    }
}

// The scalars where windows, carries and the lengthening by the order could go wrong.
std::vector<std::string> EdgeScalars(CurveRecord const& record) {
    std::vector<std::string> scalars;
    for (unsigned int small = 1; small <= 34; ++small) {
        scalars.push_back(BigEndian(small, ScalarBytes(record)));
        scalars.push_back(OrderPlus(record, -static_cast<int>(small)));
    }
    for (int bit = 5; bit < record.numNBits - 1; bit += 7) {
        std::string power(ScalarBytes(record), '\0');
        power[power.size() - 1 - static_cast<std::size_t>(bit / 8)] = static_cast<char>(1 << bit % 8);
        scalars.push_back(power);
    }
    return scalars;
}

TEST_F(EcdhTest, EveryWayOnEveryCurveAgreesWithThePeer) {
    std::mt19937 random(4);
    for (Curve const& curve : kCurves) {
        CurveRecord const& record = *curve.record;
        Peer const peer(curve);
        std::vector<std::string> scalars = EdgeScalars(record);
        for (int turn = 0; turn < 25; ++turn) {
            scalars.push_back(RandomScalar(random, record));
        }
        std::string point = PublicKeyOf(record, scalars.back());
        for (std::string const& scalar : scalars) {
            std::string const expected = peer.Multiply(scalar, point);
            for (Multiplier const multiply : Multipliers(record)) {
                ASSERT_EQ(ProductBy(multiply, record, scalar, point), expected)
                    << curve.name << ToHex(scalar);
            }
            ASSERT_EQ(PublicKeyOf(record, scalar), peer.Multiply(scalar, "")) << curve.name << ToHex(scalar);
        }
        for (int const step : {0, 1, 2, 40}) {
            std::string const scalar = OrderPlus(record, step);
            EXPECT_EQ(PublicKeyOf(record, scalar), peer.Multiply(scalar, "")) << curve.name << step;
            for (Multiplier const multiply : Multipliers(record)) {
                std::string const expected = peer.Multiply(scalar, point);
                EXPECT_EQ(ProductBy(multiply, record, scalar, point),
                          step == 0 ? std::string(point.size(), '\0') : expected);
            }
        }
    }
}

TEST_F(EcdhTest, BothSidesOfAnExchangeAgree) {
    for (Curve const& curve : kCurves) {
        std::size_t const coordinate = static_cast<unsigned char>(curve.record->numBytes);
        std::string scalars[2];
        std::string points[2];
        for (int side = 0; side < 2; ++side) {
            scalars[side].resize(ScalarBytes(*curve.record));
            points[side].resize(2 * coordinate);
            ASSERT_EQ(EccMakeKey(Raw(points[side]), Raw(scalars[side]), curve.record), 1);
        }
        EXPECT_NE(scalars[0], scalars[1]);
        std::string const secret = SecretOf(*curve.record, scalars[0], points[1]);
        EXPECT_EQ(secret, SecretOf(*curve.record, scalars[1], points[0]));
        EXPECT_EQ(secret, Peer(curve).Multiply(scalars[0], points[1]).substr(0, coordinate));
        EccSetRandom(nullptr);
        EXPECT_EQ(secret, SecretOf(*curve.record, scalars[0], points[1])) << "without blinding";
        EccSetRandom(FillRandom);
    }
}

TEST_F(EcdhTest, ServerComesToTheSameKey) {
    std::string const serverScalar = BigEndian(0x1234567, 32);
    std::string const serverHex = ToHex(PublicKeyOf(kSecp256k1, serverScalar));
    std::string before;
    for (unsigned int const length : {16U, 32U, 40U}) {
        std::string key(48, '#');
        std::string publicKey(65, '#');
        MakeEcdhKey(serverHex.c_str(), Raw(key), length, Raw(publicKey));
        std::size_t const written = length < 32 ? length : 32;
        std::string const secret =
            Peer(kKoblitz).Multiply(serverScalar, publicKey.substr(0, 64)).substr(0, 32);
        EXPECT_EQ(key, secret.substr(0, written) + std::string(48 - written, '#'));
        EXPECT_EQ(publicKey[64], '#');
        EXPECT_NE(before, publicKey);
        before = publicKey;
    }
}

int g_draws = 0;
int g_goodDraws = 0;
char g_drawn = 0;

// Draws bytes of g_drawn; fails after g_goodDraws.
bool ControlledRandom(void* bytes, unsigned int length) {
    std::memset(bytes, g_drawn, length);
    return ++g_draws <= g_goodDraws;
}

void ExpectNoKey(char const* serverHex) {
    std::string key(32, '#');
    std::string publicKey(64, '#');
    MakeEcdhKey(serverHex, Raw(key), 32, Raw(publicKey));
    EXPECT_EQ(key + publicKey, std::string(96, '#')) << (serverHex != nullptr ? serverHex : "null");
}

TEST_F(EcdhTest, MalformedServerKeysLeaveTheOutputs) {
    std::string const good = ToHex(PublicKeyOf(kSecp256k1, BigEndian(9, 32)));
    std::string badDigit = good;
    badDigit[127] = 'g';
    ExpectNoKey(nullptr);
    for (std::string const& bad :
         {std::string(), good.substr(1), std::string(129, '1'), std::string(400, '1'), badDigit}) {
        ExpectNoKey(bad.c_str());
    }
    // Text of the right length behind which there is nothing to read.
    std::vector<char> exact(good.begin(), good.end() - 1);
    exact.push_back('\0');
    ExpectNoKey(exact.data());
}

TEST_F(EcdhTest, AFailingRandomFunctionLeavesTheOutputs) {
    std::string const server = ToHex(PublicKeyOf(kSecp256k1, BigEndian(9, 32)));
    std::string scalar(32, '#');
    std::string point(64, '#');
    struct {
        char drawn;
        int good;
        int expectedDraws;
    } const cases[] = {{1, 0, 1}, {1, 1, 2}, {0, 1000, 64}, {'\xFF', 1000, 64}};
    EccSetRandom(ControlledRandom);
    for (auto const& each : cases) {
        g_drawn = each.drawn;
        g_goodDraws = each.good;
        g_draws = 0;
        ExpectNoKey(server.c_str());
        EXPECT_EQ(g_draws, each.expectedDraws);
    }
    EXPECT_EQ(EccMakeKey(Raw(point), Raw(scalar), &kSecp256k1), 0);
    EccSetRandom(nullptr);
    EXPECT_EQ(EccMakeKey(Raw(point), Raw(scalar), &kSecp256k1), 0);
    EXPECT_EQ(scalar + point, std::string(96, '#'));
    ExpectNoKey(server.c_str());
}

TEST_F(EcdhTest, HostilePointsAreNoWorseThanUseless) {
    ExpectNoKey(std::string(128, '0').c_str());
    std::mt19937 random(5);
    // Coordinates of p or more count modulo p: every curve has points whose small x can be written so too.
    for (Curve const& curve : kCurves) {
        CurveRecord const& record = *curve.record;
        Peer const peer(curve);
        std::string const scalar = RandomScalar(random, record);
        std::string expected;
        std::string wrapped;
        for (Word small = 1; expected.empty(); ++small) {
            Word const x[kMaxCurveWords] = {small};
            Word y[kMaxCurveWords];
            Word sum[kMaxCurveWords];
            WordsAdd(sum, record.p, x, record.numWords);
            record.xSide(y, x, record);
            record.modSqrt(y, record);
            expected = peer.Multiply(scalar, PointBytes(record, x, y));
            wrapped = PointBytes(record, sum, y);
        }
        EXPECT_EQ(SecretOf(record, scalar, wrapped), expected.substr(0, expected.size() / 2)) << curve.name;
    }
    // Points off the curve, also of orders two and three on theirs, end without harm.
    for (std::string const& point : {BigEndian(5, 32) + BigEndian(0, 32), BigEndian(0, 32) + BigEndian(5, 32),
                                     std::string(64, '\xFF'), std::string(64, '\x05')}) {
        for (Multiplier const multiply : Multipliers(kSecp256k1)) {
            for (unsigned int small = 1; small < 70; ++small) {
                ProductBy(multiply, kSecp256k1, BigEndian(small, 32), point);
            }
            ProductBy(multiply, kSecp256k1, RandomScalar(random, kSecp256k1), point);
        }
    }
}

}  // namespace
