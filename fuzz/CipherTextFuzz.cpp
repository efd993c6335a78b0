// Deciphering and decoding of stored text: any bytes may be in a file.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Security/Crypto/Base64.h"
#include "Security/Crypto/Tea.h"

// A cipher text that was made from the input's own bytes must come back.
static void RoundTrip(std::string const& plain, std::string const& key) {
    int length = Ubrix::Crypto::zk_symmetry_encrypt2_length(static_cast<int>(plain.size()));
    std::string cipher(static_cast<std::size_t>(length), '\0');
    Ubrix::Crypto::zk_symmetry_encrypt2(plain.data(), static_cast<int>(plain.size()), key.data(), &cipher[0],
                                        &length);
    std::string out(cipher.size(), '\0');
    int outLength = length;
    if (!Ubrix::Crypto::zk_symmetry_decrypt2(cipher.data(), length, key.data(), &out[0], &outLength) ||
        out.substr(0, static_cast<std::size_t>(outLength)) != plain) {
        std::abort();
    }
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    constexpr std::size_t kKey = 16;
    std::string const input(reinterpret_cast<char const*>(data), size);
    std::string const decoded = Ubrix::Crypto::Base64Decode(input);
    if (decoded.size() > size || Ubrix::Crypto::Base64Decode(Ubrix::Crypto::Base64Encode(
                                     data, static_cast<unsigned int>(size))) != input) {
        std::abort();
    }
    if (size <= kKey) {
        return 0;
    }
    std::string const key = input.substr(0, kKey);
    std::string const cipher = input.substr(kKey);
    // Room from the input, so that too little of it is tried as well.
    std::string out(static_cast<unsigned char>(key[0]), '\0');
    int length = static_cast<int>(out.size());
    Ubrix::Crypto::zk_symmetry_decrypt2(cipher.data(), static_cast<int>(cipher.size()), key.data(), &out[0],
                                        &length);
    if (static_cast<std::size_t>(length) > out.size()) {
        std::abort();
    }
    RoundTrip(cipher, key);
    return 0;
}
