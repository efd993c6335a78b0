// The turn to call out into the game: what a lock is to the library's own lists, this is to calls of
// functions that others wrote.
#pragma once

#include "Platform/Condition.h"
#include "Platform/Mutex.h"

namespace Ubrix::Platform {

// One thread has the turn at a time, and may take it again while it has it. Thread-safe; neither copied nor
// moved; destroying one that a thread has or waits for is a programming error.
//
// What it promises:
// - Calls made inside the turn come one at a time. Who takes it on another thread, to withdraw an
//   observer for one, waits for the call in hand, and knows that none follows that he doesn't allow; who
//   takes it from inside such a call has it at once.
// - Fields that are touched only inside the turn need no lock besides. They may change in any call out
//   that is made inside it, logging included: a log callback runs there, and may come back.
// - Turns may be taken inside one another in any order. A thread that would wait in a ring, for one that
//   waits, over others perhaps, for a turn that this thread has, is let in instead: all others in the ring
//   wait inside a call of their own until it is out, so it is as if their holder had called.
// - It doesn't count as a lock (LockDepth): a line that is logged inside the turn, without a lock,
//   reaches the log callback at once.
// What it asks for:
// - Nobody waits for a turn with a lock held: the one who has it may want that lock in the game's code.
// - A turn is left before the turns that were taken ahead of it (ScopedTurn sees to it).
// - The fields that it keeps are in order whenever the library calls out, or waits for another turn,
//   inside it.
class VC_CAPABILITY("turn") CallTurn {
public:
    // What becomes of the turn while the thread that has it waits in the library (a condition, an event,
    // another turn). Given up, it is taken again when the wait is over and the thread holds no lock any more.
    enum class WhileWaiting { Kept, GivenUp };

    explicit CallTurn(WhileWaiting whileWaiting = WhileWaiting::Kept);
    ~CallTurn() = default;
    CallTurn(CallTurn const&) = delete;
    CallTurn& operator=(CallTurn const&) = delete;

    void Enter() VC_ACQUIRE();
    void Leave() VC_RELEASE();

private:
    struct Taker;
    // What is known of the calling thread.
    static Taker& Self();

    // `depth` times at once.
    void Take(unsigned int depth);
    // Whether the turn's holder waits, over others perhaps, for a turn that `taker` has; or is `taker`.
    bool WaitsForThread(Taker const& taker) const;
    unsigned int GiveUp();
    // What the thread does around its waits once it has had a turn that it gives up in them (WaitPause).
    static bool GiveUpYielding();
    static void TakeBackYielding();
    static void TakeBack();

    // These three under one lock for all turns. The holder is null while nobody has the turn.
    Condition _free;
    Taker const* _holder = nullptr;
    unsigned int _depth = 0;
    WhileWaiting const _whileWaiting;
};

// Has the turn for the length of a scope.
class VC_SCOPED_CAPABILITY ScopedTurn {
public:
    explicit ScopedTurn(CallTurn& turn) VC_ACQUIRE(turn) : _turn(turn) { _turn.Enter(); }
    ~ScopedTurn() VC_RELEASE() { _turn.Leave(); }
    ScopedTurn(ScopedTurn const&) = delete;
    ScopedTurn& operator=(ScopedTurn const&) = delete;

private:
    CallTurn& _turn;
};

}  // namespace Ubrix::Platform
