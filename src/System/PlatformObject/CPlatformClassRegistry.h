// The classes that managed code can name.
#pragma once

#include <string>

namespace Ubrix {

class IPlatformObject;

// What makes the objects of one class name. Entered into CPlatformClassRegistry, which doesn't own it: it
// stays for the rest of the process.
class IPlatformObjectCreator {
public:
    // A new CPlatformObject, which the caller owns; null if it can't be made. On the thread that asks for it,
    // with no lock held.
    virtual IPlatformObject* CreateObject() = 0;

protected:
    ~IPlatformObjectCreator() = default;
};

// Two process-wide maps by class name, empty in this library by itself: creators, and shared objects, which
// are handed out themselves (SharedPlatformObjects.h). Entries stay over the core's release. Each map has a
// lock; both are leaves and never held while a creator runs. Any thread, except that a shared object isn't to
// be asked for while its last id is removed on another thread.
class CPlatformClassRegistry {
public:
    // The one instance, made at first use and never destroyed.
    static CPlatformClassRegistry& GetInstance();
    CPlatformClassRegistry(CPlatformClassRegistry const&) = delete;
    CPlatformClassRegistry& operator=(CPlatformClassRegistry const&) = delete;

    // Make an entry or replace its value; nothing if either argument is null. The name is copied.
    void RegisterCreator(char const* className, IPlatformObjectCreator* creator);
    // A manager that is given the object owns it. When it is deleted, its entries go by themselves.
    void RegisterSharedObject(char const* className, IPlatformObject* object);

    // The shared object of that name, or else a new object that carries the name as its class name; null if
    // the name is null or unknown, or the creator makes none.
    IPlatformObject* Create(char const* className);
    // The same for the name with `suffix` behind it; a null suffix adds nothing.
    IPlatformObject* Create(char const* className, char const* suffix);

private:
    CPlatformClassRegistry() = default;
    IPlatformObject* CreateNamed(std::string const& name);
};

}  // namespace Ubrix
