/// @file
/// The remote configuration: fetched from a server, cached enciphered on the device, read by section and key.
#pragma once

#include <VelmorCore/Export.h>
#include <VelmorCore/Object.h>

#include <cstdint>

namespace Velmor {

using Ubrix::AString;

/// A walk over texts. It belongs to its maker, and is valid during the call that hands it over only. One
/// thread at a time.
class IStringIterator {
public:
    /// The next text, valid as long as the iterator, or null at the end.
    virtual char const* Next() = 0;
    /// True if no text is left.
    virtual bool IsEnd() = 0;

protected:
    IStringIterator() = default;
    ~IStringIterator() = default;
    /// For derived classes.
    IStringIterator(IStringIterator const&) = default;
    /// For derived classes.
    IStringIterator& operator=(IStringIterator const&) = default;
};

/// Hears which keys of one module came in with a fetch.
class ConfigureObserver {
public:
    /// `keys`: the names of the module's keys, in byte order. Runs on the thread of the transfer, with no
    /// lock of the configuration held. It must be short: the next fetch waits for it.
    virtual void OnConfigureRefreshed(IStringIterator* keys) = 0;

protected:
    ConfigureObserver() = default;
    ~ConfigureObserver() = default;
    /// For derived classes.
    ConfigureObserver(ConfigureObserver const&) = default;
    /// For derived classes.
    ConfigureObserver& operator=(ConfigureObserver const&) = default;
};

/// The configuration. Thread-safe. Reads answer from the cache at any time, also from that of an earlier run,
/// and with the default for an absent key; a read during a store waits, and never sees half of a fetch. No
/// argument may be null unless a comment says so.
///
/// A transfer that fails is repeated after 10 seconds, "RemoteConfigMaxRetryCount" times at most (section
/// "VelmorCore", 3 by default, never more than 10), and then once the network returns; a bad answer isn't.
/// Both are logged and leave the cache as it was, and nobody is told. An answer that costs too much (32 MiB,
/// 200,000 values, or more memory than there is) is a bad one. With "RemoteConfigRetryJitter" and
/// "RemoteConfigGapJitter" of the same section, in seconds and 0 by default, the server has each of its
/// clients lengthen each delay by a random share of that time.
class VELMORCORE_API Configure {
public:
    /// Fetches now, and again every "RemoteConfigNextGap" seconds (section "VelmorCore", 86,400 by default,
    /// at least 60). Nothing in the library calls it: a host that wants refreshes does, once for each core.
    virtual void Start() = 0;
    /// Reads a 32-bit number: the decimal number at the text's beginning, 0 without one, the bound if it is
    /// out of range.
    virtual int GetInt(char const* section, char const* key, int defaultValue) = 0;
    /// Reads a 64-bit number, by the rules of the 32-bit form.
    virtual std::int64_t GetLong(char const* section, char const* key, std::int64_t defaultValue) = 0;
    /// Reads a real, whatever the locale; the default also for a text that is no number.
    virtual double GetDouble(char const* section, char const* key, double defaultValue) = 0;
    /// Reads a bool: true for the text "TRUE" in any case and for "1", the default for an empty text, false
    /// for every other.
    virtual bool GetBool(char const* section, char const* key, bool defaultValue) = 0;
    /// Reads a text. One of the server's that looks like a number comes back as that number is printed:
    /// "007" as "7", "1.10" as "1.100000".
    virtual AString GetString(char const* section, char const* key, char const* defaultValue) = 0;
    /// Registers an observer for a module. One a module: the first stays, until it is removed or the core
    /// released, which forgets it. The caller owns it and removes it before it dies. A null argument is
    /// ignored.
    virtual void AddObserver(char const* module, ConfigureObserver* observer) = 0;
    /// Takes out the module's observer, which may die after the call: no notification of it begins, and one
    /// that runs on another thread is waited for. From inside a notification the call returns at once.
    virtual void RemoveObserver(char const* module) = 0;
    /// Fetches now, unless a fetch is under way. Without a URL nothing happens but a log line.
    virtual void StartOnce() = 0;
    /// Sets the server's base URL, without its path, and fetches. Another URL than before, in this run or an
    /// earlier one, empties the cache first, and the answer to a fetch under way is thrown away. Null is
    /// ignored. The URL is kept for later runs, where no answer of a server can change it.
    virtual void SetUrl(char const* url) = 0;
    /// Forgets the URL and empties the cache; the answer to a fetch under way is thrown away.
    virtual void Clear() = 0;

    /// The instance, whose cache is open when this returns. The object is the same each time and stays valid:
    /// it may be kept and used before, during and after a release, which ends fetches, timers and
    /// AddObserver's registrations. A call that a release overtakes answers with what stands afterwards, or
    /// with the default.
    static Configure* GetInstance();

    Configure(Configure const&) = delete;
    Configure& operator=(Configure const&) = delete;

protected:
    Configure() = default;
    ~Configure() = default;
};

}  // namespace Velmor
