#include "Base/Ubrix/IBase.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "Base/Ubrix/CoreParameters.h"
#include "Platform/Boundary.h"
#include "Platform/MemoryWant.h"
#include "Platform/Mutex.h"

namespace Ubrix {

namespace {

// One callback's place on the list.
struct Entry {
    IBase::ReleaseCallback release;
    // In the walk under way; and whether it was registered once more since.
    bool hasRun = false;
    bool stays = false;
};

// Guards the list of release callbacks; never held while one runs. Never destroyed, since threads may outlive
// main.
struct ReleaseList {
    Platform::RecursiveMutex lock;
    std::vector<Entry> entries VC_GUARDED_BY(lock);
    bool isWalked VC_GUARDED_BY(lock) = false;
};

ReleaseList& TheReleaseList() {
    static ReleaseList* const list = new ReleaseList;
    return *list;
}

// False if a walk is under way already.
bool BeginWalk() {
    ReleaseList& list = TheReleaseList();
    Platform::ScopedLock const lock(list.lock);
    return !std::exchange(list.isWalked, true);
}

// What is left of the list when all have run.
void EndWalk(ReleaseList& list) VC_REQUIRES(list.lock) {
    auto const isDone = [](Entry const& entry) { return !entry.stays; };
    list.entries.erase(std::remove_if(list.entries.begin(), list.entries.end(), isDone), list.entries.end());
    for (Entry& entry : list.entries) {
        entry = {entry.release};
    }
    list.isWalked = false;
}

// The callback at `index`. Null behind the end, which ends the walk. The size is read anew each time: a
// callback may register another one.
IBase::ReleaseCallback Next(std::size_t index) {
    ReleaseList& list = TheReleaseList();
    Platform::ScopedLock const lock(list.lock);
    if (index >= list.entries.size()) {
        // In one hold of the lock with the look: whoever registers later, on any thread, stays for next time.
        EndWalk(list);
        return nullptr;
    }
    list.entries[index].hasRun = true;
    return list.entries[index].release;
}

}  // namespace

IBase* IBase::_instance = nullptr;

IBase& IBase::GetInstance() {
    if (_instance == nullptr) {
        _instance = new IBase;
    }
    return *_instance;
}

IBase::~IBase() {
    CoreParameters::Release();
}

void IBase::AddReleaseCallback(ReleaseCallback release) {
    if (release == nullptr) {
        return;
    }
    ReleaseList& list = TheReleaseList();
    Platform::ScopedLock const lock(list.lock);
    auto const standing = std::find_if(list.entries.begin(), list.entries.end(),
                                       [release](Entry const& entry) { return entry.release == release; });
    if (standing == list.entries.end()) {
        list.entries.push_back({release});
    } else {
        standing->stays = standing->hasRun;
    }
}

void IBase::RunReleaseCallbacks() {
    if (!BeginWalk()) {
        return;
    }
    std::size_t index = 0;
    for (ReleaseCallback release = Next(index); release != nullptr; release = Next(index)) {
        // One that runs out of memory doesn't keep the others from theirs.
        AtBoundary([release] {
            Platform::CallOut const out;
            release();
        });
        ++index;
    }
}

}  // namespace Ubrix
