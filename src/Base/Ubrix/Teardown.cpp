// The library's one ordered teardown. It runs on the caller's thread.
#include "Base/Ubrix/IBase.h"
#include "Storage/Log/LogMacros.h"
#include "System/PlatformObject/CPlatformObject.h"
#include "System/PlatformObject/PlatformObjects.h"
#include "System/Thread/ATargetBase.h"

namespace Ubrix {

void IBase::Release() {
    static char const* const func = "Ubrix::IBase::Release";
    RunReleaseCallbacks();
    ReleaseHostUpdateQueue();
    VC_LOG(Info, func, "ISarnetObjectManager::DestroyAll");
    ReleasePlatformObjects();
    VC_LOG(Info, func, "CPlatformObject::ClearEnvironment");
    CPlatformObject::ClearEnvironment();
    delete _instance;
    _instance = nullptr;
}

}  // namespace Ubrix
