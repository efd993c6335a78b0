#include <VelmorCore/Configure.h>
#include <VelmorCore/Core.h>

#include <new>

#include "Base/Ubrix/IBase.h"
#include "Base/Ubrix/Service.h"
#include "BuildConstants.h"
#include "Platform/Boundary.h"
#include "Platform/Immortal.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

namespace {

constexpr char kVersion[] = VELMORCORE_VERSION;
// The desktop product's name: its development builds on other systems answer as it does.
constexpr char kOsName[] = "Windows";

// A core's life, from its making to the end of its teardown.
struct CoreLife {
    CoreLife() { IBase::GetInstance(); }

    bool isGreeted = false;
    bool isEnding = false;
};

Service<CoreLife>& TheLife() {
    static Platform::Immortal<Service<CoreLife>> life(nullptr);
    return *life;
}

}  // namespace

IVelmorCore::~IVelmorCore() = default;

IVelmorCore& IVelmorCore::GetInstance() {
    return CVelmorCore::GetInstance();
}

CVelmorCore& CVelmorCore::GetInstance() {
    static Platform::Immortal<CVelmorCore> core([](void* room) { return new (room) CVelmorCore; });
    auto const greet = [](CoreLife& life) { return !std::exchange(life.isGreeted, true); };
    if (AtBoundary(false, [&greet] { return TheLife().With(greet); })) {
        VC_LOG(Event, "Ubrix::CVelmorCore::CVelmorCore",
               "Hello VelmorCore! OS_TYPE:%s, Version:%s, VersionHash:%s", kOsName, kVersion,
               VELMORCORE_VERSION_HASH);
    }
    return *core;
}

void CVelmorCore::ReleaseInstance() {
    constexpr char kFunction[] = "Ubrix::CVelmorCore::~CVelmorCore";
    // A second teardown at a time, from inside the first or on another thread, has nothing to do.
    auto const end = [](CoreLife& life) { return std::exchange(life.isEnding, true); };
    if (AtBoundary(true, [&end] { return TheLife().WithIfMade(true, end); })) {
        return;
    }
    VC_LOG(Event, kFunction, "CVelmorCore::~CVelmorCore(), start");
    IBase::Release();
    VC_LOG(Event, kFunction, "CVelmorCore::~CVelmorCore(), end");
    TheLife().Release();
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
    AtBoundary([url] { Velmor::Configure::GetInstance()->SetUrl(url); });
}

void CVelmorCore::ClearRemoteConfigCache() {
    AtBoundary([] { Velmor::Configure::GetInstance()->Clear(); });
}

}  // namespace Ubrix
