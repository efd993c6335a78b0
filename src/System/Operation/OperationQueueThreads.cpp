// What the pool's threads do: the workers, and the manager that feeds them.
#include <algorithm>
#include <utility>

#include "Platform/Thread.h"
#include "Storage/Log/LogMacros.h"
#include "System/Operation/OperationQueueImp.h"
#include "System/Time/ClockSource.h"

namespace Ubrix {

using Platform::ScopedLock;

namespace {

// From a thread's start to its first look.
constexpr int kStartMs = 100;
// After an operation, a wake-up, an idle look.
constexpr int kPauseMs = 10;
// A surplus worker that has idled for longer goes; a full load that has lasted longer brings one more.
constexpr int kPatienceMs = 1000;

// Sleeps by the clock in force. Nobody else knows the event.
void Rest(Platform::Event& own, int milliseconds) {
    ClockSource const& clock = ClockSource::Current();
    long long const end = clock.MonotonicMilliseconds() + milliseconds;
    while (clock.MonotonicMilliseconds() < end) {
        clock.WaitUntil(own, end);
    }
}

}  // namespace

// One worker thread, from its start to its end. It is counted while it lasts, however it ends.
class OperationQueueImp::Worker {
public:
    explicit Worker(OperationQueueImp& queue) : _queue(queue) {}
    ~Worker() {
        if (_counted) {
            ScopedLock lock(_queue._mutex);
            Leave();
        }
    }
    Worker(Worker const&) = delete;
    Worker& operator=(Worker const&) = delete;

    void Work();

private:
    bool Take(OperationPointer& operation);
    bool StaysAsSurplus() VC_REQUIRES(_queue._mutex);
    void SetIdle(bool idle) VC_REQUIRES(_queue._mutex);
    void Leave() VC_REQUIRES(_queue._mutex);

