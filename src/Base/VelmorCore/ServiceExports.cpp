// The C functions of the host's update, the network state and the device.
#include <VelmorCore/Network.h>
#include <VelmorCore/System.h>
#include <VelmorCore/velmorcore.h>

#include <cstring>

#include "Platform/Boundary.h"
#include "Storage/Log/LogMacros.h"
#include "System/Thread/GameThread.h"

using Ubrix::AtBoundary;

void ubrix_target_unity_enable_ui_update() {
    Ubrix::EnableUiUpdate();
}

void ubrix_target_unity_update() {
    Ubrix::RunHostUpdateSelectors();
}

VelmorCoreNetworkState ubrix_network_GetNetworkState() {
    return AtBoundary(Ubrix::ANetworkStateReachable,
                      [] { return Ubrix::CNetwork::GetInstance().GetNetworkState(); });
}

bool ubrix_network_GetDetailNetworkInfo(char* buffer, int size) {
    Ubrix::AString encoded;
    if (!AtBoundary([&] { Ubrix::CNetwork::GetInstance().GetDetailNetworkInfo().Encode(encoded); })) {
        return false;
    }
    if (buffer == nullptr || size <= encoded.length()) {
        VC_LOG(Error, "ubrix_network_GetDetailNetworkInfo", "network_GetDetailNetworkInfo data.size+1>size");
        return false;
    }
    std::memcpy(buffer, encoded.data(), static_cast<std::size_t>(encoded.length()));
    return true;
}

void ubrix_network_SetNetworkChangedCallback(VelmorCoreNetworkCallback callback) {
    AtBoundary([callback] { Ubrix::CNetwork::GetInstance().SetCallback(callback); });
}

bool Ubrix_system_GetUUID(char* buffer, int size) {
    VC_LOG(Info, "Ubrix_system_GetUUID", "Ubrix_system_GetUUID");
    char const* const id =
        AtBoundary(static_cast<char const*>(nullptr), [] { return Ubrix::CSystem::GetUdid(); });
    std::size_t const length = id != nullptr ? std::strlen(id) : 0;
    if (id == nullptr || buffer == nullptr || size < 0 || length + 1 > static_cast<std::size_t>(size)) {
        VC_LOG(Error, "Ubrix_system_GetUUID", "Ubrix_system_GetUUID len>size");
        return false;
    }
    std::memcpy(buffer, id, length + 1);
    std::memset(buffer + length, 0, static_cast<std::size_t>(size) - length);
    return true;
}

bool Ubrix_system_GetIDFA() {
    return false;
}

bool Ubrix_system_IsDeviceRooted() {
    return Ubrix::CSystem::IsDeviceRooted();
}

int Ubrix_system_CheckPermission(int permission) {
    return Ubrix::CSystem::CheckPermission(permission);
}
