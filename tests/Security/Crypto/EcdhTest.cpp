#include "Security/Crypto/Ecdh.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "Security/Crypto/Ecc.h"
#include "Security/Crypto/Hex.h"
#include "Security/Crypto/PeerCurve.h"
#include "Security/Crypto/Random.h"

namespace {

using namespace Ubrix;
using namespace PeerCurve;

unsigned char* Raw(std::string& bytes) {
    return reinterpret_cast<unsigned char*>(bytes.data());
}

unsigned char const* Raw(std::string const& bytes) {
    return reinterpret_cast<unsigned char const*>(bytes.data());
}

std::string FromHex(std::string const& hex) {
    std::string bytes(hex.size() / 2, '\0');
    EXPECT_TRUE(HexToBytes(hex.data(), static_cast<unsigned int>(hex.size()), bytes.data()));
    return bytes;
}

// Twice the base point: the public key of a server whose private key is 2.
char const kServerKey[] =
    "C6047F9441ED7D6D3045406E95C07CD85C778E4B8CEF3CA7ABAC09B95C709EE5"
    "1AE168FEA63DC339A3C58419466CEAEEF7F632653266D0E1236431A950CFE52A";

std::size_t Coordinate(CurveRecord const& record) {
    return static_cast<std::size_t>(record.numBytes);
}

std::string ToScalar(CurveRecord const& record, Word const* words) {
    std::string bytes(static_cast<std::size_t>(record.numNBits + 7) / 8, '\0');
    WordsToBytes(Raw(bytes), static_cast<int>(bytes.size()), words);
    return bytes;
}

std::string Small(CurveRecord const& record, Word number) {
    Word const words[kMaxCurveWords] = {number};
    return ToScalar(record, words);
}

std::string PublicKeyOf(CurveRecord const& record, std::string const& scalar) {
    std::string key(2 * Coordinate(record), '\0');
    return EccPublicKey(Raw(scalar), Raw(key), &record) == 1 ? key : "";
}

std::string SecretOf(CurveRecord const& record, std::string const& scalar, std::string const& point) {
    std::string secret(Coordinate(record), '\0');
    return EccSharedSecret(Raw(point), Raw(scalar), Raw(secret), &record) == 1 ? secret : "";
}

class EcdhTest : public testing::Test {
protected:
    void TearDown() override { EccSetRandom(FillRandom); }
};

TEST_F(EcdhTest, PublishedMultiplesOfTheBasePoint) {
    std::pair<char const*, char const*> const cases[] = {
        {"0000000000000000000000000000000000000000000000000000000000000002", kServerKey},
        {"FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFEBAAEDCE6AF48A03BBFD25E8CD0364140",
         "79BE667EF9DCBBAC55A06295CE870B07029BFCDB2DCE28D959F2815B16F81798"
         "B7C52588D95C3B9AA25B0403F1EEF75702E84BB7597AABE663B82F6F04EF2777"}};
    for (auto const& [scalar, product] : cases) {
        EXPECT_EQ(PublicKeyOf(kSecp256k1, FromHex(scalar)), FromHex(product));
    }
}

// Where windows, carries and the lengthening by the order could go wrong.
std::vector<std::string> EdgeScalars(CurveRecord const& record) {
    std::vector<std::string> scalars;
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

TEST_F(EcdhTest, EveryCurveAgreesWithThePeerAtEdgesAndDrawnKeys) {
    for (Curve const& curve : kCurves) {
        CurveRecord const& record = *curve.record;
        Peer const peer(curve);
        std::vector<std::string> scalars = EdgeScalars(record);
        for (int turn = &record == &kSecp256k1 ? 1000 : 25; turn > 0; --turn) {
            scalars.push_back(Small(record, 0));
            std::string key(2 * Coordinate(record), '\0');
            ASSERT_EQ(EccMakeKey(Raw(key), Raw(scalars.back()), &record), 1);
            ASSERT_EQ(key, PublicKeyOf(record, scalars.back()));
        }
        std::string point = PublicKeyOf(record, Small(record, 7));
        for (std::string const& scalar : scalars) {
            SCOPED_TRACE(curve.name + testing::PrintToString(scalar));
            std::string const secret = peer.Multiply(scalar, point).substr(0, Coordinate(record));
            ASSERT_EQ(SecretOf(record, scalar, point), secret);
            EccSetRandom(nullptr);
            ASSERT_EQ(SecretOf(record, scalar, point), secret) << "unblinded";
            EccSetRandom(FillRandom);
            std::string const key = PublicKeyOf(record, scalar);
            ASSERT_EQ(key, peer.Multiply(scalar));
            point = key.empty() ? point : key;
        }
    }
}

TEST_F(EcdhTest, CoordinatesFromPOnCountModuloP) {
    char const y[] = "4218F20AE6C646B363DB68605822FB14264CA8D2587FDD6FBC750D587E76A7EE";
    std::string const point = FromHex(std::string(63, '0') + "1" + y);
    std::string const wrapped = FromHex(std::string(55, 'F') + "EFFFFFC30" + y);
    for (Word const small : {1U, 0x1234567U}) {
        std::string const scalar = Small(kSecp256k1, small);
        std::string const secret = Peer(kKoblitz).Multiply(scalar, point).substr(0, 32);
        EXPECT_EQ(SecretOf(kSecp256k1, scalar, wrapped), secret);
        EXPECT_EQ(SecretOf(kNarrowSecp256k1, scalar, wrapped), secret);
    }
}

TEST_F(EcdhTest, ServerComesToTheSameKey) {
    std::string before;
    for (unsigned int const length : {16U, 32U, 40U}) {
        std::string key(48, '#');
        std::string publicKey(65, '#');
        MakeEcdhKey(kServerKey, Raw(key), length, Raw(publicKey));
        std::string const expected = Peer(kKoblitz).Multiply("\x02", publicKey.substr(0, 64));
        std::size_t const written = length < 32 ? length : 32;
        EXPECT_EQ(key, expected.substr(0, written) + std::string(48 - written, '#'));
        EXPECT_EQ(publicKey[64], '#');
        EXPECT_NE(before, publicKey);
        before = publicKey;
    }
}

void ExpectNoKey(char const* serverHex) {
    std::string key(32, '#');
    std::string publicKey(64, '#');
    MakeEcdhKey(serverHex, Raw(key), 32, Raw(publicKey));
    EXPECT_EQ(key + publicKey, std::string(96, '#')) << (serverHex != nullptr ? serverHex : "null");
}

TEST_F(EcdhTest, MalformedServerKeysLeaveTheOutputs) {
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

TEST_F(EcdhTest, AFailingRandomFunctionLeavesTheOutputs) {
    EccSetRandom([](void* bytes, unsigned int length) {
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
    EccSetRandom(nullptr);
    ExpectNoKey(kServerKey);
}

}  // namespace
