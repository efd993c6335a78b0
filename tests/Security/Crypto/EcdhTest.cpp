#include "Security/Crypto/Ecdh.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "Platform/Random.h"
#include "Security/Crypto/AllCurves.h"
#include "Security/Crypto/Ecc.h"
#include "Security/Crypto/Hex.h"

namespace {

using namespace Ubrix::Crypto;
using namespace PeerCurve;

Bytes FromHex(std::string const& hex) {
    Bytes bytes(hex.size() / 2);
    EXPECT_TRUE(HexToBytes(hex.data(), static_cast<unsigned int>(hex.size()), bytes.data()));
    return bytes;
}

// Twice the base point: the public key of a server whose private key is 2.
char const kServerKey[] =
    "C6047F9441ED7D6D3045406E95C07CD85C778E4B8CEF3CA7ABAC09B95C709EE5"
    "1AE168FEA63DC339A3C58419466CEAEEF7F632653266D0E1236431A950CFE52A";

Bytes ToScalar(CurveRecord const& record, Word const* words) {
    Bytes bytes((static_cast<std::size_t>(record.numNBits) + 7) / 8);
    WordsToBytes(bytes.data(), static_cast<int>(bytes.size()), words);
    return bytes;
}

Bytes Small(CurveRecord const& record, Word number) {
    Word const words[kMaxCurveWords] = {number};
    return ToScalar(record, words);
}

Bytes NewPublicKey(CurveRecord const& record) {
    return Bytes(2 * static_cast<std::size_t>(record.numBytes));
}

Bytes PublicKeyOf(CurveRecord const& record, Bytes const& scalar) {
    Bytes key = NewPublicKey(record);
    return EccPublicKey(scalar.data(), key.data(), &record) == 1 ? key : Bytes();
}

Bytes SecretOf(CurveRecord const& record, Bytes const& scalar, Bytes const& point) {
    Bytes secret(point.size() / 2);
    return EccSharedSecret(point.data(), scalar.data(), secret.data(), &record) == 1 ? secret : Bytes();
}

Bytes PeerKeyOf(int curve, Bytes const& scalar, Bytes const& point = {}) {
    BigNumber const number(BN_bin2bn(scalar.data(), static_cast<int>(scalar.size()), nullptr));
    return Multiply(curve, *number, point);
}

Bytes PeerSecretOf(int curve, Bytes const& scalar, Bytes const& point) {
    Bytes product = PeerKeyOf(curve, scalar, point);
    product.resize(product.size() / 2);
    return product;
}

class Ecdh : public testing::Test {
protected:
    void TearDown() override { EccSetRandom(Ubrix::Platform::RandomBytes); }
};

// Where windows, carries and the lengthening by the order could go wrong.
std::vector<Bytes> EdgeScalars(CurveRecord const& record) {
    std::vector<Bytes> scalars;
    for (Word small = 1; small <= 34; ++small) {
        scalars.push_back(Small(record, small));
        Word nearOrder[kMaxCurveWords];
        WordsSet(nearOrder, record.n, kMaxCurveWords);
        nearOrder[0] += 2 - small;
        scalars.push_back(ToScalar(record, nearOrder));
    }
    for (int bit = 5; bit < record.numNBits - 1; bit += 7) {
        Word power[kMaxCurveWords] = {};
        power[bit / kWordBits] = 1U << bit % kWordBits;
        scalars.push_back(ToScalar(record, power));
    }
    return scalars;
}

TEST_F(Ecdh, EveryCurveAgreesWithThePeerAtEdgesAndDrawnKeys) {
    EXPECT_EQ(PublicKeyOf(kSecp256k1, Small(kSecp256k1, 2)), FromHex(kServerKey)) << "as published";
    for (Curve const& curve : kCurves) {
        CurveRecord const& record = *curve.record;
        std::vector<Bytes> scalars = EdgeScalars(record);
        for (int turn = &record == &kSecp256k1 ? 1000 : 25; turn > 0; --turn) {
            scalars.push_back(Small(record, 0));
            Bytes key = NewPublicKey(record);
            ASSERT_EQ(EccMakeKey(key.data(), scalars.back().data(), &record), 1);
            ASSERT_EQ(key, PublicKeyOf(record, scalars.back()));
        }
        Bytes point = PublicKeyOf(record, Small(record, 7));
        for (Bytes const& scalar : scalars) {
            SCOPED_TRACE(curve.name + testing::PrintToString(scalar));
            Bytes const secret = PeerSecretOf(curve.id, scalar, point);
            ASSERT_EQ(SecretOf(record, scalar, point), secret);
            EccSetRandom(nullptr);
            ASSERT_EQ(SecretOf(record, scalar, point), secret) << "unblinded";
            EccSetRandom(Ubrix::Platform::RandomBytes);
            Bytes const key = PublicKeyOf(record, scalar);
            ASSERT_EQ(key, PeerKeyOf(curve.id, scalar));
            point = key.empty() ? point : key;
        }
    }
}

TEST_F(Ecdh, CoordinatesFromPOnCountModuloP) {
    std::string const y = "4218F20AE6C646B363DB68605822FB14264CA8D2587FDD6FBC750D587E76A7EE";
    Bytes const point = FromHex(std::string(63, '0') + "1" + y);
    Bytes const wrapped = FromHex(std::string(55, 'F') + "EFFFFFC30" + y);
    for (Word const small : {1U, 0x1234567U}) {
        Bytes const scalar = Small(kSecp256k1, small);
        Bytes const secret = PeerSecretOf(NID_secp256k1, scalar, point);
        EXPECT_EQ(SecretOf(kSecp256k1, scalar, wrapped), secret);
        EXPECT_EQ(SecretOf(kNarrowSecp256k1, scalar, wrapped), secret);
    }
}

TEST_F(Ecdh, ServerComesToTheSameKey) {
    for (unsigned int const length : {16U, 32U, 40U}) {
        Bytes key(48, '#');
        Bytes publicKey(65, '#');
        MakeEcdhKey(kServerKey, key.data(), length, publicKey.data());
        EXPECT_EQ(publicKey[64], '#');
        publicKey.pop_back();
        Bytes expected = PeerSecretOf(NID_secp256k1, {2}, publicKey);
        expected.resize(length < 32 ? length : 32);
        expected.resize(48, '#');
        EXPECT_EQ(key, expected) << length;
    }
}

void ExpectNoKey(char const* serverHex) {
    Bytes both(96, '#');
    MakeEcdhKey(serverHex, both.data(), 32, both.data() + 32);
    EXPECT_EQ(both, Bytes(96, '#')) << (serverHex != nullptr ? serverHex : "null");
}

TEST_F(Ecdh, MalformedServerKeysLeaveTheOutputs) {
    ExpectNoKey(nullptr);
    std::string const good = kServerKey;
    // Text that ends early, with nothing behind it to read; no digit at the end; the point at infinity.
    for (std::string const& bad : {std::string(), good.substr(1), good + "1", good + good,
                                   good.substr(1) + 'g', std::string(128, '0')}) {
        ExpectNoKey(std::vector<char>(bad.c_str(), bad.c_str() + bad.size() + 1).data());
    }
}

int g_draws = 0;
int g_goodDraws = 0;
char g_drawn = 0;

TEST_F(Ecdh, AFailingRandomFunctionLeavesTheOutputs) {
    EccSetRandom(nullptr);
    ExpectNoKey(kServerKey);
    EccSetRandom([](void* bytes, std::size_t length) {
        std::memset(bytes, g_drawn, length);
        return ++g_draws <= g_goodDraws;
    });
    struct {
        char drawn;
        int good, expectedDraws;
    } const cases[] = {{1, 0, 1}, {1, 1, 2}, {0, 1000, 64}, {'\xFF', 1000, 64}};
    for (auto const& each : cases) {
        g_drawn = each.drawn;
        g_goodDraws = each.good;
        g_draws = 0;
        ExpectNoKey(kServerKey);
        EXPECT_EQ(g_draws, each.expectedDraws);
    }
}

}  // namespace
