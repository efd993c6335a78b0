// A bundle's file: typed keys on an enciphered INI file.
#pragma once

#include <VelmorCore/Object.h>

#include <memory>

#include "Storage/File/IniFile.h"

namespace Ubrix {

class IniLines;
class Value;

// The forms for a `Value`, and those without a section, have no effect here: BundleImpl reduces them to the
// others. Thread-safe as the file is; a Set is two steps on it, the change and the save.
//
// Without a file (an empty path) nothing is stored and every Get answers its default, not found.
class IniBundle final {
public:
    // On "Velmor.config" in the cache directory.
    IniBundle();
    explicit IniBundle(char const* path);
    // On no file.
    struct WithoutFile {};
    explicit IniBundle(WithoutFile /*without*/) {}
    // Saves the file. Deleted as exactly this class.
    ~IniBundle() = default;
    IniBundle(IniBundle const&) = delete;
    IniBundle& operator=(IniBundle const&) = delete;

    virtual bool Set(char const* section, Value const& values);
    virtual bool Set(Value const& sections);
    virtual bool Set(char const* key, bool value);
    virtual bool Set(char const* key, char const* value);
    virtual bool Set(char const* key, long long value);
    virtual bool Set(char const* key, int value);

    virtual bool Set(char const* section, char const* key, bool value);
    virtual bool Set(char const* section, char const* key, char const* value);
    virtual bool Set(char const* section, char const* key, int value);
    virtual bool Set(char const* section, char const* key, long long value);

    virtual bool Get(char const* section, char const* key, Value& value);
    virtual bool Get(char const* section, Value& values);
    virtual bool Get(char const* key, bool defaultValue);
    virtual AString Get(char const* key, char const* defaultValue);
    virtual int Get(char const* key, int defaultValue);
    virtual long long Get(char const* key, long long defaultValue);

    // `found` tells whether the key is in the file.
    virtual bool Get(char const* section, char const* key, bool defaultValue, bool* found);
    virtual AString Get(char const* section, char const* key, char const* defaultValue, bool* found);
    virtual int Get(char const* section, char const* key, int defaultValue, bool* found);
    virtual long long Get(char const* section, char const* key, long long defaultValue, bool* found);

    virtual bool RemoveSection(char const* section);
    // True without a file.
    virtual bool RemoveKey(char const* section, char const* key);
    virtual void GetKeys(char const* section, AArray* keys);
    virtual bool HasKey(char const* section, char const* key);
    virtual bool Clear();
    virtual bool Load();
    virtual bool Save();

    virtual bool SetNoSave(char const* section, char const* key, bool value);
    virtual bool SetNoSave(char const* section, char const* key, char const* value);
    virtual bool SetNoSave(char const* section, char const* key, long long value);
    virtual bool SetNoSave(char const* section, char const* key, int value);
    virtual bool RemoveSectionNoSave(char const* section);
    virtual bool RemoveKeyNoSave(char const* section, char const* key);
    virtual bool ClearNoSave();
    // Exchanges the content in memory with `lines`, if there is a file.
    void Swap(IniLines& lines);
    // Whether the file has content that couldn't be read yet.
    bool IsUnread();

private:
    void Open(char const* path);
    // `changed`, once that is on the disk.
    bool SaveIf(bool changed);

    std::unique_ptr<IniFile> _file;
};

}  // namespace Ubrix
