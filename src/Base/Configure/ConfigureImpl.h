// The remote configuration: fetch, cache, reads, refresh.
// Sources: ConfigureImpl.cpp, ConfigureService.cpp, FetchEnd.cpp
#pragma once

#include <VelmorCore/Bundle.h>
#include <VelmorCore/Configure.h>
#include <VelmorCore/Http.h>
#include <VelmorCore/Network.h>
#include <VelmorCore/Timer.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "Base/Configure/ConfigAnswer.h"
#include "Base/Configure/ConfigureObservers.h"
#include "Base/Configure/FetchSchedule.h"
#include "Platform/Mutex.h"
#include "Storage/Bundle/BundleImpl.h"

namespace Velmor {

// The configuration's state between its first use and its release; the object that callers have
// forwards to it. Thread-safe. Callers' threads, timer threads, the network's fan-out and the transfer's
// worker come here, and each shares it for as long as it works on it. Once it is shut it does nothing more
// and answers with defaults.
//
// Locks: the holder's comes before `_lock` (the state), and `_lock` before the locks of bundle, parameters,
// timers and task. Never held: `_lock` while observers run, while the network's observer list changes, or
// while a listener is withdrawn, since each of these may wait for a thread that wants `_lock`.
class ConfigureImpl : public Configure,
                      public Ubrix::DataTask::Listener,
                      public std::enable_shared_from_this<ConfigureImpl> {
public:
    enum State { kUninitialized = 0, kReady = 1, kRequesting = 2, kFinished = 3, kFailed = 4 };

    // The present one, made at first use with its cache open.
    static std::shared_ptr<ConfigureImpl> Instance();
    static void ReleaseInstance();

    // For the holder alone.
    ConfigureImpl();
    virtual ~ConfigureImpl() = default;

    // True once it was released.
    bool IsShut() const { return _isShut; }

    void Start() override;
    int GetInt(char const* section, char const* key, int defaultValue) override;
    std::int64_t GetLong(char const* section, char const* key, std::int64_t defaultValue) override;
    double GetDouble(char const* section, char const* key, double defaultValue) override;
    bool GetBool(char const* section, char const* key, bool defaultValue) override;
    AString GetString(char const* section, char const* key, char const* defaultValue) override;
    void AddObserver(char const* module, ConfigureObserver* observer) override;
    void RemoveObserver(char const* module) override;
    void StartOnce() override;
    void SetUrl(char const* url) override;
    void Clear() override;

    void OnNetworkStateChanged(Ubrix::ANetworkState state);
    void OnDataTaskFinished(Ubrix::DataTask* task, int errorCode, int httpStatus, char const* data,
                            std::uint64_t length) override;

    // The state, for tests and log lines.
    State CurrentState();

private:
    struct Outcome;

    // The end, in two steps: nothing begins any more, and the file is the successor's; then the transfer
    // goes.
    void Shut();
    void EndTask();
    static void HearNetwork();
    static void StopHearingNetwork();
    void Retry();
    void Refresh(unsigned int timer);

    bool Initialize();
    void LoadStoredUrl() VC_REQUIRES(_lock);
    static void StoreHostUrl(char const* url);
    void Request() VC_REQUIRES(_lock);
    void Transmit(std::string const& url) VC_REQUIRES(_lock);
    void StartRetry() VC_REQUIRES(_lock);
    void StartRetryTimer(unsigned long long milliseconds) VC_REQUIRES(_lock);
    void StartNextTimer() VC_REQUIRES(_lock);
    // Starts the refresh timer anew if it runs by another gap than the cache has now.
    void TakeNewGap() VC_REQUIRES(_lock);
    FetchSchedule ReadSchedule() VC_REQUIRES(_lock);
    void StopTimer(Ubrix::CTimer& timer, unsigned int& id) VC_REQUIRES(_lock);
    // Empties the cache in memory only; the caller saves.
    void ForgetCache() VC_REQUIRES(_lock);

    std::string RequestUrl(Ubrix::DataTask* task);
    // How a fetch ended.
    enum class Ending { Ignored, Failed, Answered };
    void EndAndTell(Outcome const& outcome, char const* body);
    Ending End(Outcome const& outcome, char const* body, ConfigAnswer& answer);
    Ending TakeAnswer(Outcome const& outcome, char const* body, ConfigAnswer& answer);
    Ending TakeFailure(Outcome const& outcome);
    bool DropIfIgnored(Outcome const& outcome) VC_REQUIRES(_lock);
    void StartWhatWaits(Ending ending);
    unsigned long long CostMilliseconds() const VC_REQUIRES(_lock);
    bool Store(ConfigAnswer& answer) VC_REQUIRES(_lock);
    void Report(Outcome const& outcome) VC_REQUIRES(_lock);

    static void OnNextTimer(unsigned int id, void* userData);
    static void OnRetryTimer(unsigned int id, void* userData);

    // Goes to true once, with the lock held.
    std::atomic<bool> _isShut{false};
    Ubrix::Platform::RecursiveMutex _lock;
    Ubrix::CTimer _nextTimer;
    unsigned int _nextTimerId VC_GUARDED_BY(_lock) = 0;
    // By which the refresh timer runs.
    FetchSchedule _nextSchedule VC_GUARDED_BY(_lock);
    Ubrix::CTimer _retryTimer;
    unsigned int _retryTimerId VC_GUARDED_BY(_lock) = 0;
    std::string _openId VC_GUARDED_BY(_lock);
    std::string _channel VC_GUARDED_BY(_lock);
    std::string _url VC_GUARDED_BY(_lock);
    // The highest rule id that the server gave in this run.
    int _ruleId VC_GUARDED_BY(_lock) = 0;
    State _state VC_GUARDED_BY(_lock) = kUninitialized;
    Ubrix::DataTask* _task VC_GUARDED_BY(_lock) = nullptr;
    std::unique_ptr<Ubrix::BundleImpl> _cache VC_GUARDED_BY(_lock);
    int _maxRetryCount VC_GUARDED_BY(_lock) = 0;
    int _retryCount VC_GUARDED_BY(_lock) = 0;
    // Monotonic milliseconds when the last request started.
    long long _requestStart VC_GUARDED_BY(_lock) = 0;
    // The answer under way is to be thrown away.
    bool _ignoreResult VC_GUARDED_BY(_lock) = false;
    // The task refused a request while it was ending its last one; that request's end starts it.
    bool _requestWhenIdle VC_GUARDED_BY(_lock) = false;
};

}  // namespace Velmor
