#include "System/WWW/Task/WWWTaskBase.h"

#include <set>

#include "Platform/Immortal.h"
#include "Platform/MemoryWant.h"
#include "Platform/Mutex.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

namespace {

struct LiveTasks {
    Platform::RecursiveMutex lock;
    std::set<WWWTaskBase const*> tasks VC_GUARDED_BY(lock);
};

LiveTasks& TheLiveTasks() {
    static Platform::Immortal<LiveTasks> live;
    return *live;
}

}  // namespace

WWWTaskBase::WWWTaskBase(char const* url) : _url(url != nullptr ? url : "") {
    VC_LOG(Debug, "Ubrix::WWWTaskBase::WWWTaskBase", "WWWTask %p", static_cast<void*>(this));
    LiveTasks& live = TheLiveTasks();
    Platform::ScopedLock const lock(live.lock);
    live.tasks.insert(this);
}

WWWTaskBase::~WWWTaskBase() {
    LiveTasks& live = TheLiveTasks();
    Platform::ScopedLock const lock(live.lock);
    live.tasks.erase(this);
}

void WWWTaskBase::SetHeader(char const* key, char const* value) {
    if (key != nullptr && value != nullptr) {
        Platform::WithoutThrow([&] { _headers[key] = value; });
    }
}

void WWWTaskBase::SetUrl(char const* url) {
    if (url != nullptr) {
        // `url` may be this task's own text.
        Platform::WithoutThrow([&] { _url = std::string(url); });
    }
}

bool WWWTaskBase::IsObjectRelease(WWWTaskBase const* task) {
    VC_LOG(Debug, "Ubrix::WWWTaskBase::IsObjectRelease", "WWWTask::IsObjectRelease %p",
           static_cast<void const*>(task));
    LiveTasks& live = TheLiveTasks();
    Platform::ScopedLock const lock(live.lock);
    return live.tasks.count(task) == 0;
}

void WWWTaskBase::MakeLiveTasks() {
    TheLiveTasks();
}

}  // namespace Ubrix
