#include "System/PlatformObject/CPlatformClassRegistry.h"

#include <map>

#include "Platform/MemoryWant.h"
#include "Platform/Mutex.h"
#include "System/PlatformObject/IPlatformObject.h"
#include "System/PlatformObject/IPlatformObjectCreator.h"

namespace Ubrix {

using Platform::ScopedLock;

namespace {

struct ClassMaps {
    Platform::RecursiveMutex lock;
    std::map<std::string, IPlatformObjectCreator*> creators VC_GUARDED_BY(lock);
    std::map<std::string, IPlatformObject*> sharedObjects VC_GUARDED_BY(lock);
};

// Never destroyed: objects may go with the process.
ClassMaps& Maps() {
    static ClassMaps& maps = *new ClassMaps;
    return maps;
}

}  // namespace

CPlatformClassRegistry& CPlatformClassRegistry::GetInstance() {
    static CPlatformClassRegistry& instance = *new CPlatformClassRegistry;
    return instance;
}

void CPlatformClassRegistry::RegisterCreator(char const* className, IPlatformObjectCreator* creator) {
    if (className == nullptr || creator == nullptr) {
        return;
    }
    ClassMaps& maps = Maps();
    ScopedLock const lock(maps.lock);
    maps.creators[className] = creator;
}

void CPlatformClassRegistry::RegisterSharedObject(char const* className, IPlatformObject* object) {
    if (className == nullptr || object == nullptr) {
        return;
    }
    ClassMaps& maps = Maps();
    ScopedLock const lock(maps.lock);
    maps.sharedObjects[className] = object;
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

void CPlatformClassRegistry::Forget(IPlatformObject const* object) {
    ClassMaps& maps = Maps();
    ScopedLock const lock(maps.lock);
    auto& shared = maps.sharedObjects;
    for (auto entry = shared.begin(); entry != shared.end();) {
        entry = entry->second == object ? shared.erase(entry) : std::next(entry);
    }
}

IPlatformObject* CPlatformClassRegistry::CreateNamed(std::string const& name) {
    IPlatformObjectCreator* creator = nullptr;
    {
        ClassMaps& maps = Maps();
        ScopedLock const lock(maps.lock);
        auto const shared = maps.sharedObjects.find(name);
        if (shared != maps.sharedObjects.end()) {
            return shared->second;
        }
        auto const found = maps.creators.find(name);
        creator = found != maps.creators.end() ? found->second : nullptr;
    }
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
