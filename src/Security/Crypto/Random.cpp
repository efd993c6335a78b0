#include "Security/Crypto/Random.h"

#include "Platform/Random.h"

namespace Ubrix::Crypto {

bool FillRandom(void* bytes, unsigned int length) {
    return Platform::RandomBytes(bytes, length);
}

}  // namespace Ubrix::Crypto
