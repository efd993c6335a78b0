#include "System/WWW/Task/DownloadFileTaskImpl.h"

namespace Ubrix {

using Platform::ScopedLock;

DownloadFileTaskImpl::DownloadFileTaskImpl(char const* url, char const* path)
    : WWWTaskBase(url), _path(path != nullptr ? path : "") {}

// Where a platform with a transport would begin, hold and give up the download.
void DownloadFileTaskImpl::Start() {}

void DownloadFileTaskImpl::Pause() {}

void DownloadFileTaskImpl::Cancel() {}

void DownloadFileTaskImpl::SetListener(Listener* listener) {
    ScopedLock const lock(_lock);
    _listener = listener;
}

void DownloadFileTaskImpl::RemoveListener(Listener*) {
    SetListener(nullptr);
}

DownloadFileTask::Listener* DownloadFileTaskImpl::GetListener() {
    ScopedLock const lock(_lock);
    return _listener;
}

}  // namespace Ubrix
