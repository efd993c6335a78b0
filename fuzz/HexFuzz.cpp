// Hexadecimal text into bytes, and as a server's public key; Base64 text, whose leading part decides.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Security/Crypto/Base64.h"
#include "Security/Crypto/Ecdh.h"
#include "Security/Crypto/Hex.h"

namespace {

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

std::string AsHex(std::string const& bytes) {
    static constexpr char kDigits[] = "0123456789aBcDeF";
    std::string text;
    for (char const c : bytes) {
        text += kDigits[static_cast<unsigned char>(c) >> 4U];
        text += kDigits[static_cast<unsigned char>(c) & 15U];
    }
    return text;
}

void CheckHex(std::string const& text) {
    std::string bytes(text.size() / 2 + 1, '?');
    bool const isHex =
        Ubrix::Crypto::HexToBytes(text.data(), static_cast<unsigned int>(text.size()), bytes.data());
    bool const hasDigits = text.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
    Require(isHex == (hasDigits || text.size() % 2 != 0) && bytes.back() == '?');
}

// A key of the client's is made only from a whole key of the server's.
void CheckServerKey(std::string const& text) {
    unsigned char key[32] = {};
    unsigned char client[64] = {};
    Ubrix::Crypto::MakeEcdhKey(text.c_str(), key, sizeof key, client);
    bool const isMade = std::string(reinterpret_cast<char*>(client), sizeof client).find_first_not_of('\0') !=
                        std::string::npos;
    std::string const seen = text.c_str();
    Require(!isMade || (seen.size() >= 128 && seen.find_first_not_of("0123456789abcdefABCDEF") >= 128));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    std::string const input(reinterpret_cast<char const*>(data), size);
    CheckHex(input);
    std::string const hex = AsHex(input);
    std::string back(input.size(), '\0');
    Require(Ubrix::Crypto::HexToBytes(hex.data(), static_cast<unsigned int>(hex.size()), back.data()) &&
            back == input);
    if (size < 200) {
        CheckServerKey(input);
        CheckServerKey(hex);
    }
    static constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string const leading = input.substr(0, input.find_first_not_of(kAlphabet));
    std::string const decoded = Ubrix::Crypto::Base64Decode(input);
    Require(decoded == Ubrix::Crypto::Base64Decode(leading) && decoded.size() == leading.size() * 3 / 4);
    Require(Ubrix::Crypto::Base64Decode(Ubrix::Crypto::Base64Encode(data, static_cast<unsigned int>(size))) ==
            input);
    return 0;
}
