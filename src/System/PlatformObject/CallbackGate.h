// The one way from native threads into a function of the host's that may be withdrawn at any time.
#pragma once

#include <memory>

#include "Platform/Condition.h"
#include "Platform/Mutex.h"

namespace Ubrix {

// Keeps one function and counts the calls that run in it. The lock guards the pointer to what is kept and the
// counts; it is held neither while the function runs nor together with another lock. Any thread.
class CallbackGate {
public:
    using Function = void (*)();

    CallbackGate() = default;
    CallbackGate(CallbackGate const&) = delete;
    CallbackGate& operator=(CallbackGate const&) = delete;

    // Replaces the function; null closes the gate. When it returns, no call of an earlier function runs or
    // begins any more; it waits for those that run on other threads. Inside any function behind a gate it
    // waits for none, since two such could wait for each other; the next one outside makes up for it.
    void Set(Function function);

    // One call: holds on to the function for the length of a scope.
    class Pass {
    public:
        explicit Pass(CallbackGate& gate);
        ~Pass();
        Pass(Pass const&) = delete;
        Pass& operator=(Pass const&) = delete;

        // Null if there is none to call.
        Function GetFunction() const;

    private:
        friend class CallbackGate;
        struct Body;

        CallbackGate& _gate;
        std::shared_ptr<Body> _body;
    };

private:
    Platform::RecursiveMutex _lock;
    Platform::Condition _idle{_lock};
    // Calls that run in functions which were replaced.
    int _withdrawnRunning VC_GUARDED_BY(_lock) = 0;
    std::shared_ptr<Pass::Body> _body VC_GUARDED_BY(_lock);
};

}  // namespace Ubrix
