#include "Platform/Guid.h"

#include "Platform/Random.h"

namespace Ubrix::Platform {

bool MakeGuid(Guid& guid) {
    guid = {};
    Guid made{};
    if (!RandomBytes(&made, sizeof made)) {
        return false;
    }
    made.data3 = static_cast<std::uint16_t>((made.data3 & 0x0FFFU) | 0x4000U);
    made.data4[0] = static_cast<std::uint8_t>((made.data4[0] & 0x3FU) | 0x80U);
    guid = made;
    return true;
}

}  // namespace Ubrix::Platform
