// The objects that the class registry hands out themselves.
#pragma once

#include <string>

namespace Ubrix {

class IPlatformObject;

// A process-wide map by class name, which outlives the core's release. Its lock is a leaf. It never looks
// into an object, so that one can take itself out when it dies. Any thread.
class SharedPlatformObjects {
public:
    SharedPlatformObjects() = delete;

    // Makes an entry or replaces its object.
    static void Add(std::string const& className, IPlatformObject* object);
    // Null if there is none of that name.
    static IPlatformObject* Find(std::string const& className);
    // Takes out every entry of an object that dies.
    static void Forget(IPlatformObject const* object);
};

}  // namespace Ubrix
