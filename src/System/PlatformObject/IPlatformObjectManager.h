// The owner of platform objects, as callers see it.
#pragma once

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

}  // namespace Ubrix
