// The owner of platform objects.
#pragma once

#include <map>

#include "Platform/Mutex.h"

namespace Ubrix {

class IPlatformObject;

// Keeps objects by their id.
class IPlatformObjectManager {
public:
    IPlatformObjectManager() = default;
    virtual ~IPlatformObjectManager() = default;
    IPlatformObjectManager(IPlatformObjectManager const&) = delete;
    IPlatformObjectManager& operator=(IPlatformObjectManager const&) = delete;

    // The object, which stays the manager's, until its id is removed; null if there is none.
    virtual IPlatformObject* GetObject(long long objectId) = 0;
    // Takes the object over. Null is ignored. One that the id has already is lost to the manager: it is not
    // deleted.
    virtual void AddObject(long long objectId, IPlatformObject* object) = 0;
    // Takes the id out and deletes its object; an unknown id does nothing.
    virtual void RemoveObject(long long objectId) = 0;
    // Deletes all objects, in the order of their ids.
    virtual void DestroyAll() = 0;
};

// An object that is kept under several ids, or in several managers, is deleted when the last of them lets it
// go. The lock guards the map, and takes the one of the count of holders inside itself; neither is held while
// an object is deleted, so that a destructor may call any operation here. Any thread; but what GetObject gave
// is only good as long as no other thread removes it.
class CPlatformObjectManager : public IPlatformObjectManager {
public:
    // As DestroyAll.
    ~CPlatformObjectManager() override;

    IPlatformObject* GetObject(long long objectId) override;
    void AddObject(long long objectId, IPlatformObject* object) override;
    void RemoveObject(long long objectId) override;
    // Also what a destructor adds meanwhile.
    void DestroyAll() override;

private:
    // Takes the object with the lowest id out. Null if there is none.
    IPlatformObject* TakeFirst();

    Platform::RecursiveMutex _lock;
    std::map<long long, IPlatformObject*> _objects VC_GUARDED_BY(_lock);
};

}  // namespace Ubrix
