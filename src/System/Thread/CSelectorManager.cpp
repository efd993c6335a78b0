#include "System/Thread/CSelectorManager.h"

#include <algorithm>

#include "Platform/Thread.h"

namespace Ubrix {

using Platform::ScopedLock;

namespace {

// The most that one pass runs, which on the game's thread is one frame: its share of such work stays small.
constexpr int kMostCallsPerFrame = 20;

}  // namespace

// Takes a selector off the list of what runs, whichever way it was left.
class CSelectorManager::RunningScope {
public:
    RunningScope(CSelectorManager& manager, CTargetBase* target) : _manager(manager), _target(target) {}
    ~RunningScope() {
        ScopedLock lock(_manager._mutex);
        std::vector<Running>& running = _manager._running;
        unsigned int const thread = Platform::CurrentThreadNumber();
        auto const own = std::find_if(running.begin(), running.end(), [&](Running const& entry) {
            return entry.thread == thread && entry.target == _target;
        });
        running.erase(own);
        _manager._ended.Broadcast();
    }
    RunningScope(RunningScope const&) = delete;
    RunningScope& operator=(RunningScope const&) = delete;

private:
    CSelectorManager& _manager;
    CTargetBase* _target;
};

void CSelectorManager::AddSelector(CSelector const& selector) {
    ScopedLock lock(_mutex);
    if (!_closed) {
        _selectors.push_back(selector);
    }
}

void CSelectorManager::RunSelectors() {
    CSelector selector;
    for (int count = 0; count < kMostCallsPerFrame && TakeFront(selector); ++count) {
        RunningScope const running(*this, selector.target);
        selector.Run();
    }
}

bool CSelectorManager::TakeFront(CSelector& selector) {
    ScopedLock lock(_mutex);
    if (_selectors.empty()) {
        return false;
    }
    // One step with the taking, so that a removal sees the selector either here or there.
    _running.push_back({Platform::CurrentThreadNumber(), _selectors.front().target});
    selector = _selectors.front();
    _selectors.pop_front();
    return true;
}

void CSelectorManager::RemoveSelectors(CTargetBase* target) {
    ScopedLock lock(_mutex);
    EraseSelectors(target);
    while (MustWaitFor(target)) {
        _ended.Wait();
        // The selector that ended may have posted for its target again.
        EraseSelectors(target);
    }
}

void CSelectorManager::EraseSelectors(CTargetBase* target) {
    auto const isTargets = [target](CSelector const& entry) { return entry.target == target; };
    _selectors.erase(std::remove_if(_selectors.begin(), _selectors.end(), isTargets), _selectors.end());
}

bool CSelectorManager::MustWaitFor(CTargetBase* target) const {
    unsigned int const thread = Platform::CurrentThreadNumber();
    bool runsElsewhere = false;
    for (Running const& entry : _running) {
        if (entry.thread == thread) {
            return false;
        }
        runsElsewhere = runsElsewhere || (target != nullptr && entry.target == target);
    }
    return runsElsewhere;
}

void CSelectorManager::Close() {
    ScopedLock lock(_mutex);
    _closed = true;
    _selectors.clear();
}

}  // namespace Ubrix
