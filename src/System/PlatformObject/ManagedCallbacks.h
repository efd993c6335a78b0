// The ten functions through which native objects reach their managed twins.
#pragma once

#include <cstdint>

#include "System/PlatformObject/ManagedCallback.h"

namespace Ubrix {

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
