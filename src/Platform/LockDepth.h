// How many locks of the library a thread holds, and what it has put off until it holds none.
#pragma once

namespace Ubrix::Platform {

// What concerns the calling thread alone; so any thread, without a lock. Nothing here allocates.
//
// Whoever calls out into the game asks first whether a lock is held, and puts the call off if one is.
class LockDepth {
public:
    using Work = void (*)();

    // True while the thread holds a RecursiveMutex.
    static bool HoldsLock();
    // For a thread that holds a lock: `work` runs once, on this thread, as soon as it has released its last
    // one. A later call before that replaces the function.
    static void RunWhenReleased(Work work);
    // The same, and ahead of it: whatever else was put off finds this done.
    static void RunFirstWhenReleased(Work work);

    // True if the thread holds one lock, once, and has put something off until it is released.
    static bool IsLastBeforeWork();

    // What RecursiveMutex tells: a lock was taken; a lock was released.
    static void Taken();
    static void Released();
};

}  // namespace Ubrix::Platform
