// The library's one ordered teardown. It runs on the caller's thread.
#include "Base/Ubrix/IBase.h"
#include "System/Thread/ATargetBase.h"

namespace Ubrix {

void IBase::Release() {
    RunReleaseCallbacks();
    ReleaseHostUpdateQueue();
    delete _instance;
    _instance = nullptr;
}

}  // namespace Ubrix
