/// @file
/// A small typed store of the caller's own: sections of keys in one enciphered file of the cache directory.
#pragma once

#include <VelmorCore/Export.h>

#include <cstdint>

namespace Velmor {

/// Made by VelmorCore_NewConfigFile, deleted by VelmorCore_DeleteConfigFile; VelmorCore_GetDefaultHandler
/// gives the kit's own. Objects of one name share one file, which is closed with the last of them. Each
/// operation is thread-safe by itself.
///
/// Texts are zero-terminated bytes; section and key must not be null. What a line of the file can't hold is
/// refused with false and an Error line, and nothing changes: a line end anywhere, a "]" in a section, an "="
/// in a key or a "[" or "#" at its beginning, blanks at the ends of either. A text value that is empty, holds
/// a "#", or has blanks at its ends is written and doesn't come back whole; a Warning line tells of the first
/// such value of a key, of 64 keys an object at most. Writing operations answer true on success.
/// An object that has no storage logs "_bundle is null" at each call and answers false or the default.
class IConfigFile {
public:
    virtual ~IConfigFile() = default;

    /// Stores a bool in memory, as 1 or 0; SaveCacheToFile brings it to the file.
    virtual bool SetCache(char const* section, char const* key, bool value) = 0;
    /// Stores a text in memory.
    virtual bool SetCache(char const* section, char const* key, char const* value) = 0;
    /// Stores a 64-bit number in memory.
    virtual bool SetCache(char const* section, char const* key, std::int64_t value) = 0;
    /// Stores a 32-bit number in memory.
    virtual bool SetCache(char const* section, char const* key, int value) = 0;
    /// Removes a key in memory. False if there is none.
    virtual bool RemoveValueForKey(char const* section, char const* key) = 0;
    /// Removes a section in memory. False if there is none.
    virtual bool RemoveSection(char const* section) = 0;
    /// Removes everything in memory.
    virtual bool RemoveAll() = 0;
    /// Rewrites the file: a key agreement and two files written, some milliseconds. True also where the disk
    /// refuses: an Error line tells, and the values wait for the next save.
    virtual bool SaveCacheToFile() = 0;

    /// Stores a bool, as 1 or 0, and rewrites the file, as SaveCacheToFile.
    virtual bool SetAndSave(char const* section, char const* key, bool value) = 0;
    /// Stores a text and rewrites the file.
    virtual bool SetAndSave(char const* section, char const* key, char const* value) = 0;
    /// Stores a 64-bit number and rewrites the file.
    virtual bool SetAndSave(char const* section, char const* key, std::int64_t value) = 0;
    /// Stores a 32-bit number and rewrites the file.
    virtual bool SetAndSave(char const* section, char const* key, int value) = 0;
    /// Removes a key and rewrites the file. False, without a rewrite, if there is none.
    virtual bool RemoveValueForKeyAndSave(char const* section, char const* key) = 0;
    /// Removes a section and rewrites the file. False, without a rewrite, if there is none.
    virtual bool RemoveSectionAndSave(char const* section) = 0;
    /// Removes everything and rewrites the file.
    virtual bool RemoveAllAndSave() = 0;

    /// Reads a bool: true for the text "TRUE" in any case and for "1", which SetCache writes; the default
    /// for an absent key and an empty text; false for other texts.
    virtual bool GetFromCache(char const* section, char const* key, bool defaultValue) = 0;
    /// Copies the text into `value`. `*size`: the room in bytes; on return the length copied, the terminator
    /// not counted. A text that doesn't fit with its terminator is cut to the room, logged as "cut string",
    /// and the answer is false. A null `value` or a `*size` below 1 leaves the buffer alone and gives false.
    virtual bool GetFromCache(char const* section, char const* key, char* value, int* size,
                              char const* defaultValue) = 0;
    /// Reads a 32-bit number: the decimal number at the text's beginning, 0 without one, the bound if it is
    /// out of range; the default for an absent key.
    virtual int GetFromCache(char const* section, char const* key, int defaultValue) = 0;
    /// Reads a 64-bit number, by the rules of the 32-bit form.
    virtual std::int64_t GetFromCache(char const* section, char const* key, std::int64_t defaultValue) = 0;

    /// True if a line behind the section's header begins with `key`; longer keys and later sections count.
    virtual bool IsContainKey(char const* section, char const* key) = 0;

protected:
    IConfigFile() = default;
    /// For derived classes.
    IConfigFile(IConfigFile const&) = default;
    /// For derived classes.
    IConfigFile& operator=(IConfigFile const&) = default;
};

}  // namespace Velmor
