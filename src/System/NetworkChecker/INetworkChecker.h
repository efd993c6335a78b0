// The network diagnostics, as callers see them.
#pragma once

#include <cstdint>

namespace Ubrix {

// What the arguments say (the host, the limits, the callback) is a matter of the platform that runs the
// diagnostics; on this platform nothing reads them, and the three operations do nothing. Any thread.
class INetworkChecker {
public:
    // Holds an integer or an address.
    using Word = std::intptr_t;

    // The one instance. The object is the same each time and stays valid: it may be kept over a release.
    static INetworkChecker& GetInstance();

    virtual void Ping(Word first, Word second, Word third, Word fourth, Word fifth) = 0;
    virtual void TraceRoute(Word first, Word second, Word third, Word fourth) = 0;
    virtual void NSLookup(Word first, Word second, Word third) = 0;

protected:
    ~INetworkChecker() = default;
};

}  // namespace Ubrix
