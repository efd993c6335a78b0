#include "Platform/CallTurn.h"

#include <cassert>
#include <utility>

#include "Platform/Immortal.h"
#include "Platform/LockDepth.h"
#include "Platform/WaitPause.h"

namespace Ubrix::Platform {

namespace {

// The turn that the thread has and gives up in waits, or has given up and not taken back yet: one such turn a
// thread is all that there is. And how often it had it then; 0 while it has it.
thread_local CallTurn* t_yielding = nullptr;
thread_local unsigned int t_depthGivenUp = 0;

// One lock for all turns: who waits for whom is looked up across them. Nothing is called out under it.
RecursiveMutex& TheLock() {
    static Immortal<RecursiveMutex> lock;
    return *lock;
}

}  // namespace

struct CallTurn::Taker {
    // The turn that the thread waits for, if it does.
    CallTurn const* awaited = nullptr;
};

CallTurn::Taker& CallTurn::Self() {
    thread_local Taker t_self;
    return t_self;
}

CallTurn::CallTurn(WhileWaiting whileWaiting) : _free(TheLock()), _whileWaiting(whileWaiting) {}

void CallTurn::Enter() VC_NO_THREAD_SAFETY_ANALYSIS {
    Take(1);
}

// A turn that its holder gives up in waits keeps nobody waiting for good, so no ring goes through it.
bool CallTurn::WaitsForThread(Taker const& taker) const {
    CallTurn const* turn = this;
    while (turn != nullptr && turn->_holder != nullptr && turn->_whileWaiting == WhileWaiting::Kept) {
        if (turn->_holder == &taker) {
            return true;
        }
        turn = turn->_holder->awaited;
    }
    return false;
}

void CallTurn::Take(unsigned int depth) {
    // The one who has the turn may want that lock.
    assert(!LockDepth::HoldsLock());
    Taker& self = Self();
    ScopedLock const lock(TheLock());
    while (_holder != nullptr && _holder != &self && !WaitsForThread(self)) {
        // What was put off runs before this thread counts as one that waits.
        if (!TheLock().CatchUp()) {
            self.awaited = this;
            _free.Wait();
            self.awaited = nullptr;
        }
    }
    _holder = _holder == nullptr ? &self : _holder;
    _depth += depth;
    if (_whileWaiting == WhileWaiting::GivenUp) {
        static constexpr WaitPause::Steps kSteps{&CallTurn::GiveUpYielding, &CallTurn::TakeBackYielding};
        WaitPause::Use(kSteps);
        t_yielding = this;
        t_depthGivenUp = 0;
    }
}

void CallTurn::Leave() VC_NO_THREAD_SAFETY_ANALYSIS {
    ScopedLock const lock(TheLock());
    if (--_depth == 0) {
        _holder = nullptr;
        t_yielding = t_yielding == this ? nullptr : t_yielding;
        _free.Signal();
    }
}

unsigned int CallTurn::GiveUp() {
    ScopedLock const lock(TheLock());
    _holder = nullptr;
    _free.Signal();
    return std::exchange(_depth, 0U);
}

void CallTurn::TakeBack() {
    // Counts as given up until it is had: to wait for it must not give it up once more.
    t_yielding->Take(t_depthGivenUp);
}

bool CallTurn::GiveUpYielding() {
    if (t_yielding == nullptr || t_depthGivenUp != 0) {
        return false;
    }
    // Marked first: releasing the turn's own lock may run what was put off, which may wait as well.
    CallTurn& turn = *t_yielding;
    t_depthGivenUp = turn.GiveUp();
    return true;
}

void CallTurn::TakeBackYielding() {
    if (LockDepth::HoldsLock()) {
        LockDepth::RunFirstWhenReleased(&CallTurn::TakeBack);
    } else {
        CallTurn::TakeBack();
    }
}

}  // namespace Ubrix::Platform
