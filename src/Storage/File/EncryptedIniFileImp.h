// The INI file in enciphered form.
#pragma once

#include <vector>

#include "Storage/File/EncipheredFile.h"
#include "Storage/File/IniFileImp.h"

namespace Ubrix {

// Only Load and Save differ from the plain file. Each save takes a fresh key: the holder of the server's
// private key finds it again from the public key in the file's head, this library from the key store, where
// it lies as Base64 under the file's bare name. (Two files of one name in two directories share that entry,
// and only the one saved last opens.)
//
// The constructor has read the file as plain text; Load replaces that, if it succeeds, by the deciphered
// lines. So a plain file is usable at once and takes the enciphered form at its next save.
//
// A save first writes the new file beside the old one, then puts the key into the store, then renames the
// file into place. A failure of any of these leaves the old file and its old key together. What remains is a
// process that dies between the last two steps: the store then has a key that opens nothing, and the file
// counts as empty.
//
// A process-wide lock makes the file and its key change together for all objects; it is taken under the
// file's own lock and above the store's. Messages are logged with no lock held.
class EncryptedIniFileImpl : public CIniFileImpl {
public:
    explicit EncryptedIniFileImpl(char const* path);
    // Saves in enciphered form.
    ~EncryptedIniFileImpl() override;

    // False after a message that says why; the content then stays.
    bool Load() override;
    bool Save() override;

private:
    // The name of this file's entry in the key store.
    char const* EntryName() const;
    EncipheredContent ReadContent(unsigned char* key) const;
    EncipheredContent LoadLocked() VC_REQUIRES(_lock);
    void TakePlainText(char const* text, std::size_t size) VC_REQUIRES(_lock);
    std::string JoinedLines() const VC_REQUIRES(_lock);
    void LogFault(EncipheredContent const& content) const;
    // Puts `replacement` in place of the file and `key` in place of its key, or neither.
    void Exchange(class FileReplacement& replacement, unsigned char const* key) const;
};

}  // namespace Ubrix
