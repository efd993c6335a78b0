// The C functions of the core and of logging: a log line at most, then a forward. They hold no state.
#include <VelmorCore/Core.h>
#include <VelmorCore/Log.h>
#include <VelmorCore/velmorcore.h>

#include <cstring>

#include "Platform/Boundary.h"
#include "Storage/Log/LogMacros.h"

using Ubrix::AtBoundary;

VelmorCoreObject* velmorcore_getInstance() {
    return AtBoundary(static_cast<VelmorCoreObject*>(nullptr),
                      [] { return &Ubrix::IVelmorCore::GetInstance(); });
}

int velmorcore_init() {
    VC_LOG(Event, "velmorcore_init", "velmorcore_init");
    return AtBoundary(0, [] { return Ubrix::IVelmorCore::GetInstance().Initialize(); });
}

void velmorcore_releaseInstance() {
    VC_LOG(Event, "velmorcore_releaseInstance", " velmorcore_release");
    Ubrix::CVelmorCore::ReleaseInstance();
}

void velmorcore_setLogLevel(int level) {
    VC_LOG(Event, "velmorcore_setLogLevel", "velmorcore_setLogLevel:%d", level);
    AtBoundary([level] { Ubrix::IVelmorCore::GetInstance().SetLogLevel(level); });
}

void VelmorSDKLog_setLogLevel(char const* module, int level) {
    if (module != nullptr && std::strcmp(module, "VelmorCore") == 0) {
        VelmorSDKLog_setAllLogLevel(level);
    }
}

void VelmorSDKLog_setAllLogLevel(int level) {
    Ubrix::SetUbrixLogLevel(static_cast<Velmor::ALogPriority>(level));
}

void VelmorCore_SetUbrixLogLevel(VelmorCoreLogPriority level) {
    Ubrix::SetUbrixLogLevel(level);
}

void VelmorCore_SetUbrixLogCallback(VelmorCoreLogCallback callback) {
    Ubrix::SetUbrixLogCallback(callback);
}

void VelmorCore_XLog(VelmorCoreLogPriority level, char const* file, unsigned int line, char const* func,
                     char const* msg) {
    Ubrix::XLog2(level, file, line, func, msg);
}
