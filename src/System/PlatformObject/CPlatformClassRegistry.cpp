#include "System/PlatformObject/CPlatformClassRegistry.h"

#include <map>

#include "Platform/Immortal.h"
#include "Platform/MemoryWant.h"
#include "Platform/Mutex.h"
#include "System/PlatformObject/IPlatformObject.h"
#include "System/PlatformObject/SharedPlatformObjects.h"

namespace Ubrix {

using Platform::ScopedLock;

namespace {

struct CreatorMap {
    Platform::RecursiveMutex lock;
    std::map<std::string, IPlatformObjectCreator*> creators VC_GUARDED_BY(lock);
};

// Never destroyed: threads may ask while the process exits.
CreatorMap& TheCreators() {
    static Platform::Immortal<CreatorMap> map;
    return *map;
}

IPlatformObjectCreator* FindCreator(std::string const& className) {
    CreatorMap& map = TheCreators();
    ScopedLock const lock(map.lock);
    auto const found = map.creators.find(className);
    return found != map.creators.end() ? found->second : nullptr;
}

}  // namespace

CPlatformClassRegistry& CPlatformClassRegistry::GetInstance() {
    static Platform::Immortal<CPlatformClassRegistry> instance(
        [](void* room) { return new (room) CPlatformClassRegistry; });
    return *instance;
}

void CPlatformClassRegistry::RegisterCreator(char const* className, IPlatformObjectCreator* creator) {
    if (className == nullptr || creator == nullptr) {
        return;
    }
    CreatorMap& map = TheCreators();
    ScopedLock const lock(map.lock);
    map.creators[className] = creator;
}

void CPlatformClassRegistry::RegisterSharedObject(char const* className, IPlatformObject* object) {
    if (className == nullptr || object == nullptr) {
        return;
    }
    SharedPlatformObjects::Add(className, object);
}

IPlatformObject* CPlatformClassRegistry::Create(char const* className) {
    return Create(className, nullptr);
}

IPlatformObject* CPlatformClassRegistry::Create(char const* className, char const* suffix) {
    if (className == nullptr) {
        return nullptr;
    }
    std::string name(className);
    if (suffix != nullptr) {
        name += suffix;
    }
    return CreateNamed(name);
}

IPlatformObject* CPlatformClassRegistry::CreateNamed(std::string const& name) {
    if (IPlatformObject* const shared = SharedPlatformObjects::Find(name)) {
        return shared;
    }
    IPlatformObjectCreator* const creator = FindCreator(name);
    if (creator == nullptr) {
        return nullptr;
    }
    IPlatformObject* object = nullptr;
    {
        Platform::CallOut const out;
        object = creator->CreateObject();
    }
    if (object != nullptr) {
        object->SetClassName(name.c_str());
    }
    return object;
}

}  // namespace Ubrix
