// The root of the native twins of managed objects.
#pragma once

namespace Ubrix {

// A native object that is paired with a managed one by a number. Its two fields are set while it is made;
// from then on they don't change, and may be read on any thread.
class IPlatformObject {
public:
    // Frees the class name, and takes the object out of the registry's shared objects.
    virtual ~IPlatformObject();
    IPlatformObject(IPlatformObject const&) = delete;
    IPlatformObject& operator=(IPlatformObject const&) = delete;

    // Keeps a copy of `name`, which must not be null, in place of the present one.
    void SetClassName(char const* name);

    // The number that the managed side chose.
    long long objectId = 0;
    // The name that the object was made under, or null. The object's own, made with new[].
    char* className = nullptr;

protected:
    IPlatformObject() = default;
};

}  // namespace Ubrix
