#include "System/PlatformObject/CallbackGate.h"

#include <utility>

namespace Ubrix {

using Platform::ScopedLock;

// A function, how many calls of it run, and whether another took its place; guarded by its gate's lock.
struct CallbackGate::Pass::Body {
    Function function;
    int running;
    bool withdrawn;
};

namespace {

// How many functions behind gates the thread is in.
thread_local int t_depth = 0;

}  // namespace

void CallbackGate::Set(Function function) {
    using Body = Pass::Body;
    std::shared_ptr<Body> body;
    if (function != nullptr) {
        body = std::make_shared<Body>(Body{function, 0, false});
    }
    ScopedLock const lock(_lock);
    body.swap(_body);
    if (body != nullptr) {
        body->withdrawn = true;
        _withdrawnRunning += body->running;
    }
    while (_withdrawnRunning > 0 && t_depth == 0) {
        _idle.Wait();
    }
}

CallbackGate::Pass::Pass(CallbackGate& gate) : _gate(gate) {
    ScopedLock const lock(gate._lock);
    _body = gate._body;
    if (_body != nullptr) {
        ++_body->running;
        ++t_depth;
    }
}

CallbackGate::Pass::~Pass() {
    if (_body == nullptr) {
        return;
    }
    --t_depth;
    ScopedLock const lock(_gate._lock);
    --_body->running;
    if (_body->withdrawn && --_gate._withdrawnRunning == 0) {
        _gate._idle.Broadcast();
    }
}

CallbackGate::Function CallbackGate::Pass::GetFunction() const {
    return _body != nullptr ? _body->function : nullptr;
}

}  // namespace Ubrix
