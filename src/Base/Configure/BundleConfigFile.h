// A config file on a bundle.
#pragma once

#include <VelmorCore/Bundle.h>
#include <VelmorCore/ConfigFile.h>

#include "Storage/Bundle/BundleHold.h"

namespace Velmor {

// Each call is as thread-safe as the bundle that it goes to.
class BundleConfigFile : public IConfigFile {
public:
    // `name` null or "Velmor": the kit's own configuration. Else "<name>.config" in the cache directory; a
    // name that CanNameConfigFile refuses, and a cache directory that is missing, leave the object without
    // storage.
    explicit BundleConfigFile(char const* name);
    // Saves the file, but for the kit's own. It is closed with the last object on it.
    ~BundleConfigFile() override = default;
    BundleConfigFile(BundleConfigFile const&) = delete;
    BundleConfigFile& operator=(BundleConfigFile const&) = delete;

    bool SetCache(char const* section, char const* key, bool value) override;
    bool SetCache(char const* section, char const* key, char const* value) override;
    bool SetCache(char const* section, char const* key, std::int64_t value) override;
    bool SetCache(char const* section, char const* key, int value) override;
    bool RemoveValueForKey(char const* section, char const* key) override;
    bool RemoveSection(char const* section) override;
    bool RemoveAll() override;
    bool SaveCacheToFile() override;
    bool SetAndSave(char const* section, char const* key, bool value) override;
    bool SetAndSave(char const* section, char const* key, char const* value) override;
    bool SetAndSave(char const* section, char const* key, std::int64_t value) override;
    bool SetAndSave(char const* section, char const* key, int value) override;
    bool RemoveValueForKeyAndSave(char const* section, char const* key) override;
    bool RemoveSectionAndSave(char const* section) override;
    bool RemoveAllAndSave() override;
    bool GetFromCache(char const* section, char const* key, bool defaultValue) override;
    bool GetFromCache(char const* section, char const* key, char* value, int* size,
                      char const* defaultValue) override;
    int GetFromCache(char const* section, char const* key, int defaultValue) override;
    std::int64_t GetFromCache(char const* section, char const* key, std::int64_t defaultValue) override;
    bool IsContainKey(char const* section, char const* key) override;

private:
    // What is done without a bundle, or without memory, answers `neutral`.
    template <class Result, class Call>
    Result Forward(char const* function, Result neutral, Call const& call);

    // The storage; null without one.
    Ubrix::Bundle* _bundle = nullptr;
    // Keeps it, unless it is the kit's own.
    Ubrix::BundleHold _hold;
};

}  // namespace Velmor
