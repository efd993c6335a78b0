#include "Security/Crypto/Ecdh.h"

#include <algorithm>
#include <cstring>

#include "Security/Crypto/Curves.h"
#include "Security/Crypto/Ecc.h"
#include "Security/Crypto/Hex.h"
#include "Security/Crypto/Wipe.h"

namespace Ubrix::Crypto {
namespace {

constexpr unsigned int kCoordinate = 32;
constexpr unsigned int kPublicKey = 2 * kCoordinate;
constexpr unsigned int kPublicKeyDigits = 2 * kPublicKey;

bool ReadServerKey(char const* text, unsigned char* publicKey) {
    // The text may end early, so the search for its end must not look beyond the length that it may have.
    if (text == nullptr || std::memchr(text, '\0', kPublicKeyDigits + 1) != text + kPublicKeyDigits) {
        return false;
    }
    return HexToBytes(text, kPublicKeyDigits, publicKey);
}

}  // namespace

void MakeEcdhKey(char const* serverPublicKeyHex, void* key, unsigned int keyLength, void* clientPublicKey) {
    unsigned char serverKey[kPublicKey];
    if (!ReadServerKey(serverPublicKeyHex, serverKey)) {
        return;
    }
    unsigned char privateKey[kCoordinate];
    unsigned char secret[kCoordinate];
    WipeAtExit const wipePrivateKey(privateKey);
    WipeAtExit const wipeSecret(secret);
    unsigned char publicKey[kPublicKey];
    if (EccMakeKey(publicKey, privateKey, &kSecp256k1) == 0 ||
        EccSharedSecret(serverKey, privateKey, secret, &kSecp256k1) == 0) {
        return;
    }
    std::memcpy(clientPublicKey, publicKey, sizeof publicKey);
    std::memcpy(key, secret, std::min(keyLength, kCoordinate));
}

}  // namespace Ubrix::Crypto
