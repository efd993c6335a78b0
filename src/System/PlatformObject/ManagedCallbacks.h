// The ten functions through which native objects reach their managed twins.
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

// One table for the process, made at first use and never destroyed: threads may send while the process exits.
struct ManagedCallbacks {
    using Word = std::intptr_t;

    static ManagedCallbacks& Get();

    ManagedCallback<Word, Word> message;
    ManagedCallback<Word, Word> structure;
    ManagedCallback<Word, Word> result;
    ManagedCallback<Word, Word, Word> resultStruct;
    ManagedCallback<Word, Word, Word> buffer;
    ManagedCallback<Word, Word, Word, Word> resultBuffer;
    ManagedCallback<Word, Word, Word, Word, Word> resultStructBuffer;
    ManagedCallback<Word> voidMethod;
    ManagedCallback<Word, Word> voidMethodParam;
    ManagedCallback<Word, Word, Word> voidMethodBuffer;
};

}  // namespace Ubrix
