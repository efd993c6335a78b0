// The key store on the plain INI file "Store.ini" in the cache directory.
#pragma once

#include <memory>

#include "Security/SecurityStore/SecurityStore.h"
#include "Storage/File/IniFileImp.h"

namespace Ubrix {

// All entries are in the section "Velmor": a file's current key under the file's bare name, the earlier one
// under "earlier/" and that name, which is no file's. The file is read again at each operation. A thread
// takes the store's turn for each, and the file's own lock under it.
class SecurityStoreImp : public SecurityStore {
public:
    // Without a cache directory there is no file: nothing is stored, and every answer is the default.
    SecurityStoreImp();

    void Set(char const* key, char const* value) override;
    AString Get(char const* key, char const* defaultValue) override;
    bool ReadKeys(char const* file, StoredKeys& keys) override;
    bool WriteKeys(char const* file, StoredKeys const& keys) override;

private:
    // Whether the file's content, or its absence, is known now.
    bool IsFresh();
    // Without a save; an empty text removes the entry. False if the name can't be one.
    bool Put(char const* name, std::string const& text);

    std::unique_ptr<CIniFileImpl> _file;
};

}  // namespace Ubrix
