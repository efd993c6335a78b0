/// @file
/// Background work on the library's shared pool of threads.
#pragma once

#include <VelmorCore/Export.h>

#include <atomic>

namespace Ubrix {

class OperationTargetBase;

/// A unit of work in the pool, run once or over and over, never on two threads at once. The pool owns it.
///
/// Its operations may be called on any thread while it exists: from within Run, or on one that is known to
/// wait. Nothing keeps a caller elsewhere from meeting its end.
class VELMORCORE_API Operation {
public:
    /// The form of a plain function that does the work. `operation` stays the pool's.
    using Function = void (*)(Operation* operation, void* data);

    /// Does the work, on a thread of the pool with no lock of the library held. An exception from it ends the
    /// process.
    virtual void Run() = 0;
    /// A copy on the heap, with the same sequence number, which the caller deletes. Null without memory.
    virtual Operation* Duplicate() const = 0;
    virtual ~Operation();
    Operation(Operation const&) = delete;
    Operation& operator=(Operation const&) = delete;

    /// The next run comes at the earliest `milliseconds` from now, by a clock that nobody can set. Without it
    /// a repeating operation runs again as soon as its turn comes. 0 or less: at once.
    void Sleep(int milliseconds);
    /// Makes the next run the last one; from within Run, the one in hand.
    void Cancel();

    /// Whether it goes back to the pool after a run.
    bool Repeats() const;
    /// Tells operations apart: counts from 0 in the process. A copy has the number of its original.
    unsigned long long SequenceNumber() const;
    /// The moment before which it isn't run, in milliseconds of the clock that Sleep goes by; 0 from the
    /// start.
    long long NextRunTime() const;

protected:
    /// Makes an operation with the next sequence number; `repeat`: it goes back to the pool after each run.
    explicit Operation(bool repeat);
    /// Copies `other`, with its sequence number. Null gives a new operation that repeats.
    explicit Operation(Operation const* other);

private:
    std::atomic<bool> _repeat;
    unsigned long long _sequenceNumber;
    std::atomic<long long> _nextRunTime;
};

/// Work on an object: runs a member function of its target, or the target's DoOperation. The two point at
/// each other; one that dies takes itself out of the other.
class VELMORCORE_API ObjectOperation : public Operation {
public:
    /// The form of the member function: one of the target's own class is cast to it with static_cast.
    using Member = void (OperationTargetBase::*)(ObjectOperation* operation, void* data);

    /// Makes itself the current operation of `target`, in place of an earlier one. Null does nothing when
    /// run, and neither does one without memory for the link; without a `member`, DoOperation is run. `data`
    /// is handed on as it is.
    ObjectOperation(OperationTargetBase* target, Member member, void* data, bool repeat);
    /// A copy of `other`, which doesn't become its target's current operation. Null gives one without target.
    explicit ObjectOperation(ObjectOperation const* other);

    /// Calls the target. Without one, it also leaves the pool.
    void Run() override;
    /// Copies the operation, as the constructor from a pointer; the caller deletes the copy. Null without
    /// memory.
    Operation* Duplicate() const override;
    /// Deletes the target, if Cancel was asked to.
    ~ObjectOperation() override;

    /// As Operation::Cancel. With `deleteTarget` the target, made by new, is deleted when the operation is,
    /// after that last run; a later call doesn't take it back.
    void Cancel(bool deleteTarget);
    /// Lets go of the target.
    void ClearTarget();

private:
    friend class OperationTargetBase;

    void Link(OperationTargetBase* target);
    OperationTargetBase* Unlink();

    OperationTargetBase* _target = nullptr;
    Member _member = nullptr;
    std::atomic<bool> _deleteTarget{false};
    void* _data = nullptr;
};

/// The base of objects that operations run on.
///
/// A target may be destroyed in its operation's run, or while its operation waits: nothing runs on it any
/// more, and the operation leaves the pool at its next turn. Nothing waits for a run on another thread, since
/// the derived part would be gone by then; who can't rule one out leaves the end to the pool: Cancel(true).
class VELMORCORE_API OperationTargetBase {
public:
    OperationTargetBase() = default;
    virtual ~OperationTargetBase();
    OperationTargetBase(OperationTargetBase const&) = delete;
    OperationTargetBase& operator=(OperationTargetBase const&) = delete;

    /// The work of an operation that was given no member function. Does nothing as it stands here.
    virtual void DoOperation(ObjectOperation* operation, void* data);

    /// Forwarded to the current operation, if there is one. Any thread.
    void Sleep(int milliseconds);
    /// Forwarded to the current operation, if there is one. Any thread.
    void Cancel(bool deleteTarget);
    /// Whether the current operation has run. Any thread.
    bool HasRun() const;

private:
    friend class ObjectOperation;

    std::atomic<bool> _hasRun{false};
    ObjectOperation* _operation = nullptr;
};

/// The pool: two threads that start with it, a third that comes after a second of full load and goes when it
/// is over, and one that keeps the order. It is small and unhurried: a thread rests 10 ms after each
/// operation, and an operation starts 10 to 20 ms after it was added, as a rule; the threads of a pool that
/// was just made begin after 100 ms, and its first operation some 110 ms after it was added. First come,
/// first started; with several threads, operations overlap. An idle pool costs nothing.
///
/// Any thread may call it, also from within an operation and from a log callback.
class VELMORCORE_API OperationQueue {
public:
    OperationQueue(OperationQueue const&) = delete;
    OperationQueue& operator=(OperationQueue const&) = delete;

    /// The one pool, made at the first call and again after a release. Releasing the core ends it without
    /// waiting: operations in hand run to their end, what waits is deleted without a run, and its threads are
    /// gone some time later. The caller doesn't delete it. The object is the same each time and stays valid:
    /// one that is kept over a release adds to the pool of the moment, made anew if need be.
    static OperationQueue* GetInstance();

    /// Has `function` run with `data`, once, or with `repeat` until the operation is cancelled. `data` is
    /// handed on as it is, and must last as long. During a release nothing is added, and nobody is told;
    /// without memory neither, but for an Error line.
    virtual void AddOperation(Operation::Function function, void* data, bool repeat) = 0;
    /// The same for a member function of `target`, or its DoOperation if `member` is null.
    virtual void AddOperation(OperationTargetBase* target, ObjectOperation::Member member, void* data,
                              bool repeat) = 0;

protected:
    OperationQueue() = default;
    ~OperationQueue() = default;
};

}  // namespace Ubrix
