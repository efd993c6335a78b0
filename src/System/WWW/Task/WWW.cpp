#include <VelmorCore/Http.h>

#include "System/WWW/Task/DataTaskImpl.h"

namespace Ubrix {

DataTask* WWW::Request(char const* url) {
    return url != nullptr ? new DataTaskImpl(url) : nullptr;
}

void WWW::Destroy(DataTask* task) {
    delete task;
}

}  // namespace Ubrix
