// What makes the objects of one class name.
#pragma once

namespace Ubrix {

class IPlatformObject;

// Entered into CPlatformClassRegistry, which doesn't own it: it stays for the rest of the process.
class IPlatformObjectCreator {
public:
    // A new CPlatformObject, which the caller owns; null if it can't be made. On the thread that asks for it,
    // with no lock held.
    virtual IPlatformObject* CreateObject() = 0;

protected:
    ~IPlatformObjectCreator() = default;
};

}  // namespace Ubrix
