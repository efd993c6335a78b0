#include "System/Operation/OperationQueueImp.h"

#include <algorithm>
#include <new>

#include "Base/Ubrix/ConfigurationKeys.h"
#include "Base/Ubrix/CoreConfigReader.h"
#include "Base/Ubrix/Service.h"
#include "Platform/Immortal.h"
#include "Platform/Thread.h"
#include "Storage/Log/LogMacros.h"
#include "System/Operation/StaticOperation.h"

namespace Ubrix {

using Platform::ScopedLock;

namespace {

struct Pool {
    Pool();
    std::shared_ptr<OperationQueueImp> const queue = std::make_shared<OperationQueueImp>();
};

Service<Pool>& ThePool() {
    static Platform::Immortal<Service<Pool>> pool(OperationQueueImp::ReleaseInstance);
    return *pool;
}

// The alarm of the present pool's manager, so that it can be rung at any time.
struct Alarm {
    Platform::RecursiveMutex lock;
    Platform::Event* event VC_GUARDED_BY(lock) = nullptr;
};

Alarm& TheAlarm() {
    static Platform::Immortal<Alarm> alarm;
    return *alarm;
}

void SetAlarm(Platform::Event* event) {
    Alarm& alarm = TheAlarm();
    ScopedLock const lock(alarm.lock);
    alarm.event = event;
}

Pool::Pool() {
    queue->Begin();
}

void LogManager(void* handle) {
    VC_LOG(Debug, "Ubrix::OperationQueueImp::CreateThreads", "CreateThread onThreadManageProc:%p", handle);
}

}  // namespace

std::atomic<int> OperationQueueImp::_intervalPerLoop{10};

std::shared_ptr<OperationQueueImp> OperationQueueImp::GetInstance() {
    return ThePool().Share()->queue;
}

void OperationQueueImp::ReleaseInstance() {
    VC_LOG(Info, "Ubrix::OperationQueueImp::ReleaseInstance", "OperationQueueImp::ReleaseInstance");
    ThePool().Release([](Pool& pool) {
        SetAlarm(nullptr);
        pool.queue->End();
    });
}

void OperationQueueImp::CreateLock() {
    ThePool();
    TheAlarm();
}

void OperationQueueImp::WakeManager() {
    Alarm& alarm = TheAlarm();
    ScopedLock const lock(alarm.lock);
    if (alarm.event != nullptr) {
        alarm.event->Set();
    }
}

void OperationQueueImp::Begin() {
    VC_LOG(Info, "Ubrix::OperationQueueImp::OperationQueueImp", "OperationQueueImp(%p)",
           static_cast<void*>(this));
    SetAlarm(&_managerAlarm);
    bool const stretch = CoreConfigReader::GetBool(ConfigurationKey::kOperationStretch, true);
    int const maxThreadNum = CoreConfigReader::GetInt(ConfigurationKey::kOperationMaxThreads, 3);
    int const minThreadNum = CoreConfigReader::GetInt(ConfigurationKey::kOperationMinThreads, 2);
    int const interval = CoreConfigReader::GetInt(ConfigurationKey::kOperationInterval, 10);
    // A manager that never slept would take a whole core.
    _intervalPerLoop = interval > 0 ? interval : 1;
    {
        ScopedLock lock(_mutex);
        _stretch = stretch;
        _maxThreadNum = maxThreadNum;
        _minThreadNum = minThreadNum;
    }
    VC_LOG(Info, "Ubrix::OperationQueueImp::OperationQueueImp", "check _intervalPerLoop %d", interval);
    for (int i = 0; i < minThreadNum; ++i) {
        CreateWorker();
    }
    void* manager = nullptr;
    bool runs = false;
    {
        ScopedLock lock(_mutex);
        manager = EnsureManager();
        runs = _managerRuns;
    }
    if (manager != nullptr) {
        LogManager(manager);
    } else if (!runs) {
        VC_LOG(Error, "Ubrix::OperationQueueImp::CreateThreads", "no thread for onThreadManageProc");
    }
}

// The last touch of the pool from outside: it goes with the last of its threads.
void OperationQueueImp::End() {
    ScopedLock lock(_mutex);
    EnsureManager();
    _running = false;
    _managerAlarm.Set();
    _condition.Broadcast();
}

OperationQueueImp::~OperationQueueImp() {
    VC_LOG(Info, "Ubrix::OperationQueueImp::~OperationQueueImp", "~OperationQueueImp(%p)",
           static_cast<void*>(this));
    OperationList ready;
    OperationList waiting;
    {
        ScopedLock lock(_mutex);
        ready.swap(_readyOperations);
        waiting.swap(_waitingOperations);
    }
    // Without the lock: an operation may take its target along, which is the caller's code.
    ready.clear();
    waiting.clear();
}

void OperationQueueImp::CreateWorker() {
    void* handle = nullptr;
    bool full = false;
    {
        ScopedLock lock(_mutex);
        full = _threadNum >= _maxThreadNum;
        if (!full && StartThread(onThreadProc, &handle)) {
            ++_threadNum;
        }
    }
    if (full) {
        VC_LOG(Debug, "Ubrix::OperationQueueImp::CreateThread", "thread num is max");
    } else if (handle != nullptr) {
        VC_LOG(Debug, "Ubrix::OperationQueueImp::CreateThread", "CreateThread onThreadProc:%p", handle);
    } else {
        VC_LOG(Error, "Ubrix::OperationQueueImp::CreateThread", "no thread for onThreadProc");
    }
}

// Each thread has a share of the pool for an argument.
bool OperationQueueImp::StartThread(void (*body)(void* share), void** handle) {
    std::unique_ptr<std::shared_ptr<OperationQueueImp>> share(
        new (std::nothrow) std::shared_ptr<OperationQueueImp>(shared_from_this()));
    if (share == nullptr || !Platform::StartThread(body, share.get(), handle)) {
        return false;
    }
    static_cast<void>(share.release());
    return true;
}

// Starts the manager unless it runs. The handle of one that was started, or null; the next addition tries
// again if the system had no thread to give.
void* OperationQueueImp::EnsureManager() {
    void* handle = nullptr;
    if (!_managerRuns) {
        _managerRuns = StartThread(onThreadManageProc, &handle);
    }
    return handle;
}

// Adds what `make` makes, and tells what came of it once the lock is open again.
template <class Make>
void OperationQueueImp::Add(Make const& make) {
    bool refused = false;
    void* startedManager = nullptr;
    {
        ScopedLock lock(_mutex);
        refused = !_running;
        if (!refused) {
            MakeRoom();
            Append(make());
            startedManager = EnsureManager();
        }
    }
    if (refused) {
        VC_LOG(Info, "Ubrix::OperationQueueImp::AddOperation", "AddOperation _running has been false");
    }
    if (startedManager != nullptr) {
        LogManager(startedManager);
    }
}

void OperationQueueImp::AddOperation(Operation::Function function, void* data, bool repeat) {
    Add([=] { return std::make_unique<StaticOperation>(function, data, repeat); });
}

void OperationQueueImp::AddOperation(OperationTargetBase* target, ObjectOperation::Member member, void* data,
                                     bool repeat) {
    Add([=] { return std::make_unique<ObjectOperation>(target, member, data, repeat); });
}

// For one more operation, in both lists, wherever those in hand go: the pool's own threads move operations
// about without asking for memory.
void OperationQueueImp::MakeRoom() {
    std::size_t const all =
        _readyOperations.size() + _waitingOperations.size() + static_cast<std::size_t>(_threadNum) + 1;
    if (std::min(_readyOperations.capacity(), _waitingOperations.capacity()) < all) {
        _readyOperations.reserve(2 * all);
        _waitingOperations.reserve(2 * all);
    }
}

void OperationQueueImp::Append(OperationPointer operation) {
    _waitingOperations.push_back(std::move(operation));
    if (_managerRests) {
        _managerRests = false;
        _managerAlarm.Set();
    }
}

// Puts an operation back to wait for its next run. False during a release: it stays the caller's.
bool OperationQueueImp::TakeBack(OperationPointer& operation) {
    ScopedLock lock(_mutex);
    if (!_running) {
        return false;
    }
    Append(std::move(operation));
    return true;
}

OperationQueueImp::Threads OperationQueueImp::CountThreads() {
    ScopedLock lock(_mutex);
    return {_threadNum, _idleThreadNum};
}

}  // namespace Ubrix
