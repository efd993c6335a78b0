// The edge of the library, where want of memory ends: an exported function, or the body of a thread.
#pragma once

#include <new>
#include <stdexcept>

#include "Platform/MemoryWant.h"
#include "Platform/ThreadAnnotations.h"

namespace Ubrix {

// What `work` gives; `otherwise` if memory ran out in it. Nothing else is caught: what a callback of the game
// throws is the game's, and so a callback that may throw isn't called in here. The locks that `work` asks for
// are its caller's to hold.
template <class Result, class Work>
Result AtBoundary(Result otherwise, Work const& work) VC_NO_THREAD_SAFETY_ANALYSIS {
    try {
        Platform::UnwindScope const scope;
        return work();
    } catch (std::bad_alloc const&) {
        return otherwise;
    } catch (std::length_error const&) {
        return otherwise;
    }
}

// The same for work without a result. False if memory ran out in it.
template <class Work>
bool AtBoundary(Work const& work) {
    return AtBoundary(false, [&work]() VC_NO_THREAD_SAFETY_ANALYSIS {
        work();
        return true;
    });
}

}  // namespace Ubrix
