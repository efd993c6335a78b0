// Globally unique identifiers.
#pragma once

#include <cstdint>

namespace Ubrix::Platform {

struct Guid {
    std::uint32_t data1;
    std::uint16_t data2;
    std::uint16_t data3;
    std::uint8_t data4[8];
};

// Makes a new random identifier (RFC 4122, version 4). False if the system can't; `guid` is then all zero.
// Thread-safe.
bool MakeGuid(Guid& guid);

}  // namespace Ubrix::Platform
