// Overwriting of secrets. Thread-safe.
#pragma once

#include <cstddef>

namespace Ubrix::Crypto {

// Sets length bytes to zero, also where nothing reads them afterwards and a plain fill would be left out.
void Wipe(void* bytes, std::size_t length);

// Wipes what it was given when it goes out of scope.
template <typename T>
class WipeAtExit {
public:
    explicit WipeAtExit(T& secret) : _secret(secret) {}
    ~WipeAtExit() { Wipe(&_secret, sizeof _secret); }
    WipeAtExit(WipeAtExit const&) = delete;
    WipeAtExit& operator=(WipeAtExit const&) = delete;

private:
    T& _secret;
};

}  // namespace Ubrix::Crypto
