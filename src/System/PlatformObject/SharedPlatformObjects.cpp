#include "System/PlatformObject/SharedPlatformObjects.h"

#include <iterator>
#include <map>

#include "Platform/Immortal.h"
#include "Platform/Mutex.h"

namespace Ubrix {

using Platform::ScopedLock;

namespace {

struct SharedMap {
    Platform::RecursiveMutex lock;
    std::map<std::string, IPlatformObject*> objects VC_GUARDED_BY(lock);
};

// Never destroyed: objects may go with the process.
SharedMap& TheMap() {
    static Platform::Immortal<SharedMap> map;
    return *map;
}

}  // namespace

void SharedPlatformObjects::Add(std::string const& className, IPlatformObject* object) {
    SharedMap& map = TheMap();
    ScopedLock const lock(map.lock);
    map.objects[className] = object;
}

IPlatformObject* SharedPlatformObjects::Find(std::string const& className) {
    SharedMap& map = TheMap();
    ScopedLock const lock(map.lock);
    auto const found = map.objects.find(className);
    return found != map.objects.end() ? found->second : nullptr;
}

void SharedPlatformObjects::Forget(IPlatformObject const* object) {
    SharedMap& map = TheMap();
    ScopedLock const lock(map.lock);
    for (auto entry = map.objects.begin(); entry != map.objects.end();) {
        entry = entry->second == object ? map.objects.erase(entry) : std::next(entry);
    }
}

}  // namespace Ubrix
