#include "Base/Ubrix/IBase.h"

#include <algorithm>
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

// The callback at `index`, or null behind the end. The size is read anew each time: a callback may register.
IBase::ReleaseCallback CallbackAt(std::size_t index) {
    ReleaseList& list = TheReleaseList();
    Platform::ScopedLock lock(list.lock);
    return index < list.callbacks.size() ? list.callbacks[index] : nullptr;
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
    std::size_t index = 0;
    while (ReleaseCallback const release = CallbackAt(index)) {
        release();
        ++index;
    }
    ReleaseList& list = TheReleaseList();
    Platform::ScopedLock lock(list.lock);
    list.callbacks.clear();
}

}  // namespace Ubrix
