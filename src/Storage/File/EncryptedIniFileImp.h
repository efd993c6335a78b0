// The INI file in enciphered form.
#pragma once

#include <string>
#include <string_view>

#include "Security/SecurityStore/SecurityStore.h"
#include "Storage/File/EncipheredFile.h"
#include "Storage/File/IniFileImp.h"

namespace Ubrix {

// Only Load and Save differ from the plain file. Each save takes a fresh key: the holder of the server's
// private key finds it again from the public key in the file's head, this library from the key store, where
// it lies as Base64 under the file's bare name. A file outside of the cache directory leaves that entry to
// one of its name in there, and has "elsewhere/" and the name for its own. (Two files of one name in two
// other directories share their entry, and only the one saved last opens.) Without a key that the server can
// find nothing is saved.
//
// A plain file is usable at once and takes the enciphered form at its next save. One that is neither, or that
// no key opens, is left as it is until a save moves it aside.
//
// A save first writes the new file beside the old one, then puts the key into the store, where the old file's
// key stays as the earlier one, then renames the file into place. A process that dies at any moment thus
// leaves a file that one of its two keys opens; a failure leaves the old file and its old key.
//
// The key store's turn makes the file and its keys change together for all objects of all processes; it is
// taken under the file's own lock.
class EncryptedIniFileImpl : public CIniFileImpl {
public:
    explicit EncryptedIniFileImpl(char const* path);
    // Saves in enciphered form.
    ~EncryptedIniFileImpl() override;

    // False after a message that says why; the content then stays.
    bool Load() override;

protected:
    bool Reload() VC_REQUIRES(_lock) override;
    char const* WriteFile() VC_REQUIRES(_lock) override;

private:
    std::string BareName() const;
    bool IsInCache() const;
    // The name of this file's entry in the key store.
    std::string EntryName() const;
    // Before this file's first save takes the entry of its name: a file elsewhere may have had it so far.
    void KeepForNamesake(SecurityStore& store, StoredKeys const& before) const;
    // Takes in what is on the disk. Of what is wrong with it, the body is empty.
    EncipheredContent ReadFile() VC_REQUIRES(_lock);
    // The same, with std::bad_alloc for want of memory, which changes nothing.
    EncipheredContent ReadWithKeys() VC_REQUIRES(_lock);
    // Whether the bytes are text; what of it isn't known is taken in.
    bool TakePlain(std::string_view bytes) VC_REQUIRES(_lock);
    // Takes the lines of a body in, if a key that may be this file's opens it.
    EncipheredFault Open(std::string_view body) VC_REQUIRES(_lock);
    // The same, if one of these keys opens it.
    bool Decipher(std::string_view body, StoredKeys const& keys) VC_REQUIRES(_lock);
    // Which of the keys opens what is on the disk; the current one if that can't be told.
    std::string KeyOfFile(StoredKeys const& keys) const VC_REQUIRES(_lock);
    std::string JoinedLines() const VC_REQUIRES(_lock);
    void LogFault(EncipheredContent const& content) const;
    // Puts `replacement` in place of the file and the current one of `keys` in place of its key. Gives null,
    // or the reason why neither is.
    char const* Exchange(SecurityStore& store, class FileReplacement& replacement, StoredKeys& keys)
        VC_REQUIRES(_lock);

    // The text of the key with which this object last read or wrote the file.
    StoredKeys _known VC_GUARDED_BY(_lock);
};

}  // namespace Ubrix
