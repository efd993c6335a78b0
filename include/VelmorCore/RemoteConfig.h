/// @file
/// What one module sees of the remote configuration.
#pragma once

#include <VelmorCore/Configure.h>
#include <VelmorCore/Export.h>

#include <cstdint>

namespace Velmor {

class IRemoteConfig;

/// Hears which keys of a module came in with a fetch.
class RemoteConfigObserver {
public:
    /// Called when a fetch brought keys of the module, on the thread of the transfer, with no lock held.
    /// `keys` is valid during the call only. It must be short: the next fetch waits for it.
    virtual void OnRemoteConfigRefreshed(IRemoteConfig* config, IStringIterator* keys) = 0;

protected:
    RemoteConfigObserver() = default;
    ~RemoteConfigObserver() = default;
    /// For derived classes.
    RemoteConfigObserver(RemoteConfigObserver const&) = default;
    /// For derived classes.
    RemoteConfigObserver& operator=(RemoteConfigObserver const&) = default;
};

/// Typed reads of one module's section, observers for it, the user's identity for the next fetch, and a fetch
/// on demand. Thread-safe. A null key gives the default and an Error line.
class VELMORCORE_API IRemoteConfig {
public:
    /// Withdraws nothing by itself; see RemoteConfig.
    virtual ~IRemoteConfig();
    /// Reads a 32-bit number, as Configure::GetInt.
    virtual int GetInt(char const* key, int defaultValue) = 0;
    /// Reads a 64-bit number, as Configure::GetLong.
    virtual std::int64_t GetLong(char const* key, std::int64_t defaultValue) = 0;
    /// Reads a real, as Configure::GetDouble.
    virtual double GetDouble(char const* key, double defaultValue) = 0;
    /// Reads a bool, as Configure::GetBool.
    virtual bool GetBool(char const* key, bool defaultValue) = 0;
    /// Copies a text and its terminator. `*size`: the room in `value` in bytes; on success the text's
    /// length, the terminator not counted. A text that doesn't fit with its terminator, or a bad argument,
    /// gives false and leaves both as they were.
    virtual bool GetString(char const* key, char* value, int* size, char const* defaultValue) = 0;
    /// Registers an observer for this module. A second addition of the same observer changes nothing. The
    /// configuration notifies one observer a module: of several, over all views, the first. The registration
    /// lasts until it is taken back, over a release too. The caller owns the observer.
    virtual void AddObserver(RemoteConfigObserver* observer) = 0;
    /// Takes this registration back, and no other one: the module's next observer is notified from now on.
    /// After the call no notification of this observer begins; one that runs on another thread is waited for.
    virtual void RemoveObserver(RemoteConfigObserver* observer) = 0;
    /// Stores who the user is, for the next fetch and for later runs. Starts no fetch. An open id that begins
    /// with "#", holds a byte below 0x20 or has over 1,024 bytes is refused: an Error line, and both ids stay
    /// as they were. Of one that holds a "#" further on, or blanks at its ends, a later run sees what
    /// docs/ini-file.md tells.
    virtual void SetUserInfo(int channelId, char const* openId) = 0;
    /// Fetches now, unless a fetch is under way.
    virtual void Fetch() = 0;
    /// Does nothing; it keeps its place.
    virtual void Reserved1(void* a, void* b) = 0;
    /// Does nothing; it keeps its place.
    virtual void Reserved2(void* a, void* b) = 0;
};

/// The view of the module that it is made for. The maker owns it, and may keep it over a release; its
/// destructor withdraws its own observers. Made without memory, it answers with defaults and takes no
/// observer.
class VELMORCORE_API RemoteConfig : public IRemoteConfig {
public:
    /// Makes a view of the section `module`; null is the empty name. The text is copied. Opens no file and
    /// fetches nothing.
    explicit RemoteConfig(char const* module);
    ~RemoteConfig() override;
    RemoteConfig(RemoteConfig const&) = delete;
    RemoteConfig& operator=(RemoteConfig const&) = delete;

    int GetInt(char const* key, int defaultValue) override;
    std::int64_t GetLong(char const* key, std::int64_t defaultValue) override;
    double GetDouble(char const* key, double defaultValue) override;
    bool GetBool(char const* key, bool defaultValue) override;
    bool GetString(char const* key, char* value, int* size, char const* defaultValue) override;
    void AddObserver(RemoteConfigObserver* observer) override;
    void RemoveObserver(RemoteConfigObserver* observer) override;
    void SetUserInfo(int channelId, char const* openId) override;
    void Fetch() override;
    void Reserved1(void* a, void* b) override;
    void Reserved2(void* a, void* b) override;

private:
    struct Body;
    // Null if there was no memory for it.
    Body* _body;
};

}  // namespace Velmor
