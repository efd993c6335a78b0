#include "Base/Ubrix/ReleaseList.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "Platform/Boundary.h"
#include "Platform/Immortal.h"
#include "Platform/MemoryWant.h"
#include "Platform/Mutex.h"

namespace Ubrix {

namespace {

// One callback's place on the list.
struct Entry {
    ReleaseList::Callback release;
    // In the walk under way; and whether it was registered once more since.
    bool hasRun = false;
    bool stays = false;
};

// Guards the list of release callbacks; never held while one runs. Never destroyed, since threads may outlive
// main.
struct Walked {
    Platform::RecursiveMutex lock;
    std::vector<Entry> entries VC_GUARDED_BY(lock);
    bool isWalked VC_GUARDED_BY(lock) = false;
};

Walked& TheList() {
    static Platform::Immortal<Walked> list;
    return *list;
}

// False if a walk is under way already.
bool BeginWalk() {
    Walked& list = TheList();
    Platform::ScopedLock const lock(list.lock);
    return !std::exchange(list.isWalked, true);
}

// What is left of the list when all have run.
void EndWalk(Walked& list) VC_REQUIRES(list.lock) {
    auto const isDone = [](Entry const& entry) { return !entry.stays; };
    list.entries.erase(std::remove_if(list.entries.begin(), list.entries.end(), isDone), list.entries.end());
    for (Entry& entry : list.entries) {
        entry = {entry.release};
    }
    list.isWalked = false;
}

// The callback at `index`. Null behind the end, which ends the walk. The size is read anew each time: a
// callback may register another one.
ReleaseList::Callback Next(std::size_t index) {
    Walked& list = TheList();
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

void ReleaseList::Add(Callback release) {
    if (release == nullptr) {
        return;
    }
    Walked& list = TheList();
    Platform::ScopedLock const lock(list.lock);
    auto const present = std::find_if(list.entries.begin(), list.entries.end(),
                                      [release](Entry const& entry) { return entry.release == release; });
    if (present == list.entries.end()) {
        list.entries.push_back({release});
    } else {
        present->stays = present->hasRun;
    }
}

void ReleaseList::Run() {
    if (!BeginWalk()) {
        return;
    }
    std::size_t index = 0;
    for (Callback release = Next(index); release != nullptr; release = Next(index)) {
        // One that runs out of memory doesn't keep the others from theirs.
        AtBoundary([release] {
            Platform::CallOut const out;
            release();
        });
        ++index;
    }
}

}  // namespace Ubrix
