#include "Base/Configure/BundleConfigFile.h"

#include <VelmorCore/File.h>

#include <cstring>

#include "Base/Configure/ConfigFileName.h"
#include "Platform/Boundary.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"

namespace Velmor {

using Ubrix::AString;
using Ubrix::Bundle;
using Ubrix::BundleFactory;

namespace {

constexpr char kOwnName[] = "Velmor";

}  // namespace

template <class Result, class Call>
Result BundleConfigFile::Forward(char const* function, Result neutral, Call const& call) {
    if (_bundle == nullptr) {
        VC_LOG(Error, function, "_bundle is null");
        return neutral;
    }
    return Ubrix::AtBoundary(neutral, [this, &call] { return call(*_bundle); });
}

BundleConfigFile::BundleConfigFile(char const* name) {
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
    AString path;
    Ubrix::CPath::GetSubPath(path, directory, file.c_str());
    _bundle = &_hold.Take(path.c_str());
}

bool BundleConfigFile::SetCache(char const* section, char const* key, bool value) {
    return Forward("Velmor::ConfigFile::SetCache", false,
                   [&](Bundle& bundle) { return bundle.SetNoSave(section, key, value); });
}

bool BundleConfigFile::SetCache(char const* section, char const* key, char const* value) {
    return Forward("Velmor::ConfigFile::SetCache", false,
                   [&](Bundle& bundle) { return bundle.SetNoSave(section, key, value); });
}

bool BundleConfigFile::SetCache(char const* section, char const* key, std::int64_t value) {
    return Forward("Velmor::ConfigFile::SetCache", false, [&](Bundle& bundle) {
        return bundle.SetNoSave(section, key, static_cast<long long>(value));
    });
}

bool BundleConfigFile::SetCache(char const* section, char const* key, int value) {
    return Forward("Velmor::ConfigFile::SetCache", false,
                   [&](Bundle& bundle) { return bundle.SetNoSave(section, key, value); });
}

bool BundleConfigFile::RemoveValueForKey(char const* section, char const* key) {
    return Forward("Velmor::ConfigFile::RemoveValueForKey", false,
                   [&](Bundle& bundle) { return bundle.RemoveKeyNoSave(section, key); });
}

bool BundleConfigFile::RemoveSection(char const* section) {
    return Forward("Velmor::ConfigFile::RemoveSection", false,
                   [&](Bundle& bundle) { return bundle.RemoveSectionNoSave(section); });
}

bool BundleConfigFile::RemoveAll() {
    return Forward("Velmor::ConfigFile::RemoveAll", false,
                   [](Bundle& bundle) { return bundle.ClearNoSave(); });
}

bool BundleConfigFile::SaveCacheToFile() {
    return Forward("Velmor::ConfigFile::SaveCacheToFile", false,
                   [](Bundle& bundle) { return bundle.Save(); });
}

bool BundleConfigFile::SetAndSave(char const* section, char const* key, bool value) {
    return Forward("Velmor::ConfigFile::SetAndSave", false,
                   [&](Bundle& bundle) { return bundle.Set(section, key, value); });
}

bool BundleConfigFile::SetAndSave(char const* section, char const* key, char const* value) {
    return Forward("Velmor::ConfigFile::SetAndSave", false,
                   [&](Bundle& bundle) { return bundle.Set(section, key, value); });
}

bool BundleConfigFile::SetAndSave(char const* section, char const* key, std::int64_t value) {
    return Forward("Velmor::ConfigFile::SetAndSave", false,
                   [&](Bundle& bundle) { return bundle.Set(section, key, static_cast<long long>(value)); });
}

bool BundleConfigFile::SetAndSave(char const* section, char const* key, int value) {
    return Forward("Velmor::ConfigFile::SetAndSave", false,
                   [&](Bundle& bundle) { return bundle.Set(section, key, value); });
}

bool BundleConfigFile::RemoveValueForKeyAndSave(char const* section, char const* key) {
    return Forward("Velmor::ConfigFile::RemoveValueForKeyAndSave", false,
                   [&](Bundle& bundle) { return bundle.RemoveKey(section, key); });
}

bool BundleConfigFile::RemoveSectionAndSave(char const* section) {
    return Forward("Velmor::ConfigFile::RemoveSectionAndSave", false,
                   [&](Bundle& bundle) { return bundle.RemoveSection(section); });
}

bool BundleConfigFile::RemoveAllAndSave() {
    return Forward("Velmor::ConfigFile::RemoveAllAndSave", false,
                   [](Bundle& bundle) { return bundle.Clear(); });
}

bool BundleConfigFile::GetFromCache(char const* section, char const* key, bool defaultValue) {
    return Forward("Velmor::ConfigFile::GetFromCache", defaultValue,
                   [&](Bundle& bundle) { return bundle.Get(section, key, defaultValue); });
}

bool BundleConfigFile::GetFromCache(char const* section, char const* key, char* value, int* size,
                                    char const* defaultValue) {
    constexpr char kFunction[] = "Velmor::ConfigFile::GetFromCache";
    if (value == nullptr || size == nullptr || *size < 1) {
        VC_LOG(Error, kFunction, "len <= 0");
        return false;
    }
    int const room = *size;
    std::memset(value, 0, static_cast<std::size_t>(room));
    AString text;
    bool const isRead = Forward(kFunction, false, [&](Bundle& bundle) {
        text = bundle.Get(section, key, defaultValue);
        return true;
    });
    if (!isRead && !Ubrix::AtBoundary([&] { text = defaultValue; })) {
        return false;
    }
    bool const fits = text.length() < room;
    if (!fits) {
        VC_LOG(Error, kFunction, "cut string");
    }
    *size = fits ? text.length() : room - 1;
    std::memcpy(value, text.c_str(), static_cast<std::size_t>(*size));
    return fits && isRead;
}

int BundleConfigFile::GetFromCache(char const* section, char const* key, int defaultValue) {
    return Forward("Velmor::ConfigFile::GetFromCache", defaultValue,
                   [&](Bundle& bundle) { return bundle.Get(section, key, defaultValue); });
}

std::int64_t BundleConfigFile::GetFromCache(char const* section, char const* key, std::int64_t defaultValue) {
    return Forward("Velmor::ConfigFile::GetFromCache", defaultValue, [&](Bundle& bundle) {
        return static_cast<std::int64_t>(bundle.Get(section, key, static_cast<long long>(defaultValue)));
    });
}

bool BundleConfigFile::IsContainKey(char const* section, char const* key) {
    return Forward("Velmor::ConfigFile::IsContainKey", false,
                   [&](Bundle& bundle) { return bundle.HasKey(section, key); });
}

}  // namespace Velmor
