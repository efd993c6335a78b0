// The owner of platform objects.
#pragma once

#include <map>

#include "Platform/Mutex.h"
#include "System/PlatformObject/IPlatformObjectManager.h"

namespace Ubrix {

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
