// A queue of selectors.
#pragma once

#include "System/Thread/CSelector.h"

namespace Ubrix {

// Thread-safe.
class ISelectorCollection {
public:
    virtual ~ISelectorCollection() = default;
    // Puts a copy of `selector` at the end of the queue.
    virtual void AddSelector(CSelector const& selector) = 0;
    // Runs what waits, oldest first, on the calling thread.
    virtual void RunSelectors() = 0;
    // Takes out every selector whose target is `target`; the others keep their order.
    virtual void RemoveSelectors(CTargetBase* target) = 0;
};

}  // namespace Ubrix
