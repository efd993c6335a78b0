// A long-lived worker thread that calls a virtual work function in a loop.
#pragma once

#include <memory>

#include "System/Thread/CSelector.h"

namespace Ubrix {

// The thread exists from the constructor on, but touches nothing of the object before Start or Stop is called
// on it, so a derived constructor may take its time, and may throw. The body runs once: a stopped thread
// can't be started again.
//
// An object whose thread may have been started is heap-allocated and dies through Destroy alone: whichever of
// Destroy and the end of the thread comes second deletes it.
//
// Start, Pause, Resume, Stop, Destroy and PostSelector may be called on any thread, the thread itself
// included. The virtual operations run on the worker thread. No lock is held while they run, nor while a
// selector does. An exception from them ends the process.
class CThreadBase : public CTargetBase {
public:
    // Thread states.
    enum : int { kCreated = 0, kRunning = 1, kPaused = 2, kEnding = 3 };

    CThreadBase();
    ~CThreadBase() override;

    // One piece of work. The loop has no pace of its own: the work is to wait for what it needs.
    virtual void ThRun() = 0;
    // Once, before the first turn.
    virtual void OnThreadStart() {}
    // Once, after the last turn, or in place of all turns if the thread was stopped before its start.
    virtual void OnThreadExit() {}
    // On entering and on leaving the paused state; the latter also on the first turn.
    virtual void OnThreadPause() {}
    virtual void OnThreadResume() {}
    // Never called by this class.
    virtual void OnThreadReserved() {}

    void Start();
    // Both take effect at the next turn and don't wait for it.
    void Pause();
    // True gives up the rest of the caller's time slice.
    void Resume(bool yield);
    // Ends the loop after the turn in progress, and doesn't wait for it. Before Start, it lets the thread end
    // without having worked.
    void Stop();

    // Stops the thread, lets go of the object and nulls `thread`. With `detach`, returns at once, and a
    // thread that still lives deletes the object when it ends. Without, returns after the thread's last turn
    // and the deletion; on the thread itself that can't be, and it does as with `detach`. A null `thread` is
    // allowed.
    static void Destroy(CThreadBase*& thread, bool detach);

    // Have a member called on the worker thread after its next turn, in the order of posting. What waits when
    // the thread ends is dropped.
    template <class Target>
    void PostSelector(void (Target::*member)(void*), void* arg) {
        CSelector selector;
        selector.target = this;
        selector.member1 = static_cast<CSelector::Member1>(member);
        selector.arg1 = arg;
        AddSelector(selector);
    }
    template <class Target>
    void PostSelector(void (Target::*member)()) {
        CSelector selector;
        selector.target = this;
        selector.member0 = static_cast<CSelector::Member0>(member);
        AddSelector(selector);
    }

    // One of the thread states.
    int ThreadState() const;

private:
    struct Body;
    enum class Pace { Work, Skip, Leave };

    static void onThreadProc(void* argument);
    static void AwaitStart(Body& body);
    static void LeaveObject(Body& body, CThreadBase* object);
    void Run();
    void RunLoop();
    Pace BeginTurn();
    bool WaitWhilePaused();
    void runSelectors();
    bool TakeSelector(CSelector& selector);
    void AddSelector(CSelector const& selector);

    // Shared with the thread, which may outlive the object.
    std::shared_ptr<Body> _body;
};

}  // namespace Ubrix
