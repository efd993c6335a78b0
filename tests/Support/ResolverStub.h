// Stands before the system's name resolution in the test program, so that no test asks a name server.
//
// A name ending in ".unresolved" doesn't resolve; one ending in ".stalled" takes until Release, and then
// doesn't either. All others go to the system.
#pragma once

#include <string>

namespace Test {

class ResolverStub {
public:
    // The latest name of either ending.
    static std::string LatestName();
    // Waits until a look-up of a stalled name has begun since the latest Release. False after ten seconds.
    static bool AwaitStall();
    // Ends all stalled look-ups, and waits for their end.
    static void Release();
};

}  // namespace Test
