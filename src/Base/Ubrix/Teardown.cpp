// The library's one ordered teardown. It runs on the caller's thread.
#include "Base/Ubrix/IBase.h"
#include "System/Application/Application.h"
#include "System/Thread/ATargetBase.h"

namespace Ubrix {

void IBase::Release() {
    RunReleaseCallbacks();
    ReleaseHostUpdateQueue();
    CApplication::ReleaseInstance();
    delete _instance;
    _instance = nullptr;
}

}  // namespace Ubrix
