// The process-wide store of what the library's own protection of files needs: today, the cipher key of each
// enciphered INI file.
#pragma once

#include <VelmorCore/Object.h>

namespace Ubrix {

// The store's file in the cache directory. While it is saved, files whose names begin so stand beside it.
constexpr char kSecurityStoreFile[] = "Store.ini";

// Every operation may be called on any thread.
class SecurityStore {
public:
    // The one instance, made at first use and never deleted.
    static SecurityStore* GetInstance();

    virtual ~SecurityStore() = default;
    // Sets an entry and saves at once. A failure isn't told.
    virtual void Set(char const* key, char const* value) = 0;
    // The entry, or the default.
    virtual AString Get(char const* key, char const* defaultValue) = 0;
    // As Set. False if the entry could not be saved; it is then what it was.
    virtual bool SetChecked(char const* key, char const* value) = 0;
};

}  // namespace Ubrix
