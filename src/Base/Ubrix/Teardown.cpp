// The library's one ordered teardown. It runs on the caller's thread.
#include "Base/Ubrix/CoreParameters.h"
#include "Base/Ubrix/IBase.h"
#include "Platform/Boundary.h"
#include "Storage/Log/LogMacros.h"
#include "System/Application/Application.h"
#include "System/PlatformObject/CPlatformObject.h"
#include "System/PlatformObject/PlatformObjects.h"
#include "System/Thread/GameThread.h"

namespace Ubrix {

IBase* IBase::_instance = nullptr;

IBase& IBase::GetInstance() {
    if (_instance == nullptr) {
        _instance = new IBase;
    }
    return *_instance;
}

IBase::~IBase() {
    CoreParameters::Release();
}

void IBase::Release() {
    static char const* const func = "Ubrix::IBase::Release";
    RunReleaseCallbacks();
    AtBoundary(ReleaseHostUpdateQueue);
    VC_LOG(Info, func, "ISarnetObjectManager::DestroyAll");
    ReleasePlatformObjects();
    VC_LOG(Info, func, "CPlatformObject::ClearEnvironment");
    AtBoundary(CPlatformObject::ClearEnvironment);
    AtBoundary(CApplication::ReleaseInstance);
    delete _instance;
    _instance = nullptr;
}

}  // namespace Ubrix
