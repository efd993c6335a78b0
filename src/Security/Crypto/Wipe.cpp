#include "Security/Crypto/Wipe.h"

#include <cstring>

namespace Ubrix::Crypto {
namespace {

// Volatile, so that the compiler can't know what is called and must leave the call in place.
void* (*const volatile g_fill)(void*, int, std::size_t) = std::memset;

}  // namespace

void Wipe(void* bytes, std::size_t length) {
    g_fill(bytes, 0, length);
}

}  // namespace Ubrix::Crypto
