#include "Base/Configure/ConfigFile.h"

#include <VelmorCore/File.h>

#include <cstring>

#include "Base/Configure/ConfigFileName.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"

namespace Velmor {

using Ubrix::AString;
using Ubrix::Bundle;
using Ubrix::BundleFactory;

namespace {

constexpr char kOwnName[] = "Velmor";

// Carries a call to the bundle; without one it says so and answers `neutral`.
template <class Result, class Call>
Result Forward(Bundle* bundle, char const* function, Result neutral, Call call) {
    if (bundle == nullptr) {
        VC_LOG(Error, function, "_bundle is null");
        return neutral;
    }
    return call(*bundle);
}

}  // namespace

ConfigFile::ConfigFile(char const* name) {
    constexpr char kFunction[] = "Velmor::ConfigFile::ConfigFile";
    if (name == nullptr || std::strcmp(name, kOwnName) == 0) {
        VC_LOG(Info, kFunction, "using Velmor.config");
        _bundle = &BundleFactory::GetInstance().GetDefaultBundle();
        return;
    }
    Ubrix::ForeignText const shown(name);
    if (!CanNameConfigFile(name)) {
        VC_LOG(Error, kFunction, "no config file can be named \"%s\": refused", shown.c_str());
        return;
    }
    VC_LOG(Info, kFunction, "using %s.config", shown.c_str());
    char const* directory = Ubrix::CPath::GetCachePath();
    if (AString::IsNullOrEmpty(directory)) {
        VC_LOG(Info, kFunction, "CachePath is empty, do not use bundle in JNI_ONLoad!!!");
        return;
    }
    AString file(name);
    file += ".config";
    Ubrix::CPath::GetSubPath(_path, directory, file.c_str());
    _bundle = &BundleFactory::GetInstance().GetBundle(_path.c_str());
}

ConfigFile::~ConfigFile() {
    BundleFactory::GetInstance().DestoryBundle(_path.c_str());
}

bool ConfigFile::SetCache(char const* section, char const* key, bool value) {
    return Forward(_bundle, "Velmor::ConfigFile::SetCache", false,
                   [&](Bundle& bundle) { return bundle.SetNoSave(section, key, value); });
}

bool ConfigFile::SetCache(char const* section, char const* key, char const* value) {
    return Forward(_bundle, "Velmor::ConfigFile::SetCache", false,
                   [&](Bundle& bundle) { return bundle.SetNoSave(section, key, value); });
}

bool ConfigFile::SetCache(char const* section, char const* key, std::int64_t value) {
    return Forward(_bundle, "Velmor::ConfigFile::SetCache", false, [&](Bundle& bundle) {
        return bundle.SetNoSave(section, key, static_cast<long long>(value));
    });
}

bool ConfigFile::SetCache(char const* section, char const* key, int value) {
    return Forward(_bundle, "Velmor::ConfigFile::SetCache", false,
                   [&](Bundle& bundle) { return bundle.SetNoSave(section, key, value); });
}

bool ConfigFile::RemoveValueForKey(char const* section, char const* key) {
    return Forward(_bundle, "Velmor::ConfigFile::RemoveValueForKey", false,
                   [&](Bundle& bundle) { return bundle.RemoveKeyNoSave(section, key); });
}

bool ConfigFile::RemoveSection(char const* section) {
    return Forward(_bundle, "Velmor::ConfigFile::RemoveSection", false,
                   [&](Bundle& bundle) { return bundle.RemoveSectionNoSave(section); });
}

bool ConfigFile::RemoveAll() {
    return Forward(_bundle, "Velmor::ConfigFile::RemoveAll", false,
                   [](Bundle& bundle) { return bundle.ClearNoSave(); });
}

bool ConfigFile::SaveCacheToFile() {
    return Forward(_bundle, "Velmor::ConfigFile::SaveCacheToFile", false,
                   [](Bundle& bundle) { return bundle.Save(); });
}

bool ConfigFile::SetAndSave(char const* section, char const* key, bool value) {
    return Forward(_bundle, "Velmor::ConfigFile::SetAndSave", false,
                   [&](Bundle& bundle) { return bundle.Set(section, key, value); });
}

bool ConfigFile::SetAndSave(char const* section, char const* key, char const* value) {
    return Forward(_bundle, "Velmor::ConfigFile::SetAndSave", false,
                   [&](Bundle& bundle) { return bundle.Set(section, key, value); });
}

bool ConfigFile::SetAndSave(char const* section, char const* key, std::int64_t value) {
    return Forward(_bundle, "Velmor::ConfigFile::SetAndSave", false,
                   [&](Bundle& bundle) { return bundle.Set(section, key, static_cast<long long>(value)); });
}

bool ConfigFile::SetAndSave(char const* section, char const* key, int value) {
    return Forward(_bundle, "Velmor::ConfigFile::SetAndSave", false,
                   [&](Bundle& bundle) { return bundle.Set(section, key, value); });
}

bool ConfigFile::RemoveValueForKeyAndSave(char const* section, char const* key) {
    return Forward(_bundle, "Velmor::ConfigFile::RemoveValueForKeyAndSave", false,
                   [&](Bundle& bundle) { return bundle.RemoveKey(section, key); });
}

bool ConfigFile::RemoveSectionAndSave(char const* section) {
    return Forward(_bundle, "Velmor::ConfigFile::RemoveSectionAndSave", false,
                   [&](Bundle& bundle) { return bundle.RemoveSection(section); });
}

bool ConfigFile::RemoveAllAndSave() {
    return Forward(_bundle, "Velmor::ConfigFile::RemoveAllAndSave", false,
                   [](Bundle& bundle) { return bundle.Clear(); });
}

bool ConfigFile::GetFromCache(char const* section, char const* key, bool defaultValue) {
    return Forward(_bundle, "Velmor::ConfigFile::GetFromCache", defaultValue,
                   [&](Bundle& bundle) { return bundle.Get(section, key, defaultValue); });
}

bool ConfigFile::GetFromCache(char const* section, char const* key, char* value, int* size,
                              char const* defaultValue) {
    constexpr char kFunction[] = "Velmor::ConfigFile::GetFromCache";
    if (value == nullptr || size == nullptr || *size < 1) {
        VC_LOG(Error, kFunction, "len <= 0");
        return false;
    }
    int const room = *size;
    std::memset(value, 0, static_cast<std::size_t>(room));
    AString const text = Forward(_bundle, kFunction, AString(defaultValue),
                                 [&](Bundle& bundle) { return bundle.Get(section, key, defaultValue); });
    bool const fits = text.length() < room;
    if (!fits) {
        VC_LOG(Error, kFunction, "cut string");
    }
    *size = fits ? text.length() : room - 1;
    std::memcpy(value, text.c_str(), static_cast<std::size_t>(*size));
    return fits && _bundle != nullptr;
}

int ConfigFile::GetFromCache(char const* section, char const* key, int defaultValue) {
    return Forward(_bundle, "Velmor::ConfigFile::GetFromCache", defaultValue,
                   [&](Bundle& bundle) { return bundle.Get(section, key, defaultValue); });
}

std::int64_t ConfigFile::GetFromCache(char const* section, char const* key, std::int64_t defaultValue) {
    return Forward(_bundle, "Velmor::ConfigFile::GetFromCache", defaultValue, [&](Bundle& bundle) {
        return static_cast<std::int64_t>(bundle.Get(section, key, static_cast<long long>(defaultValue)));
    });
}

bool ConfigFile::IsContainKey(char const* section, char const* key) {
    return Forward(_bundle, "Velmor::ConfigFile::IsContainKey", false,
                   [&](Bundle& bundle) { return bundle.HasKey(section, key); });
}

}  // namespace Velmor
