// The C functions of config files and of the remote configuration.
#include <VelmorCore/Configure.h>
#include <VelmorCore/RemoteConfig.h>
#include <VelmorCore/velmorcore.h>

#include "Base/Configure/BundleConfigFile.h"
#include "Base/Ubrix/Service.h"
#include "Platform/Boundary.h"
#include "Platform/Immortal.h"
#include "Storage/Bundle/PlatformMetadata.h"
#include "Storage/Log/LogMacros.h"

using Ubrix::AtBoundary;
using Ubrix::Service;

namespace {

// The game's own view. Its module is the game id at the time of the first read.
struct GameRemoteConfig {
    Velmor::RemoteConfig view{Ubrix::GameId().c_str()};
};

struct DefaultConfigFile {
    Velmor::BundleConfigFile file{nullptr};
};

// Both last as long as the process.
Velmor::RemoteConfig& TheGameRemoteConfig() {
    static Ubrix::Platform::Immortal<Service<GameRemoteConfig>> config(nullptr);
    return config->Share()->view;
}

VelmorCoreConfigFile* TheDefaultConfigFile() {
    static Ubrix::Platform::Immortal<Service<DefaultConfigFile>> file(nullptr);
    return &file->Share()->file;
}

// What a read gives, or its default.
template <class Result, class Read>
Result ReadGameConfig(Result otherwise, Read const& read) {
    return AtBoundary(otherwise, [&read] { return read(TheGameRemoteConfig()); });
}

}  // namespace

VelmorCoreConfigFile* VelmorCore_GetDefaultHandler() {
    return AtBoundary(static_cast<VelmorCoreConfigFile*>(nullptr), TheDefaultConfigFile);
}

VelmorCoreConfigFile* VelmorCore_NewConfigFile(char const* name) {
    return AtBoundary(static_cast<VelmorCoreConfigFile*>(nullptr),
                      [name] { return new Velmor::BundleConfigFile(name); });
}

void VelmorCore_DeleteConfigFile(VelmorCoreConfigFile** file) {
    if (file != nullptr) {
        delete *file;
        *file = nullptr;
    }
}

bool velmorcore_configure_seturl(char const* url) {
    VC_LOG(Info, "velmorcore_configure_seturl", "velmorcore_configure_seturl");
    return AtBoundary([url] { Velmor::Configure::GetInstance()->SetUrl(url); });
}

bool velmorcore_configure_clear() {
    VC_LOG(Info, "velmorcore_configure_clear", "velmorcore_configure_clear");
    return AtBoundary([] { Velmor::Configure::GetInstance()->Clear(); });
}

int ubrix_remoteconfig_GetInt(char const* key, int defaultValue) {
    return ReadGameConfig(defaultValue, [=](auto& config) { return config.GetInt(key, defaultValue); });
}

int64_t ubrix_remoteconfig_GetLong(char const* key, int64_t defaultValue) {
    return ReadGameConfig(defaultValue, [=](auto& config) { return config.GetLong(key, defaultValue); });
}

double ubrix_remoteconfig_GetDouble(char const* key, double defaultValue) {
    return ReadGameConfig(defaultValue, [=](auto& config) { return config.GetDouble(key, defaultValue); });
}

bool ubrix_remoteconfig_GetBool(char const* key, bool defaultValue) {
    return ReadGameConfig(defaultValue, [=](auto& config) { return config.GetBool(key, defaultValue); });
}

bool ubrix_remoteconfig_GetString(char const* key, char* value, int size, char const* defaultValue) {
    return ReadGameConfig(false,
                          [&](auto& config) { return config.GetString(key, value, &size, defaultValue); });
}
