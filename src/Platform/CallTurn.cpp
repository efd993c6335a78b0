#include "Platform/CallTurn.h"

#include <cassert>
#include <utility>

#include "Platform/LockDepth.h"
#include "Platform/Thread.h"

namespace Ubrix::Platform {

namespace {

// The turn that the thread has and gives up in waits, or has given up and not taken back yet: one such turn a
// thread is all that there is. And how often it had it then; 0 while it has it.
thread_local CallTurn* t_yielding = nullptr;
thread_local unsigned int t_depthGivenUp = 0;

}  // namespace

CallTurn::CallTurn(WhileWaiting whileWaiting) : _whileWaiting(whileWaiting) {}

void CallTurn::Enter() VC_NO_THREAD_SAFETY_ANALYSIS {
    Take(1);
}

void CallTurn::Take(unsigned int depth) {
    // The one who has the turn may want that lock.
    assert(!LockDepth::HoldsLock());
    unsigned int const self = CurrentThreadNumber();
    ScopedLock const lock(_lock);
    while (_thread != 0 && _thread != self) {
        _free.Wait();
    }
    _thread = self;
    _depth += depth;
    if (_whileWaiting == WhileWaiting::GivenUp) {
        t_yielding = this;
        t_depthGivenUp = 0;
    }
}

void CallTurn::Leave() VC_NO_THREAD_SAFETY_ANALYSIS {
    ScopedLock const lock(_lock);
    if (--_depth == 0) {
        _thread = 0;
        t_yielding = t_yielding == this ? nullptr : t_yielding;
        _free.Signal();
    }
}

unsigned int CallTurn::GiveUp() {
    ScopedLock const lock(_lock);
    _thread = 0;
    _free.Signal();
    return std::exchange(_depth, 0U);
}

void CallTurn::TakeBack() {
    // Counts as given up until it is had: to wait for it must not give it up once more.
    t_yielding->Take(t_depthGivenUp);
}

CallTurn::Pause::Pause() : _gaveUp(t_yielding != nullptr && t_depthGivenUp == 0) {
    if (_gaveUp) {
        // Marked first: releasing the turn's own lock may run what was put off, which may wait as well.
        CallTurn& turn = *t_yielding;
        t_depthGivenUp = turn.GiveUp();
    }
}

CallTurn::Pause::~Pause() {
    if (!_gaveUp) {
        return;
    }
    if (LockDepth::HoldsLock()) {
        LockDepth::RunFirstWhenReleased(&CallTurn::TakeBack);
    } else {
        CallTurn::TakeBack();
    }
}

}  // namespace Ubrix::Platform
