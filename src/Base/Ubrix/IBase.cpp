#include "Base/Ubrix/IBase.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "Base/Ubrix/CoreParameters.h"
#include "Platform/Mutex.h"

namespace Ubrix {

namespace {

// Guards the list of release callbacks; never held while one runs. Never destroyed, since threads may outlive
// main.
struct ReleaseList {
    Platform::RecursiveMutex lock;
    std::vector<IBase::ReleaseCallback> callbacks VC_GUARDED_BY(lock);
};

ReleaseList& TheReleaseList() {
    static ReleaseList* const list = new ReleaseList;
    return *list;
}

// Takes the callback at `index` out. False behind the end, which empties the list. The size is read anew each
// time, and the place left empty: a callback may register, and a service that one of them makes anew may
// register again.
bool TakeCallback(std::size_t index, IBase::ReleaseCallback& callback) {
    ReleaseList& list = TheReleaseList();
    Platform::ScopedLock lock(list.lock);
    if (index >= list.callbacks.size()) {
        // In one hold of the lock with the look: whoever registers later, on any thread, stays for next time.
        list.callbacks.clear();
        return false;
    }
    callback = std::exchange(list.callbacks[index], nullptr);
    return true;
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
    Platform::ScopedLock lock(list.lock);
    if (std::find(list.callbacks.begin(), list.callbacks.end(), release) == list.callbacks.end()) {
        list.callbacks.push_back(release);
    }
}

void IBase::RunReleaseCallbacks() {
    ReleaseCallback release = nullptr;
    for (std::size_t index = 0; TakeCallback(index, release); ++index) {
        release();
    }
}

}  // namespace Ubrix
