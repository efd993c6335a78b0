#include <VelmorCore/Configure.h>
#include <VelmorCore/Core.h>

#include "Base/Ubrix/IBase.h"
#include "BuildConstants.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

namespace {

constexpr char kVersion[] = "1.3.01.2706";
// The desktop product's name: its development builds on other systems answer as it does.
constexpr char kOsName[] = "Windows";

}  // namespace

CVelmorCore* CVelmorCore::_instance = nullptr;

IVelmorCore::~IVelmorCore() = default;

IVelmorCore& IVelmorCore::GetInstance() {
    return CVelmorCore::GetInstance();
}

CVelmorCore& CVelmorCore::GetInstance() {
    if (_instance == nullptr) {
        _instance = new CVelmorCore;
    }
    return *_instance;
}

void CVelmorCore::ReleaseInstance() {
    delete _instance;
    _instance = nullptr;
}

CVelmorCore::CVelmorCore() {
    IBase::GetInstance();
    VC_LOG(Event, "Ubrix::CVelmorCore::CVelmorCore",
           "Hello VelmorCore! OS_TYPE:%s, Version:%s, VersionHash:%s", kOsName, kVersion,
           VELMORCORE_VERSION_HASH);
}

CVelmorCore::~CVelmorCore() {
    VC_LOG(Event, "Ubrix::CVelmorCore::~CVelmorCore", "CVelmorCore::~CVelmorCore(), start");
    IBase::Release();
    VC_LOG(Event, "Ubrix::CVelmorCore::~CVelmorCore", "CVelmorCore::~CVelmorCore(), end");
}

int CVelmorCore::Initialize() {
    return 0;
}

void CVelmorCore::SetLogLevel(int level) {
    SetUbrixLogLevel(static_cast<ALogPriority>(level));
}

char const* CVelmorCore::GetVersion() {
    return kVersion;
}

void CVelmorCore::SetRemoteConfigUrl(char const* url) {
    Velmor::Configure::GetInstance()->SetUrl(url);
}

void CVelmorCore::ClearRemoteConfigCache() {
    Velmor::Configure::GetInstance()->Clear();
}

}  // namespace Ubrix
