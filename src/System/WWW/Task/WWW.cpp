#include <VelmorCore/Http.h>

#include "System/WWW/Task/DataTaskImpl.h"
#include "System/WWW/Task/DownloadFileTaskImpl.h"

namespace Ubrix {

DataTask* WWW::Request(char const* url) {
    return url != nullptr ? new DataTaskImpl(url) : nullptr;
}

DownloadFileTask* WWW::DownloadFile(char const* url, char const* path) {
    return url != nullptr && path != nullptr ? new DownloadFileTaskImpl(url, path) : nullptr;
}

void WWW::Destroy(DataTask* task) {
    delete task;
}

void WWW::Destroy(DownloadFileTask* task) {
    delete task;
}

}  // namespace Ubrix
