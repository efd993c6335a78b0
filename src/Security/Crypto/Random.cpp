#include "Security/Crypto/Random.h"

#include "Platform/Random.h"

namespace Ubrix {

bool FillRandom(void* bytes, unsigned int length) {
    return Platform::RandomBytes(bytes, length);
}

}  // namespace Ubrix
