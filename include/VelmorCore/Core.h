/// @file
/// The core object, and the start of the library.
#pragma once

#include <VelmorCore/Export.h>

namespace Ubrix {

/// The core. Callers make it at the first use and release it at the end. Any thread may call any operation
/// here at any time, from within any callback too: before, during and after a release.
class VELMORCORE_API IVelmorCore {
public:
    virtual ~IVelmorCore();
    /// Does nothing and returns 0. May be called any number of times.
    virtual int Initialize() = 0;
    /// Sets the log level: 0 Debug, 1 Info, 2 Warning, 3 Event, 4 Error, 5 None.
    virtual void SetLogLevel(int level) = 0;
    /// The version, as "1.3.01.2706". The text is static.
    virtual char const* GetVersion() = 0;
    /// Sets the base URL of the remote configuration, without its path, and fetches. Null is ignored.
    virtual void SetRemoteConfigUrl(char const* url) = 0;
    /// Forgets the URL and everything fetched.
    virtual void ClearRemoteConfigCache() = 0;

    /// The core, made at the first call and again after a release. The library owns it. The object is the
    /// same each time and stays valid: one that was kept over a release works as ever, without making the
    /// core anew.
    static IVelmorCore& GetInstance();
};

/// The core's implementation; as IVelmorCore, with the release.
class VELMORCORE_API CVelmorCore : public IVelmorCore {
public:
    /// Does nothing and returns 0.
    int Initialize() override;
    /// Sets the log level, as SetUbrixLogLevel.
    void SetLogLevel(int level) override;
    char const* GetVersion() override;
    void SetRemoteConfigUrl(char const* url) override;
    void ClearRemoteConfigCache() override;

    /// Gives the core, as IVelmorCore::GetInstance.
    static CVelmorCore& GetInstance();
    /// Ends the core and with it all services, in their order, on the calling thread; without a core it does
    /// nothing, and neither while it is under way, from inside it or on another thread. Work queued for the
    /// game's thread is dropped. No transfer is waited for. A service that is used meanwhile is made anew,
    /// and goes with the next core that is released.
    static void ReleaseInstance();

    CVelmorCore(CVelmorCore const&) = delete;
    CVelmorCore& operator=(CVelmorCore const&) = delete;

private:
    CVelmorCore() = default;
    ~CVelmorCore() override = default;
};

/// Starts what stands for as long as the process runs: the kit's name, the logger with the configuration's
/// cache, and one sweep of old log files on a thread of its own. The library makes one while it is loaded,
/// named "Velmor". A further one overwrites the name and sweeps once more.
class VELMORCORE_API UbrixInitializer {
public:
    /// Names the kit "Velmor".
    UbrixInitializer();
    /// Copies `name`; null gives an empty name.
    explicit UbrixInitializer(char const* name);
};

}  // namespace Ubrix
