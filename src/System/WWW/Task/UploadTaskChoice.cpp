// Who makes the upload tasks.
#include <VelmorCore/Http.h>
#include <VelmorCore/UploadTask.h>

#include "Platform/Immortal.h"
#include "Platform/MemoryWant.h"
#include "Platform/Mutex.h"
#include "System/WWW/Task/OzkUploadTaskImpl.h"

namespace Ubrix {

namespace {

// Never destroyed: a configuration may order an upload until the process ends. The lock is a leaf.
struct Choice {
    Platform::RecursiveMutex lock;
    OzkUploadTaskFactory factory VC_GUARDED_BY(lock) = nullptr;
    void* userData VC_GUARDED_BY(lock) = nullptr;
};

Choice& TheChoice() {
    static Platform::Immortal<Choice> choice;
    return *choice;
}

}  // namespace

void SetOzkUploadTaskFactory(OzkUploadTaskFactory factory, void* userData) {
    Platform::WithoutThrow([=] {
        Choice& choice = TheChoice();
        Platform::ScopedLock const lock(choice.lock);
        choice.factory = factory;
        choice.userData = userData;
    });
}

OzkCUploadTask* WWW::GetOzkUploadTask() {
    return Platform::WithoutThrow([]() -> OzkCUploadTask* {
        Choice& choice = TheChoice();
        OzkUploadTaskFactory factory = nullptr;
        void* userData = nullptr;
        {
            Platform::ScopedLock const lock(choice.lock);
            factory = choice.factory;
            userData = choice.userData;
        }
        if (factory == nullptr) {
            return new OzkUploadTaskImpl;
        }
        Platform::CallOut const out;
        return factory(userData);
    });
}

}  // namespace Ubrix
