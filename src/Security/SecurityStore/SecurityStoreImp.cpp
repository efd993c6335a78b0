#include "Security/SecurityStore/SecurityStoreImp.h"

#include <VelmorCore/File.h>

#include "Storage/Log/LogMacros.h"

namespace Ubrix {

namespace {

char const kSection[] = "Velmor";

}  // namespace

SecurityStore* SecurityStore::GetInstance() {
    static SecurityStore* const instance = new SecurityStoreImp();
    return instance;
}

SecurityStoreImp::SecurityStoreImp() {
    char const* cache = CPath::GetCachePath();
    if (AString::IsNullOrEmpty(cache)) {
        VC_LOG_CONSOLE(Error, "Ubrix::SecurityStoreImp::SecurityStoreImp",
                       "CachePath is empty, do not use bundle in JNI_ONLoad!!!");
        return;
    }
    AString path;
    CPath::GetSubPath(path, cache, kSecurityStoreFile);
    _file = std::make_unique<CIniFileImpl>(path.CString());
}

void SecurityStoreImp::Set(char const* key, char const* value) {
    Platform::ScopedLock lock(_lock);
    if (_file != nullptr && _file->WriteString(kSection, key, value)) {
        _file->Save();
    }
}

AString SecurityStoreImp::Get(char const* key, char const* defaultValue) {
    return _file == nullptr ? AString(defaultValue) : _file->ReadString(kSection, key, defaultValue);
}

bool SecurityStoreImp::SetChecked(char const* key, char const* value) {
    if (_file == nullptr) {
        return false;
    }
    Platform::ScopedLock lock(_lock);
    bool found = false;
    AString const before = key != nullptr ? _file->ReadString(kSection, key, "", &found) : AString();
    if (!_file->WriteString(kSection, key, value)) {
        return false;
    }
    if (_file->SaveChecked()) {
        return true;
    }
    if (found) {
        _file->WriteString(kSection, key, before.CString());
    } else {
        _file->RemoveKey(kSection, key);
    }
    return false;
}

}  // namespace Ubrix
