// Reads the library's own switches from a provider, if one is set.
#pragma once

#include <VelmorCore/RemoteConfig.h>

namespace Ubrix {

// Holds an optional provider that it doesn't own. Without one, and nothing in the library sets one, every key
// has its default. Thread-safe; a provider stays alive as long as anybody may read through it.
class CoreConfigReader {
public:
    CoreConfigReader() = delete;

    static void SetProvider(Velmor::IRemoteConfig* provider);
    static int GetInt(char const* key, int defaultValue);
    static bool GetBool(char const* key, bool defaultValue);
};

}  // namespace Ubrix
