/// @file
/// The device: who it is, and what it is.
#pragma once

#include <VelmorCore/Export.h>

namespace Ubrix {

/// Static operations; all may be called on any thread. Texts are the library's own and stay valid until the
/// process ends.
class VELMORCORE_API CSystem {
public:
    CSystem() = default;
    ~CSystem() = default;

    /// The device's model: "Windows".
    static char const* GetModel();
    /// The device's brand: "Windows".
    static char const* GetDeviceBrand();
    /// The system's version: "Unknown".
    static char const* GetSysVersion();
    /// The application's version: "N".
    static char const* GetAppVersion();
    /// The application's bundle id: "Sarnet".
    static char const* GetBundleId();
    /// False: it isn't looked for.
    static bool IsDeviceRooted();
    /// False: it isn't looked for.
    static bool IsFirstLaunch();
    /// Free bytes: 1073741824, not measured.
    static long long GetFreeDiskSpace();

    /// Deprecated: -1 and a warning in the log, whatever the argument.
    static int CheckPermission(int permission);

    /// The device id: the text under "Udid" in section "System" of config.ini in the documents directory, or,
    /// if there is none, a new identifier, which is stored there. A new one is a random GUID (RFC 4122,
    /// version 4) of 36 characters in upper case, as "0A1B2C3D-4E5F-4071-8293-A4B5C6D7E8F9". If it can't be
    /// stored, it stands for this process only. The file is read once. Null if memory runs out, or if the
    /// system has no randomness to make an identifier from; the next call tries again.
    static char const* GetUdid();
};

}  // namespace Ubrix
