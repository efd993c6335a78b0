// Bytes from the system's cryptographic random source. Thread-safe.
#pragma once

namespace Ubrix::Crypto {

// Returns: false if the source fails; no weaker source stands in
// Out:     bytes: length bytes; not to be used after a failure
bool FillRandom(void* bytes, unsigned int length);

}  // namespace Ubrix::Crypto