    OperationQueueImp& _queue;
    Platform::Event _rest;
    // Over its whole life, work in between included.
    int _surplusIdleMs = 0;
    bool _idle = false;
    bool _counted = true;
};

void OperationQueueImp::Worker::Work() {
    Platform::NameCurrentThread("OperationQueue.ThreadProcess");
    Rest(_rest, kStartMs);
    while (_queue._running) {
        OperationPointer operation;
        if (!Take(operation)) {
            VC_LOG(Info, "Ubrix::OperationQueueImp::onThreadProc", "Destroy thread");
            return;
        }
        if (operation != nullptr) {
            operation->Run();
            if (operation->Repeats()) {
                _queue.TakeBack(operation);
            }
            operation.reset();
        }
        Rest(_rest, kPauseMs);
    }
    VC_LOG(Debug, "Ubrix::OperationQueueImp::onThreadProc", "Destroy Thread");
}

// Takes the next operation, or idles if there is none. False when the worker has left the pool as surplus.
// The look and the wait are one hold of the lock, so that no signal is missed between them.
bool OperationQueueImp::Worker::Take(OperationPointer& operation) {
    ScopedLock lock(_queue._mutex);
    OperationList& ready = _queue._readyOperations;
    if (!ready.empty()) {
        SetIdle(false);
        operation = std::move(ready.front());
        ready.erase(ready.begin());
        return true;
    }
    SetIdle(true);
    if (_queue._threadNum > _queue._minThreadNum) {
        return StaysAsSurplus();
    }
    _surplusIdleMs = 0;
    if (_queue._running) {
        _queue._condition.Wait();
    }
    SetIdle(false);
    return true;
}

bool OperationQueueImp::Worker::StaysAsSurplus() {
    if (_surplusIdleMs > kPatienceMs) {
        Leave();
        return false;
    }
    _surplusIdleMs += kPauseMs;
    return true;
}

void OperationQueueImp::Worker::SetIdle(bool idle) {
    _queue._idleThreadNum += static_cast<int>(idle) - static_cast<int>(_idle);
    _idle = idle;
}

void OperationQueueImp::Worker::Leave() {
    SetIdle(false);
    --_queue._threadNum;
    _counted = false;
}

void OperationQueueImp::onThreadProc(void* share) {
    std::unique_ptr<std::shared_ptr<OperationQueueImp>> const queue(
        static_cast<std::shared_ptr<OperationQueueImp>*>(share));
    Worker(**queue).Work();
}

void OperationQueueImp::onThreadManageProc(void* share) {
    std::unique_ptr<std::shared_ptr<OperationQueueImp>> const queue(
        static_cast<std::shared_ptr<OperationQueueImp>*>(share));
    (*queue)->Manage();
}

void OperationQueueImp::Manage() {
    Platform::NameCurrentThread("OperationQueue.ThreadManager");
    Platform::Event rest;
    Rest(rest, kStartMs);
    long long now = ClockSource::Current().MonotonicMilliseconds();
    while (Tick(now)) {
        AwaitNextTick(now);
        now = ClockSource::Current().MonotonicMilliseconds();
    }
    AwaitWorkers(rest);
    VC_LOG(Event, "Ubrix::OperationQueueImp::onThreadManageProc",
           "onThreadManageProc threads have been destroyed, starting delete queue");
}

// One look over the lists. False after the release.
bool OperationQueueImp::Tick(long long now) {
    bool grow = false;
    {
        ScopedLock lock(_mutex);
        if (!_running) {
            return false;
        }
        int moved = MoveDue(now);
        if (!_readyOperations.empty()) {
            grow = IsToGrow();
            moved = moved != 0 ? moved : static_cast<int>(_readyOperations.size());
        }
        for (int wake = std::min(moved, _idleThreadNum); wake > 0; --wake) {
            _condition.Signal();
        }
    }
    if (grow) {
        CreateWorker();
    }
    return true;
}

// Makes ready what is due, in order, and tells how many that were.
int OperationQueueImp::MoveDue(long long now) {
    auto const end = _waitingOperations.end();
    auto kept = _waitingOperations.begin();
    for (auto operation = kept; operation != end; ++operation) {
        if ((*operation)->NextRunTime() <= now) {
            _readyOperations.push_back(std::move(*operation));
        } else {
            std::swap(*kept, *operation);
            ++kept;
        }
    }
    auto const moved = static_cast<int>(end - kept);
    _waitingOperations.erase(kept, end);
    return moved;
}

// Counts the time at full load, and tells when it has lasted long enough for one more worker. A pool that
// doesn't stretch still tries to get its first one, if the system had none to give.
bool OperationQueueImp::IsToGrow() {
    if (_idleThreadNum != 0 || (!_stretch && _threadNum != 0)) {
        _growCounterMs = 0;
        return false;
    }
    _growCounterMs += _intervalPerLoop;
    if (_growCounterMs <= kPatienceMs) {
        return false;
    }
    _growCounterMs = 0;
    return true;
}

// Ticks that can find nothing are slept through.
void OperationQueueImp::AwaitNextTick(long long lastTick) {
    ClockSource const& clock = ClockSource::Current();
    for (long long moment = NextTick(lastTick); clock.MonotonicMilliseconds() < moment;
         moment = NextTick(lastTick)) {
        clock.WaitUntil(_managerAlarm, moment);
    }
}

// The moment of the next tick that has something to do; never, while nothing waits and nothing is ready.
long long OperationQueueImp::NextTick(long long lastTick) {
    long long const soonest = lastTick + _intervalPerLoop;
    ScopedLock lock(_mutex);
    if (!_running) {
        return lastTick;
    }
    _managerRests = _readyOperations.empty();
    if (!_managerRests) {
        return soonest;
    }
    long long earliest = ClockSource::kNever;
    for (OperationPointer const& operation : _waitingOperations) {
        earliest = std::min(earliest, operation->NextRunTime());
    }
    _managerRests = earliest > soonest;
    return std::max(earliest, soonest);
}

void OperationQueueImp::AwaitWorkers(Platform::Event& rest) {
    for (;;) {
        {
            ScopedLock lock(_mutex);
            if (_threadNum == 0) {
                return;
            }
            _condition.Broadcast();
        }
        Rest(rest, kPauseMs);
    }
}

}  // namespace Ubrix
