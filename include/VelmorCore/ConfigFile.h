// A small typed store of the caller's own: sections of keys in one enciphered file of the cache directory.
#pragma once

#include <VelmorCore/Export.h>

#include <cstdint>

namespace Velmor {

// Made by VelmorCore_NewConfigFile, deleted by VelmorCore_DeleteConfigFile; VelmorCore_GetDefaultHandler
// gives the kit's own. Objects of one name share one file, which is closed with the last of them. Each
// operation is thread-safe by itself.
//
// Texts are zero-terminated bytes; section and key must not be null. What a line of the file can't hold is
// refused with false and an Error line, and nothing changes: a line end anywhere, a "]" in a section, an "="
// in a key or a "[" or "#" at its beginning, blanks at the ends of either. A text value that is empty, holds
// a "#", or has blanks at its ends is written and doesn't come back whole; a Warning line tells of the first
// such value of a key, of 64 keys an object at most. Writing operations answer true on success.
// An object that has no storage logs "_bundle is null" at each call and answers false or the default.
class IConfigFile {
public:
    virtual ~IConfigFile() = default;

    // Write to memory only; SaveCacheToFile brings it to the file.
    virtual bool SetCache(char const* section, char const* key, bool value) = 0;
    virtual bool SetCache(char const* section, char const* key, char const* value) = 0;
    virtual bool SetCache(char const* section, char const* key, std::int64_t value) = 0;
    virtual bool SetCache(char const* section, char const* key, int value) = 0;
    virtual bool RemoveValueForKey(char const* section, char const* key) = 0;
    virtual bool RemoveSection(char const* section) = 0;
    virtual bool RemoveAll() = 0;
    virtual bool SaveCacheToFile() = 0;

    // Write to memory and rewrite the file: each costs a key agreement and two files written.
    virtual bool SetAndSave(char const* section, char const* key, bool value) = 0;
    virtual bool SetAndSave(char const* section, char const* key, char const* value) = 0;
    virtual bool SetAndSave(char const* section, char const* key, std::int64_t value) = 0;
    virtual bool SetAndSave(char const* section, char const* key, int value) = 0;
    virtual bool RemoveValueForKeyAndSave(char const* section, char const* key) = 0;
    virtual bool RemoveSectionAndSave(char const* section) = 0;
    virtual bool RemoveAllAndSave() = 0;

    // True for the text "TRUE" in any case and for the text "1", which SetCache writes; false for other
    // texts.
    virtual bool GetFromCache(char const* section, char const* key, bool defaultValue) = 0;
    // Fills `value` with the text. `*size`: the room in bytes; on return the length copied, the terminator
    // not counted. A text that doesn't fit with its terminator is cut to the room, logged as "cut string",
    // and the answer is false. A null `value` or a `*size` below 1 leaves the buffer alone and gives false.
    virtual bool GetFromCache(char const* section, char const* key, char* value, int* size,
                              char const* defaultValue) = 0;
    virtual int GetFromCache(char const* section, char const* key, int defaultValue) = 0;
    virtual std::int64_t GetFromCache(char const* section, char const* key, std::int64_t defaultValue) = 0;

    // True if a line behind the section's header begins with `key`; longer keys and later sections count.
    virtual bool IsContainKey(char const* section, char const* key) = 0;

protected:
    IConfigFile() = default;
    IConfigFile(IConfigFile const&) = default;
    IConfigFile& operator=(IConfigFile const&) = default;
};

}  // namespace Velmor
