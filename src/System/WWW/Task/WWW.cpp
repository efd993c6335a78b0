#include <VelmorCore/Http.h>

#include "Platform/MemoryWant.h"
#include "System/WWW/Task/DataTaskImpl.h"
#include "System/WWW/Task/DownloadFileTaskImpl.h"

namespace Ubrix {

DataTask* WWW::Request(char const* url) {
    return url != nullptr ? Platform::WithoutThrow([=]() -> DataTask* { return new DataTaskImpl(url); })
                          : nullptr;
}

DownloadFileTask* WWW::DownloadFile(char const* url, char const* path) {
    if (url == nullptr || path == nullptr) {
        return nullptr;
    }
    return Platform::WithoutThrow([=]() -> DownloadFileTask* { return new DownloadFileTaskImpl(url, path); });
}

void WWW::Destroy(DataTask* task) {
    delete task;
}

void WWW::Destroy(DownloadFileTask* task) {
    delete task;
}

}  // namespace Ubrix
