// A URL as a caller hands it over.
#include <cstddef>
#include <cstdint>
#include <string>

#include "System/WWW/Task/CrackedUrl.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const text(reinterpret_cast<char const*>(data), size);
    Ubrix::CrackedUrl url;
    // What cracks must be fit for a request line.
    if (url.SetUrl(text.c_str()) && url.GetPath().find_first_of(" \r\n") != std::string::npos) {
        __builtin_trap();
    }
    return 0;
}
