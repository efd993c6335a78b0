// Decoding never grows a text, and takes back what encoding made of any bytes.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Serializer/URLEncoder.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    std::string const text(reinterpret_cast<char const*>(data), size);
    bool const isShorter = Ubrix::URLEncoder::Decode(text).size() <= size;
    bool const comesBack = Ubrix::URLEncoder::Decode(Ubrix::URLEncoder::Encode(text)) == text;
    if (!isShorter || !comesBack) {
        std::abort();
    }
    return 0;
}
