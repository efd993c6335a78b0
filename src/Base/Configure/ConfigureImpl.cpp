#include "Base/Configure/ConfigureImpl.h"

#include <VelmorCore/File.h>

#include "Base/Configure/ConfigRequest.h"
#include "Base/Configure/KitParameters.h"
#include "Base/Container/Number/RealText.h"
#include "Base/Ubrix/ConfigurationKeys.h"
#include "Platform/Random.h"
#include "Storage/Bundle/BundleImpl.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"
#include "System/Time/ClockSource.h"
#include "System/WWW/Task/DataTaskImpl.h"

namespace Velmor {

namespace Key = Ubrix::ConfigurationKey;
using Ubrix::BundleFactory;
using Ubrix::ForeignText;
using Ubrix::Platform::ScopedLock;

namespace {

constexpr char kCacheFile[] = "RemoteConfig.config";
// For a request that couldn't be started.
constexpr unsigned long long kBusyMilliseconds = 1000;

// 0 without a source of randomness: a delay is then as long as all others.
std::uint32_t RandomShare() {
    std::uint32_t share = 0;
    return Ubrix::Platform::RandomBytes(&share, sizeof share) ? share : 0;
}

}  // namespace

// Under the holder's lock: whoever asks meanwhile waits, and finds the cache open.
ConfigureImpl::ConfigureImpl() {
    char const* directory = Ubrix::CPath::GetCachePath();
    if (AString::IsNullOrEmpty(directory)) {
        VC_LOG_CONSOLE(Error, "Velmor::ConfigureImpl::ConfigureImpl",
                       "CachePath is empty, do not use bundle in JNI_ONLoad!!!");
        directory = "";
    }
    AString path;
    if (*directory != '\0') {
        Ubrix::CPath::GetSubPath(path, directory, kCacheFile);
    }
    ScopedLock lock(_lock);
    // Without a directory the bundle has no file, and answers with defaults.
    _cache = std::make_unique<Ubrix::BundleImpl>(path.c_str());
}

void ConfigureImpl::Shut() {
    ScopedLock lock(_lock);
    _isShut = true;
    StopTimer(_nextTimer, _nextTimerId);
    StopTimer(_retryTimer, _retryTimerId);
    _cache.reset();
    ConfigureObservers::GetInstance().ForgetHosts();
}

void ConfigureImpl::EndTask() {
    Ubrix::DataTask* task = nullptr;
    {
        ScopedLock lock(_lock);
        task = _task;
        _task = nullptr;
    }
    if (task != nullptr) {
        // Waits for a callback that is running, which may want the lock; never for the network.
        task->RemoveListener(this);
        task->Cancel();
        Ubrix::WWW::Destroy(task);
    }
}

ConfigureImpl::State ConfigureImpl::CurrentState() {
    ScopedLock lock(_lock);
    return _state;
}

int ConfigureImpl::GetInt(char const* section, char const* key, int defaultValue) {
    ScopedLock lock(_lock);
    return _cache != nullptr ? _cache->Get(section, key, defaultValue) : defaultValue;
}

std::int64_t ConfigureImpl::GetLong(char const* section, char const* key, std::int64_t defaultValue) {
    ScopedLock lock(_lock);
    return _cache != nullptr ? _cache->Get(section, key, static_cast<long long>(defaultValue)) : defaultValue;
}

double ConfigureImpl::GetDouble(char const* section, char const* key, double defaultValue) {
    AString const text = GetString(section, key, "");
    double value = defaultValue;
    Ubrix::ReadReal(text.c_str(), value);
    return value;
}

bool ConfigureImpl::GetBool(char const* section, char const* key, bool defaultValue) {
    ScopedLock lock(_lock);
    return _cache != nullptr ? _cache->Get(section, key, defaultValue) : defaultValue;
}

AString ConfigureImpl::GetString(char const* section, char const* key, char const* defaultValue) {
    ScopedLock lock(_lock);
    return _cache != nullptr ? _cache->Get(section, key, defaultValue) : AString(defaultValue);
}

void ConfigureImpl::AddObserver(char const* module, ConfigureObserver* observer) {
    if (module != nullptr && observer != nullptr) {
        ConfigureObservers::GetInstance().Add(module, observer);
    }
}

void ConfigureImpl::RemoveObserver(char const* module) {
    if (module != nullptr) {
        ConfigureObservers::GetInstance().Remove(module);
    }
}

void ConfigureImpl::StopTimer(Ubrix::CTimer& timer, unsigned int& id) {
    if (id != 0) {
        timer.StopTimer(id);
        id = 0;
    }
}

void ConfigureImpl::Start() {
    {
        ScopedLock lock(_lock);
        StopTimer(_nextTimer, _nextTimerId);
    }
    StartOnce();
    ScopedLock lock(_lock);
    StartNextTimer();
}

// The old one goes once there is the new one: where there is no memory for it, refreshes go on as before.
void ConfigureImpl::StartNextTimer() {
    if (_isShut) {
        return;
    }
    FetchSchedule const schedule = ReadSchedule();
    unsigned int const id =
        _nextTimer.StartTimer(schedule.GapMilliseconds(RandomShare()), true, OnNextTimer, this);
    StopTimer(_nextTimer, _nextTimerId);
    _nextTimerId = id;
    _nextSchedule = schedule;
}

void ConfigureImpl::Refresh(unsigned int timer) {
    {
        ScopedLock lock(_lock);
        // Each gap has a random share of its own.
        if (_nextTimerId == timer && _nextSchedule.gapJitter > 0) {
            StartNextTimer();
        }
    }
    StartOnce();
}

void ConfigureImpl::TakeNewGap() {
    FetchSchedule const schedule = ReadSchedule();
    bool const isNew = schedule.gap != _nextSchedule.gap || schedule.gapJitter != _nextSchedule.gapJitter;
    if (_nextTimerId != 0 && isNew) {
        StartNextTimer();
    }
}

FetchSchedule ConfigureImpl::ReadSchedule() {
    return FetchSchedule::From(
        [this](char const* key, long long otherwise) { return GetLong(Key::kSection, key, otherwise); });
}

void ConfigureImpl::StartOnce() {
    bool const first = Initialize();
    if (first) {
        HearNetwork();
    }
    ScopedLock lock(_lock);
    if (_isShut) {
        return;
    }
    if (_url.empty()) {
        VC_LOG(Warning, "Velmor::ConfigureImpl::StartOnce",
               "Configure will not request remote config because of empty url!");
        return;
    }
    _maxRetryCount = ReadSchedule().retries;
    _retryCount = _maxRetryCount;
    Request();
}

// True for the call that initialised.
bool ConfigureImpl::Initialize() {
    ScopedLock lock(_lock);
    if (_state != kUninitialized || _isShut) {
        return false;
    }
    _ruleId = 0;
    LoadStoredUrl();
    _channel = ChannelId().c_str();
    _openId = OpenId().c_str();
    _state = kReady;
    return true;
}

// Before the first fetch the URL of an earlier run counts as the present one: a game that sets the same URL
// at each start keeps its cache. The one that the host set goes before what the cache tells, since a server
// may have changed that.
void ConfigureImpl::LoadStoredUrl() {
    if (_state == kUninitialized && _url.empty()) {
        _url = BundleFactory::GetInstance().GetDefaultBundle().Get(Key::kSection, Key::kHostUrl, "").c_str();
    }
    if (_state == kUninitialized && _url.empty()) {
        _url = GetString(Key::kSection, Key::kUrl, "").c_str();
    }
}

void ConfigureImpl::StoreHostUrl(char const* url) {
    Ubrix::Bundle& bundle = BundleFactory::GetInstance().GetDefaultBundle();
    if (*url == '\0') {
        bundle.RemoveKey(Key::kSection, Key::kHostUrl);
    } else if (bundle.Get(Key::kSection, Key::kHostUrl, "") != AString(url)) {
        bundle.Set(Key::kSection, Key::kHostUrl, url);
    }
}

void ConfigureImpl::Request() {
    constexpr char kFunction[] = "Velmor::ConfigureImpl::_Request";
    if (_state == kRequesting) {
        VC_LOG(Info, kFunction, "RemoteConfig state == kRequesting");
        return;
    }
    _requestWhenIdle = false;
    if (_url.empty() || _isShut) {
        // Cleared, or released, while a retry was due.
        return;
    }
    _channel = ChannelId().c_str();
    _openId = OpenId().c_str();
    VC_LOG(Info, kFunction, "Request config, channel: %s, openID: %s,  ruleID: %d",
           ForeignText(_channel).c_str(), ForeignText(_openId).c_str(), _ruleId);
    AString const parameters = RequestText();
    VC_LOG(Info, kFunction, "comParams: %s", ForeignText(parameters.c_str()).c_str());
    Transmit(ComposeConfigUrl(_url, parameters.c_str(), Ubrix::ClockSource::Current().EpochSeconds()));
}

void ConfigureImpl::Transmit(std::string const& url) {
    constexpr char kFunction[] = "Velmor::ConfigureImpl::_Request";
    if (_task == nullptr) {
        // With its listener from the start: setting it waits for a listener that runs.
        _task = new Ubrix::DataTaskImpl(url.c_str(), this);
    }
    _task->SetUrl(url.c_str());
    VC_LOG(Info, kFunction, "RemoteConfig url:%s, maxRetryCount %d, retryCount %d", ForeignText(_url).c_str(),
           _maxRetryCount, _retryCount);
    _requestStart = Ubrix::ClockSource::Current().MonotonicMilliseconds();
    bool const isStarted = Ubrix::DataTaskImpl::TryGet(_task);
    // Behind all that may fail: only an answer ends this state.
    _state = isStarted ? kRequesting : kFailed;
    StopTimer(_retryTimer, _retryTimerId);
    if (!isStarted) {
        // The end of the task's last request makes up for it, or, if the system had no thread to give, the
        // timer.
        _requestWhenIdle = true;
        StartRetryTimer(kBusyMilliseconds);
    }
}

void ConfigureImpl::StartRetry() {
    --_retryCount;
    StartRetryTimer(ReadSchedule().RetryMilliseconds(RandomShare()));
}

void ConfigureImpl::StartRetryTimer(unsigned long long milliseconds) {
    StopTimer(_retryTimer, _retryTimerId);
    if (_isShut) {
        return;
    }
    _retryTimerId = _retryTimer.StartTimer(milliseconds, false, OnRetryTimer, this);
}

void ConfigureImpl::Retry() {
    ScopedLock lock(_lock);
    Request();
}

void ConfigureImpl::ForgetCache() {
    if (_cache != nullptr) {
        _cache->ClearNoSave();
    }
    if (_state == kRequesting) {
        _ignoreResult = true;
    }
}

void ConfigureImpl::SetUrl(char const* url) {
    if (url == nullptr) {
        return;
    }
    {
        ScopedLock lock(_lock);
        if (_isShut) {
            return;
        }
        LoadStoredUrl();
        StoreHostUrl(url);
        if (_url != url) {
            VC_LOG(Info, "Velmor::ConfigureImpl::SetUrl", "change url form [%s] to [%s]",
                   ForeignText(_url).c_str(), ForeignText(url).c_str());
            // What can't be read yet may well be of this address.
            bool const isOfAnother = !_url.empty() || _cache == nullptr || !_cache->IsUnread();
            _url = url;
            if (isOfAnother) {
                ForgetCache();
            }
            if (_cache != nullptr) {
                _cache->Set(Key::kSection, Key::kUrl, url);
            }
        }
    }
    StartOnce();
}

void ConfigureImpl::Clear() {
    ScopedLock lock(_lock);
    _url.clear();
    StoreHostUrl("");
    ForgetCache();
    if (_cache != nullptr) {
        _cache->Save();
    }
}

void ConfigureImpl::OnNetworkStateChanged(Ubrix::ANetworkState state) {
    State const current = CurrentState();
    VC_LOG(Info, "Velmor::ConfigureImpl::OnNetworkStateChanged", "ANetworkState %d, _state %d",
           static_cast<int>(state), static_cast<int>(current));
    if (state != Ubrix::ANetworkStateNotReachable && current == kFailed) {
        StartOnce();
    }
}

}  // namespace Velmor
