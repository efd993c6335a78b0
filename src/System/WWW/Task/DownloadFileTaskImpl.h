// The download task, where no transport for it is wired in.
#pragma once

#include <VelmorCore/Http.h>

#include <string>

#include "Platform/Mutex.h"
#include "System/WWW/Task/WWWTaskBase.h"

namespace Ubrix {

// Keeps what it is told and never runs. The lock guards the listener and is a leaf; the path doesn't change.
class DownloadFileTaskImpl : public WWWTaskBase, public DownloadFileTask {
public:
    // A null path is an empty one.
    DownloadFileTaskImpl(char const* url, char const* path);

    void Start() override;
    void Pause() override;
    void SetListener(Listener* listener) override;
    void RemoveListener(Listener* listener) override;
    char const* GetFilePath() override { return _path.c_str(); }
    void Cancel() override;

    // The listener that is set, or null. Any thread.
    Listener* GetListener();

private:
    Platform::RecursiveMutex _lock;
    std::string const _path;
    Listener* _listener VC_GUARDED_BY(_lock) = nullptr;
};

}  // namespace Ubrix
