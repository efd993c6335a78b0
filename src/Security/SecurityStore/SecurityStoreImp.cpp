#include "Security/SecurityStore/SecurityStoreImp.h"

#include <VelmorCore/File.h>

#include "Base/Ubrix/Service.h"
#include "Platform/Immortal.h"
#include "Security/Crypto/Wipe.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

namespace {

char const kSection[] = "Velmor";

std::string EarlierName(char const* file) {
    return std::string("earlier/") + file;
}

}  // namespace

StoredKeys::~StoredKeys() {
    Crypto::Wipe(current.data(), current.size());
    Crypto::Wipe(earlier.data(), earlier.size());
}

SecurityStore* SecurityStore::GetInstance() {
    // Lasts as long as the process.
    static Platform::Immortal<Service<SecurityStoreImp>> store(nullptr);
    return store->Share().get();
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

bool SecurityStoreImp::IsFresh() {
    return _file != nullptr && _file->Refresh();
}

void SecurityStoreImp::Set(char const* key, char const* value) {
    Turn const turn;
    if (turn.IsHeld() && IsFresh() && _file->WriteString(kSection, key, value)) {
        _file->Save();
    }
}

AString SecurityStoreImp::Get(char const* key, char const* defaultValue) {
    Turn const turn;
    IsFresh();
    return _file == nullptr ? AString(defaultValue) : _file->ReadString(kSection, key, defaultValue);
}

bool SecurityStoreImp::ReadKeys(char const* file, StoredKeys& keys) {
    Turn const turn;
    if (!IsFresh()) {
        return false;
    }
    keys.current = _file->ReadString(kSection, file, "").CString();
    keys.earlier = _file->ReadString(kSection, EarlierName(file).c_str(), "").CString();
    return true;
}

bool SecurityStoreImp::Put(char const* name, std::string const& text) {
    if (text.empty()) {
        // A file that others edited may hold the name more than once.
        while (_file->RemoveKey(kSection, name)) {
        }
        return true;
    }
    return _file->WriteString(kSection, name, text.c_str());
}

bool SecurityStoreImp::WriteKeys(char const* file, StoredKeys const& keys) {
    Turn const turn;
    StoredKeys before;
    if (!turn.IsHeld() || !ReadKeys(file, before)) {
        return false;
    }
    std::string const earlierName = EarlierName(file);
    if (Put(file, keys.current) && Put(earlierName.c_str(), keys.earlier) && _file->SaveChecked()) {
        return true;
    }
    Put(file, before.current);
    Put(earlierName.c_str(), before.earlier);
    return false;
}

}  // namespace Ubrix
