// The library's selector queue.
#pragma once

#include <deque>
#include <vector>

#include "Platform/Condition.h"
#include "Platform/Mutex.h"
#include "System/Thread/ISelectorCollection.h"

namespace Ubrix {

// Thread-safe. The mutex guards the queue and the list of what runs; it is held for list work only, never
// while a selector runs. So a selector may post, remove, and pump. Meant for one pumping thread: on two, each
// selector runs once, in no order across them. What waits at the end is dropped without being run.
class CSelectorManager : public ISelectorCollection {
public:
    CSelectorManager() = default;
    CSelectorManager(CSelectorManager const&) = delete;
    CSelectorManager& operator=(CSelectorManager const&) = delete;

    void AddSelector(CSelector const& selector) override;

    // Runs at most 20 selectors; the rest waits for the next pass. What a selector posts here may
    // run in the same pass.
    void RunSelectors() override;

    // If a selector of a non-null `target` is just running on another thread, waits for its end, so that the
    // target may die afterwards. A thread that itself runs a selector of this queue never waits.
    void RemoveSelectors(CTargetBase* target) override;

    // Drops what waits and all that is added later: for a queue whose owner lets go of it while others may
    // still hold it.
    void Close();

private:
    struct Running {
        unsigned int thread;
        CTargetBase* target;
    };
    class RunningScope;

    bool TakeFront(CSelector& selector);
    void EraseSelectors(CTargetBase* target) VC_REQUIRES(_mutex);
    bool MustWaitFor(CTargetBase* target) const VC_REQUIRES(_mutex);

    Platform::RecursiveMutex _mutex;
    Platform::Condition _ended{_mutex};
    std::deque<CSelector> _selectors VC_GUARDED_BY(_mutex);
    std::vector<Running> _running VC_GUARDED_BY(_mutex);
    bool _closed VC_GUARDED_BY(_mutex) = false;
};

}  // namespace Ubrix
