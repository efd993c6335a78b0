#include "System/PlatformObject/CPlatformObjectManager.h"

#include <unordered_map>

#include "Platform/Immortal.h"
#include "Platform/MemoryWant.h"
#include "System/PlatformObject/IPlatformObject.h"

namespace Ubrix {

using Platform::ScopedLock;

namespace {

// Under how many ids each object is kept, over all managers. A shared object may be under many, and must be
// deleted once. Never destroyed: managers may go with the process.
struct Holders {
    Platform::RecursiveMutex lock;
    std::unordered_map<IPlatformObject const*, int> counts VC_GUARDED_BY(lock);
};

Holders& TheHolders() {
    static Platform::Immortal<Holders> holders;
    return *holders;
}

void Hold(IPlatformObject const* object) {
    Holders& holders = TheHolders();
    ScopedLock const lock(holders.lock);
    ++holders.counts[object];
}

// True if that was the last.
bool LetGo(IPlatformObject const* object) {
    Holders& holders = TheHolders();
    ScopedLock const lock(holders.lock);
    auto const found = holders.counts.find(object);
    if (found == holders.counts.end() || --found->second > 0) {
        return false;
    }
    holders.counts.erase(found);
    return true;
}

void DeleteIfLast(IPlatformObject* object) {
    if (LetGo(object)) {
        // Its destructor may send, and lets nothing through.
        Platform::CallOut const out;
        delete object;
    }
}

}  // namespace

CPlatformObjectManager::~CPlatformObjectManager() {
    CPlatformObjectManager::DestroyAll();
}

IPlatformObject* CPlatformObjectManager::GetObject(long long objectId) {
    ScopedLock const lock(_lock);
    auto const found = _objects.find(objectId);
    return found != _objects.end() ? found->second : nullptr;
}

void CPlatformObjectManager::AddObject(long long objectId, IPlatformObject* object) {
    if (object == nullptr) {
        return;
    }
    ScopedLock const lock(_lock);
    // Counted first: without memory for it, no place stays behind empty.
    Hold(object);
    IPlatformObject*& place = _objects[objectId];
    if (place != nullptr) {
        LetGo(place);
    }
    place = object;
}

void CPlatformObjectManager::RemoveObject(long long objectId) {
    IPlatformObject* removed = nullptr;
    {
        ScopedLock const lock(_lock);
        auto const found = _objects.find(objectId);
        if (found == _objects.end()) {
            return;
        }
        removed = found->second;
        _objects.erase(found);
    }
    DeleteIfLast(removed);
}

void CPlatformObjectManager::DestroyAll() {
    for (IPlatformObject* first = TakeFirst(); first != nullptr; first = TakeFirst()) {
        DeleteIfLast(first);
    }
}

IPlatformObject* CPlatformObjectManager::TakeFirst() {
    ScopedLock const lock(_lock);
    if (_objects.empty()) {
        return nullptr;
    }
    IPlatformObject* const object = _objects.begin()->second;
    _objects.erase(_objects.begin());
    return object;
}

}  // namespace Ubrix
