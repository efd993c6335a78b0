// The pool behind OperationQueue: its lists, its workers and their manager.
// Sources: OperationQueueImp.cpp, OperationQueueThreads.cpp
#pragma once

#include <VelmorCore/Operation.h>

#include <memory>
#include <vector>

#include "Platform/Condition.h"
#include "Platform/Event.h"
#include "Platform/Mutex.h"

namespace Ubrix {

// The manager looks at most once a tick, and only when something is ready or falls due; in between it sleeps.
// Its threads and callers share the pool: after a release it goes when the manager has seen the last worker
// go.
//
// Locks, in this order: the holder's, held while a pool is set up; then the pool's, which guards its lists
// and counters for list work only: nothing is run, deleted or logged under it. Beneath both is the lock
// of the alarm, a leaf.
class OperationQueueImp final : public OperationQueue,
                                public std::enable_shared_from_this<OperationQueueImp> {
public:
    // The present pool, made at first use.
    static std::shared_ptr<OperationQueueImp> GetInstance();
    // The release callback: stops the pool and forgets it, without waiting.
    static void ReleaseInstance();
    // Makes the holder with its lock, unless it is there. It is never destroyed.
    static void CreateLock();
    // An operation is due earlier than it was: has the manager look again. Any thread.
    static void WakeManager();

    // For the holder alone; nothing runs before Begin.
    OperationQueueImp() = default;
    ~OperationQueueImp();
    OperationQueueImp(OperationQueueImp const&) = delete;
    OperationQueueImp& operator=(OperationQueueImp const&) = delete;
    void Begin();

    void AddOperation(Operation::Function function, void* data, bool repeat) override;
    void AddOperation(OperationTargetBase* target, ObjectOperation::Member member, void* data,
                      bool repeat) override;

    // How many workers there are, and how many of them have nothing to do.
    struct Threads {
        int all;
        int idle;
    };
    Threads CountThreads();

private:
    using OperationPointer = std::unique_ptr<Operation>;
    using OperationList = std::vector<OperationPointer>;
    class Worker;

    void End();
    void CreateWorker();
    bool StartThread(void (*body)(void* share), void** handle);
    void* EnsureManager() VC_REQUIRES(_mutex);
    template <class Make>
    void Add(Make const& make);
    void MakeRoom() VC_REQUIRES(_mutex);
    void Append(OperationPointer operation) VC_REQUIRES(_mutex);
    bool TakeBack(OperationPointer& operation);

    static void onThreadProc(void* share);
    static void onThreadManageProc(void* share);
    void Manage();
    bool Tick(long long now);
    int MoveDue(long long now) VC_REQUIRES(_mutex);
    bool IsToGrow() VC_REQUIRES(_mutex);
    void AwaitNextTick(long long lastTick);
    long long NextTick(long long lastTick);
    void AwaitWorkers(Platform::Event& rest);

    // The tick in milliseconds, of all pools.
    static std::atomic<int> _intervalPerLoop;

    // Due, the next one in front.
    OperationList _readyOperations VC_GUARDED_BY(_mutex);
    // New, or back from a run.
    OperationList _waitingOperations VC_GUARDED_BY(_mutex);
    Platform::RecursiveMutex _mutex;
    // Idle workers wait here, unless there are more than the minimum.
    Platform::Condition _condition{_mutex};
    int _idleThreadNum VC_GUARDED_BY(_mutex) = 0;
    int _maxThreadNum VC_GUARDED_BY(_mutex) = 3;
    int _minThreadNum VC_GUARDED_BY(_mutex) = 2;
    int _threadNum VC_GUARDED_BY(_mutex) = 0;
    // Goes to false once, with the mutex held.
    std::atomic<bool> _running{true};
    bool _stretch VC_GUARDED_BY(_mutex) = true;

    long long _growCounterMs VC_GUARDED_BY(_mutex) = 0;
    // The manager sleeps beyond the next tick: whoever adds something wakes it.
    bool _managerRests VC_GUARDED_BY(_mutex) = false;
    bool _managerRuns VC_GUARDED_BY(_mutex) = false;
    Platform::Event _managerAlarm;
};

}  // namespace Ubrix
