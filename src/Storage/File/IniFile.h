// A small key/value file in sections, kept as a list of lines: what comes between the keys, and their order,
// survive a rewrite. IniLines.h tells how lines are read.
#pragma once

#include <VelmorCore/Object.h>

namespace Ubrix {

class IniLines;

// Every operation may be called on any thread. Texts go in and out as bytes; one that is returned is the
// caller's own. Nothing throws but std::bad_alloc.
class IniFile {
public:
    // Saves first what was edited, so that it reaches the disk at the latest when the object goes. Where
    // there is none it makes the file.
    virtual ~IniFile() = default;

    // Replaces the content by the file's. False if there is none or it can't be read; the content then stays.
    virtual bool Load() = 0;
    // Writes the content to the file. Always true: a failure leaves the file as it was and the edits for the
    // next save, after an Error line.
    virtual bool Save() = 0;

    // The value of a key, and in `found`, which may be null, whether it is in the file. The default,
    // which may be null for an empty text, answers for a missing key. A null section or key is logged and
    // gives an empty text.
    virtual AString ReadString(char const* section, char const* key, char const* defaultValue,
                               bool* found) = 0;
    virtual AString ReadString(char const* section, char const* key, char const* defaultValue) = 0;
    // The decimal number at the beginning of the value, after white space: 0 if there is none, the bound if
    // it is out of range. An empty value gives the default.
    virtual int ReadInt(char const* section, char const* key, int defaultValue, bool* found) = 0;
    virtual int ReadInt(char const* section, char const* key, int defaultValue) = 0;
    virtual long long ReadInt64(char const* section, char const* key, long long defaultValue,
                                bool* found) = 0;
    virtual long long ReadInt64(char const* section, char const* key, long long defaultValue) = 0;

    // Set a key in memory; the disk sees it at the next save. False for a null section or key. A null value
    // is an empty one.
    virtual bool WriteString(char const* section, char const* key, char const* value) = 0;
    virtual bool WriteInt(char const* section, char const* key, int value) = 0;
    virtual bool WriteInt64(char const* section, char const* key, long long value) = 0;

    // Adds the names of the section's keys to `keys`, as strings, in their order; doubles appear.
    virtual void GetKeys(char const* section, AArray* keys) = 0;
    // True if a line anywhere behind the section's header begins with `key`: a longer key and one of a later
    // section count as well.
    virtual bool HasKey(char const* section, char const* key) = 0;
    // Take out the first section of that name, or the line that ReadString would read. False if there is
    // none.
    virtual bool RemoveSection(char const* section) = 0;
    virtual bool RemoveKey(char const* section, char const* key) = 0;
    // Takes out all lines. Always true.
    virtual bool Clear() = 0;
    // Exchanges the content in memory with `lines`; the disk sees it at the next save. Takes no memory.
    virtual void Swap(IniLines& lines) = 0;
    // True while something is on the disk that couldn't be read yet.
    virtual bool IsUnread() = 0;
};

// A new file object on plain text, or on an enciphered file. Both have read what is at `path`. The caller
// deletes them.
IniFile* CreateIniFile(char const* path);
IniFile* CreateEncryptedIniFile(char const* path);

}  // namespace Ubrix
