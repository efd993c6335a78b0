#include "System/PlatformObject/PlatformObjects.h"

#include <array>

#include "Platform/Mutex.h"
#include "System/PlatformObject/CPlatformClassRegistry.h"
#include "System/PlatformObject/CPlatformObject.h"

namespace Ubrix {

using Platform::ScopedLock;

namespace {

using ManagerPointer = std::shared_ptr<CPlatformObjectManager>;
using Managers = std::array<ManagerPointer, 3>;

// Indexed by role. The lock guards the pointers only. Never destroyed: threads may outlive main.
struct ManagerHolder {
    Platform::RecursiveMutex lock;
    Managers managers VC_GUARDED_BY(lock);
};

ManagerHolder& Holder() {
    static ManagerHolder& holder = *new ManagerHolder;
    return holder;
}

// True if an object was made.
bool AddInRole(PlatformObjectRole role, char const* className, char const* suffix, long long objectId) {
    IPlatformObject* const made = CPlatformClassRegistry::GetInstance().Create(className, suffix);
    auto* const object = dynamic_cast<CPlatformObject*>(made);
    if (object == nullptr) {
        return false;
    }
    object->objectId = objectId;
    PlatformObjectManager(role)->AddObject(objectId, object);
    return true;
}

}  // namespace

ManagerPointer PlatformObjectManager(PlatformObjectRole role) {
    ManagerHolder& holder = Holder();
    ScopedLock const lock(holder.lock);
    ManagerPointer& manager = holder.managers.at(static_cast<std::size_t>(role));
    if (manager == nullptr) {
        manager = std::make_shared<CPlatformObjectManager>();
    }
    return manager;
}

bool AddPlatformObject(long long objectId, char const* className) {
    if (className == nullptr || *className == '\0') {
        return false;
    }
    AddInRole(PlatformObjectRole::Main, className, nullptr, objectId);
    bool const request = AddInRole(PlatformObjectRole::Request, className, ".REQ", objectId);
    bool const response = AddInRole(PlatformObjectRole::Response, className, ".RESP", objectId);
    return request || response;
}

void RemovePlatformObject(long long objectId) {
    PlatformObjectManager(PlatformObjectRole::Request)->RemoveObject(objectId);
    PlatformObjectManager(PlatformObjectRole::Response)->RemoveObject(objectId);
}

void ReleasePlatformObjects() {
    for (PlatformObjectRole const role :
         {PlatformObjectRole::Main, PlatformObjectRole::Request, PlatformObjectRole::Response}) {
        PlatformObjectManager(role)->DestroyAll();
    }
    Managers released;
    {
        ManagerHolder& holder = Holder();
        ScopedLock const lock(holder.lock);
        released.swap(holder.managers);
    }
    for (ManagerPointer& manager : released) {
        manager.reset();
    }
}

}  // namespace Ubrix
