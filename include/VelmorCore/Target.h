/// @file
/// The base of objects that get calls delivered on another thread.
#pragma once

namespace Ubrix {

class ISelectorCollection;

/// A target of posted calls. A service that derives from it has its calls delivered on the thread that drives
/// the game, or, with a queue of its own, wherever it runs that queue. Callers of the library only meet it as
/// a base of such services.
///
/// Calls may be posted to a target on any thread; its queue is made and deleted on one thread at a time,
/// while nobody posts. A target must outlive every call that is posted to it.
class CTargetBase {
public:
    /// True gives the target a queue of its own.
    explicit CTargetBase(bool ownCollection);
    virtual ~CTargetBase();
    CTargetBase(CTargetBase const&) = delete;
    CTargetBase& operator=(CTargetBase const&) = delete;

    /// True makes the target's own queue, unless it has one; false deletes it, and drops what waits there.
    void SetOwnCollection(bool own);
    /// Runs at most 20 calls that wait in the target's own queue; nothing without one.
    void RunOwnSelectors();
    /// The target's own queue, or null. It stays the target's.
    ISelectorCollection* OwnCollection() const;

private:
    ISelectorCollection* _collection = nullptr;
};

}  // namespace Ubrix
