// A managed callback of one shape.
#pragma once

#include <cstdint>

#include "System/PlatformObject/CallbackGate.h"

namespace Ubrix {

// A gate with the function's type: the object's id, then the sender's words. Any thread.
template <class... Words>
class ManagedCallback {
public:
    using Function = void (*)(std::int64_t objectId, Words... words);

    // As CallbackGate::Set.
    void Set(Function function) { _gate.Set(reinterpret_cast<CallbackGate::Function>(function)); }

    // Calls the function, if there is one, with no lock held.
    void Call(std::int64_t objectId, Words... words) {
        CallbackGate::Pass const pass(_gate);
        auto const function = reinterpret_cast<Function>(pass.GetFunction());
        if (function != nullptr) {
            function(objectId, words...);
        }
    }

private:
    CallbackGate _gate;
};

}  // namespace Ubrix
