// The process-wide store of what the library's own protection of files needs: today, the cipher keys of each
// enciphered INI file.
// Sources: StoreTurn.cpp
#pragma once

#include <VelmorCore/Object.h>

#include <string>

#include "Platform/Mutex.h"

namespace Ubrix {

// The store's file in the cache directory. Files whose names begin so are beside it: its lock, and what is
// being saved.
constexpr char kSecurityStoreFile[] = "Store.ini";

// Keys as texts. Wiped when it goes.
struct StoredKeys {
    ~StoredKeys();

    std::string current;
    // The one before, which still opens the file while a save is under way, and for good if the process dies
    // in it. Empty for none.
    std::string earlier;
};

// Every operation may be called on any thread, and sees what other processes have stored.
class SecurityStore {
public:
    // The turn to change the store and the files whose keys it has, among all threads of all processes on the
    // cache directory. A thread that has it may take it again. Waits for another process up to two seconds,
    // but no longer at all once one hasn't let go in that time, a stopped one for instance, until the turn is
    // to be had again.
    class Turn {
    public:
        Turn() VC_NO_THREAD_SAFETY_ANALYSIS;
        ~Turn() VC_NO_THREAD_SAFETY_ANALYSIS;
        Turn(Turn const&) = delete;
        Turn& operator=(Turn const&) = delete;

        // False if another process has the turn, or it can't be reached. In this process the thread has it.
        bool IsHeld() const { return _held; }

    private:
        bool _held;
    };

    // The one instance, made at first use and never deleted.
    static SecurityStore* GetInstance();

    virtual ~SecurityStore() = default;
    // Sets an entry and saves at once. A failure isn't told.
    virtual void Set(char const* key, char const* value) = 0;
    // The entry, or the default.
    virtual AString Get(char const* key, char const* defaultValue) = 0;
    // The keys of a file; empty texts for those that aren't there. False if the store can't be read now.
    virtual bool ReadKeys(char const* file, StoredKeys& keys) = 0;
    // Puts the keys of a file on the disk. False if that can't be done; the store is then what it was.
    virtual bool WriteKeys(char const* file, StoredKeys const& keys) = 0;
};

}  // namespace Ubrix
