#include <VelmorCore/Operation.h>

#include <new>
#include <unordered_map>

#include "Platform/Boundary.h"
#include "Platform/Immortal.h"
#include "Platform/Mutex.h"
#include "Storage/Log/LogMacros.h"
#include "System/Operation/OperationQueueImp.h"
#include "System/Time/ClockSource.h"

namespace Ubrix {

using Platform::ScopedLock;

namespace {

std::atomic<unsigned long long> g_nextSequenceNumber{0};

// Which operations point at which target: also copies, and those that aren't a target's current one, must
// hear of its end. The lock guards the map and the pointers of both sides; a leaf but for the pool's alarm.
// Never destroyed: the pool may outlive main.
struct OperationLinks {
    Platform::RecursiveMutex lock;
    std::unordered_multimap<OperationTargetBase*, ObjectOperation*> operations VC_GUARDED_BY(lock);
};

OperationLinks& Links() {
    static Platform::Immortal<OperationLinks> links;
    return *links;
}

}  // namespace

Operation::Operation(bool repeat)
    : _repeat(repeat), _sequenceNumber(g_nextSequenceNumber++), _nextRunTime(0) {}

Operation::Operation(Operation const* other)
    : _repeat(other == nullptr || other->_repeat),
      _sequenceNumber(other != nullptr ? other->_sequenceNumber : g_nextSequenceNumber++),
      _nextRunTime(other != nullptr ? other->_nextRunTime.load() : 0) {}

Operation::~Operation() = default;

void Operation::Sleep(int milliseconds) {
    long long const next = ClockSource::Current().MonotonicMilliseconds() + milliseconds;
    if (next < _nextRunTime.exchange(next)) {
        // The manager may be asleep until the later moment.
        OperationQueueImp::WakeManager();
    }
}

void Operation::Cancel() {
    _repeat = false;
}

bool Operation::Repeats() const {
    return _repeat;
}

unsigned long long Operation::SequenceNumber() const {
    return _sequenceNumber;
}

long long Operation::NextRunTime() const {
    return _nextRunTime;
}

ObjectOperation::ObjectOperation(OperationTargetBase* target, Member member, void* data, bool repeat)
    : Operation(repeat), _member(member), _data(data) {
    AtBoundary([this, target] {
        ScopedLock lock(Links().lock);
        Link(target);
        if (target != nullptr) {
            target->_operation = this;
        }
    });
}

ObjectOperation::ObjectOperation(ObjectOperation const* other) : Operation(other) {
    if (other == nullptr) {
        return;
    }
    _member = other->_member;
    _deleteTarget = other->_deleteTarget.load();
    _data = other->_data;
    AtBoundary([this, other] {
        ScopedLock lock(Links().lock);
        Link(other->_target);
    });
}

ObjectOperation::~ObjectOperation() {
    VC_LOG(Info, "Ubrix::ObjectOperation::~ObjectOperation", "ObjectOperation::~ObjectOperation():%p",
           static_cast<void*>(this));
    OperationTargetBase* const target = Unlink();
    if (_deleteTarget) {
        delete target;
    }
}

void ObjectOperation::Run() {
    OperationTargetBase* target = nullptr;
    {
        ScopedLock lock(Links().lock);
        target = _target;
        if (target != nullptr) {
            target->_hasRun = true;
        }
    }
    if (target == nullptr) {
        Operation::Cancel();
    } else if (_member != nullptr) {
        (target->*_member)(this, _data);
    } else {
        target->DoOperation(this, _data);
    }
}

Operation* ObjectOperation::Duplicate() const {
    return new (std::nothrow) ObjectOperation(this);
}

void ObjectOperation::Cancel(bool deleteTarget) {
    if (deleteTarget) {
        _deleteTarget = true;
    }
    Operation::Cancel();
}

void ObjectOperation::ClearTarget() {
    Unlink();
}

// The caller holds the lock of the links.
void ObjectOperation::Link(OperationTargetBase* target) {
    OperationLinks& links = Links();
    ScopedLock lock(links.lock);
    if (target != nullptr) {
        links.operations.emplace(target, this);
    }
    // Last: without memory for the link there is no target.
    _target = target;
}

// Parts the two, and tells what the target was.
OperationTargetBase* ObjectOperation::Unlink() {
    OperationLinks& links = Links();
    ScopedLock lock(links.lock);
    OperationTargetBase* const target = _target;
    if (target == nullptr) {
        return nullptr;
    }
    auto const mine = links.operations.equal_range(target);
    for (auto entry = mine.first; entry != mine.second; ++entry) {
        if (entry->second == this) {
            links.operations.erase(entry);
            break;
        }
    }
    if (target->_operation == this) {
        target->_operation = nullptr;
        target->_hasRun = false;
    }
    _target = nullptr;
    return target;
}

OperationTargetBase::~OperationTargetBase() {
    OperationLinks& links = Links();
    ScopedLock lock(links.lock);
    for (auto entry = links.operations.find(this); entry != links.operations.end();
         entry = links.operations.find(this)) {
        entry->second->ClearTarget();
    }
}

void OperationTargetBase::DoOperation(ObjectOperation* /*operation*/, void* /*data*/) {}

void OperationTargetBase::Sleep(int milliseconds) {
    ScopedLock lock(Links().lock);
    if (_operation != nullptr) {
        _operation->Sleep(milliseconds);
    }
}

void OperationTargetBase::Cancel(bool deleteTarget) {
    ScopedLock lock(Links().lock);
    if (_operation != nullptr) {
        _operation->Cancel(deleteTarget);
    }
}

bool OperationTargetBase::HasRun() const {
    return _hasRun;
}

}  // namespace Ubrix
