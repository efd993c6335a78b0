// The key store on the plain INI file "Store.ini" in the cache directory.
#pragma once

#include <memory>

#include "Platform/Mutex.h"
#include "Security/SecurityStore/SecurityStore.h"
#include "Storage/File/IniFileImp.h"

namespace Ubrix {

// All entries stand in the section "Velmor". The lock makes a checked setting, with its way back, one step;
// the file's own lock is taken under it.
class SecurityStoreImp : public SecurityStore {
public:
    // Without a cache directory there is no file: nothing is stored, and every answer is the default.
    SecurityStoreImp();

    void Set(char const* key, char const* value) override;
    AString Get(char const* key, char const* defaultValue) override;
    bool SetChecked(char const* key, char const* value) override;

private:
    Platform::RecursiveMutex _lock;
    std::unique_ptr<CIniFileImpl> _file;
};

}  // namespace Ubrix
