// The system's cryptographic random source.
#pragma once

#include <cstddef>

namespace Ubrix::Platform {

// Fills `length` bytes. False if the source fails; the bytes are then not to be used, and no weaker source
// takes its place. Thread-safe.
bool RandomBytes(void* bytes, std::size_t length);

}  // namespace Ubrix::Platform
