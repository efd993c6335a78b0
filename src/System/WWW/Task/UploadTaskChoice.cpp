// Who makes the upload tasks, and the task of a process that was told of nobody.
#include <VelmorCore/Http.h>
#include <VelmorCore/UploadTask.h>

#include <string>

#include "Platform/Immortal.h"
#include "Platform/MemoryWant.h"
#include "Platform/Mutex.h"

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

char const* TextOf(char const* text) {
    return text != nullptr ? text : "";
}

// Keeps what it is given. Nothing leaves the machine, and the listener is never called. Belongs to one thread
// at a time.
class OzkUploadTaskImpl final : public OzkCUploadTask {
public:
    void Upload(char const* uploadId, char const* filePath, std::int64_t /*partSize*/,
                char const* /*url*/) override {
        _uploadId = TextOf(uploadId);
        _filePath = TextOf(filePath);
    }
    char const* GetUploadId() override { return _uploadId.c_str(); }
    char const* GetFilePath() override { return _filePath.c_str(); }
    void SetComParams(char const* params) override { _comParams = TextOf(params); }
    void SetListener(Listener* listener) override { _listener = listener; }

private:
    Listener* _listener = nullptr;
    std::string _comParams;
    std::string _uploadId;
    std::string _filePath;
};

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
