// The values that a platform attaches to the application package: a manifest, a property list.
//
// This platform has none, so that each question is answered with its default. One that has them answers here;
// no caller changes.
#pragma once

#include <VelmorCore/Object.h>

namespace Ubrix {

// Read-only. Every operation may be called on any thread.
class PlatformMetadata {
public:
    PlatformMetadata() = delete;

    static bool Get(char const* section, char const* key, bool defaultValue);
    // A null default gives an empty text.
    static AString Get(char const* section, char const* key, char const* defaultValue);
    static int Get(char const* section, char const* key, int defaultValue);
    static long long Get(char const* section, char const* key, long long defaultValue);
    static void GetKeys(char const* section, AArray* keys);
    static bool HasKey(char const* section, char const* key);
};

// The kit's parameters that the application package can give. Each is looked up there, without blanks at its
// ends, as long as the parameter is empty.
AString GameId();
AString TransceiverUrl();

}  // namespace Ubrix
