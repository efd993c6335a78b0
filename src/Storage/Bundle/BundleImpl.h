// The implementation of bundles.
#pragma once

#include <VelmorCore/Bundle.h>

#include <memory>

#include "Storage/Bundle/IniBundle.h"

namespace Ubrix {

// A read asks the file first, then the platform's metadata, where a section that bears the game's id is
// called "VelmorGame", and ends at the caller's default. No lock of its own: the file has one.
class BundleImpl : public Bundle {
public:
    // On "Velmor.config" in the cache directory.
    BundleImpl();
    // On the file at `path`. An empty path gives a bundle that stores nothing.
    explicit BundleImpl(char const* path);
    // Stores nothing.
    explicit BundleImpl(IniBundle::WithoutFile without);
    // Saves the file.
    ~BundleImpl() override;

    bool Set(char const* section, Value const& values) override;
    bool Set(Value const& sections) override;
    bool Set(char const* key, bool value) override;
    bool Set(char const* key, char const* value) override;
    bool Set(char const* key, long long value) override;
    bool Set(char const* key, int value) override;
    bool Set(char const* section, char const* key, bool value) override;
    bool Set(char const* section, char const* key, char const* value) override;
    bool Set(char const* section, char const* key, long long value) override;
    bool Set(char const* section, char const* key, int value) override;

    bool Get(char const* section, char const* key, Value& value) override;
    bool Get(char const* section, Value& values) override;
    bool Get(char const* key, bool defaultValue) override;
    AString Get(char const* key, char const* defaultValue) override;
    int Get(char const* key, int defaultValue) override;
    long long Get(char const* key, long long defaultValue) override;
    bool Get(char const* section, char const* key, bool defaultValue) override;
    AString Get(char const* section, char const* key, char const* defaultValue) override;
    int Get(char const* section, char const* key, int defaultValue) override;
    long long Get(char const* section, char const* key, long long defaultValue) override;

    bool RemoveSection(char const* section) override;
    bool RemoveKey(char const* section, char const* key) override;
    void GetKeys(char const* section, AArray* keys) override;
    bool HasKey(char const* section, char const* key) override;
    bool Clear() override;
    bool Save() override;
    bool SetNoSave(char const* section, char const* key, bool value) override;
    bool SetNoSave(char const* section, char const* key, char const* value) override;
    bool SetNoSave(char const* section, char const* key, long long value) override;
    bool SetNoSave(char const* section, char const* key, int value) override;
    bool RemoveSectionNoSave(char const* section) override;
    bool ClearNoSave() override;
    bool RemoveKeyNoSave(char const* section, char const* key) override;

    // Puts `lines` in place of the whole content, and saves; what was there comes back in `lines`.
    void Replace(IniLines& lines);
    // Whether there is content that couldn't be read yet.
    bool IsUnread() { return _ini->IsUnread(); }

private:
    std::unique_ptr<IniBundle> _ini;
};

}  // namespace Ubrix
