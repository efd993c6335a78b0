// Which transport carries the requests.
#pragma once

#include <VelmorCore/HttpTransport.h>

namespace Ubrix {

// Static operations only. Thread-safe; the choice's lock is a leaf.
class TransportChoice {
public:
    // The transport for a request that starts now. From here on the choice is final.
    static IHttpTransport& ForRequest();
    // Chooses `transport`, null for the built-in one. False once the choice is final.
    static bool Choose(IHttpTransport* transport);
    // Opens the choice again and chooses `transport`, for tests. Requests in flight keep theirs.
    static void Reopen(IHttpTransport* transport);
};

}  // namespace Ubrix
