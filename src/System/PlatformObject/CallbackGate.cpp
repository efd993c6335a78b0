#include "System/PlatformObject/CallbackGate.h"

#include <utility>

namespace Ubrix {

using Platform::ScopedLock;

// A function, how many calls of it run, and whether another took its place; guarded by its gate's lock.
struct CallbackGate::Pass::Kept {
    Function function;
    int running;
    bool withdrawn;
};

namespace {

// How many functions behind gates the thread is in.
thread_local int t_depth = 0;

}  // namespace

void CallbackGate::Set(Function function) {
    using Kept = Pass::Kept;
    std::shared_ptr<Kept> kept;
    if (function != nullptr) {
        kept = std::make_shared<Kept>(Kept{function, 0, false});
    }
    ScopedLock const lock(_lock);
    kept.swap(_kept);
    if (kept != nullptr) {
        kept->withdrawn = true;
        _withdrawnRunning += kept->running;
    }
    while (_withdrawnRunning > 0 && t_depth == 0) {
        _idle.Wait();
    }
}

CallbackGate::Pass::Pass(CallbackGate& gate) : _gate(gate) {
    ScopedLock const lock(gate._lock);
    _kept = gate._kept;
    if (_kept != nullptr) {
        ++_kept->running;
        ++t_depth;
    }
}

CallbackGate::Pass::~Pass() {
    if (_kept == nullptr) {
        return;
    }
    --t_depth;
    ScopedLock const lock(_gate._lock);
    --_kept->running;
    if (_kept->withdrawn && --_gate._withdrawnRunning == 0) {
        _gate._idle.Broadcast();
    }
}

CallbackGate::Function CallbackGate::Pass::GetFunction() const {
    return _kept != nullptr ? _kept->function : nullptr;
}

}  // namespace Ubrix
