// The C functions of config files and of the remote configuration.
#include <VelmorCore/Configure.h>
#include <VelmorCore/RemoteConfig.h>
#include <VelmorCore/velmorcore.h>

#include "Base/Configure/ConfigFile.h"
#include "Storage/Bundle/PlatformMetadata.h"
#include "Storage/Log/LogMacros.h"

namespace {

// The game's own view. Its module is the game id at the time of the first read; it lives as long as the
// process.
Velmor::RemoteConfig& GameRemoteConfig() {
    static auto* const config = new Velmor::RemoteConfig(Ubrix::GameId().c_str());
    return *config;
}

}  // namespace

VelmorCoreConfigFile* VelmorCore_GetDefaultHandler() {
    static auto* const file = new Velmor::ConfigFile(nullptr);
    return file;
}

VelmorCoreConfigFile* VelmorCore_NewConfigFile(char const* name) {
    return new Velmor::ConfigFile(name);
}

void VelmorCore_DeleteConfigFile(VelmorCoreConfigFile** file) {
    if (file != nullptr) {
        delete *file;
        *file = nullptr;
    }
}

bool velmorcore_configure_seturl(char const* url) {
    VC_LOG(Info, "velmorcore_configure_seturl", "velmorcore_configure_seturl");
    Velmor::Configure::GetInstance()->SetUrl(url);
    return true;
}

bool velmorcore_configure_clear() {
    VC_LOG(Info, "velmorcore_configure_clear", "velmorcore_configure_clear");
    Velmor::Configure::GetInstance()->Clear();
    return true;
}

int ubrix_remoteconfig_GetInt(char const* key, int defaultValue) {
    return GameRemoteConfig().GetInt(key, defaultValue);
}

int64_t ubrix_remoteconfig_GetLong(char const* key, int64_t defaultValue) {
    return GameRemoteConfig().GetLong(key, defaultValue);
}

double ubrix_remoteconfig_GetDouble(char const* key, double defaultValue) {
    return GameRemoteConfig().GetDouble(key, defaultValue);
}

bool ubrix_remoteconfig_GetBool(char const* key, bool defaultValue) {
    return GameRemoteConfig().GetBool(key, defaultValue);
}

bool ubrix_remoteconfig_GetString(char const* key, char* value, int size, char const* defaultValue) {
    return GameRemoteConfig().GetString(key, value, &size, defaultValue);
}
