// One module's view of the remote configuration.
#include <VelmorCore/RemoteConfig.h>

#include <cstring>
#include <map>
#include <memory>

#include "Base/Configure/KitParameters.h"
#include "Platform/Mutex.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"

namespace Velmor {

using Ubrix::Platform::ScopedLock;

namespace {

// Passes the configuration's notification on to a module's observer.
class ConfigObserver final : public ConfigureObserver {
public:
    ConfigObserver(IRemoteConfig* config, RemoteConfigObserver* observer)
        : _config(config), _observer(observer) {}

    void OnConfigureRefreshed(IStringIterator* keys) override {
        if (_observer != nullptr) {
            _observer->OnRemoteConfigRefreshed(_config, keys);
        }
    }

private:
    IRemoteConfig* _config;
    RemoteConfigObserver* _observer;
};

bool IsKeyMissing(char const* key, char const* function) {
    if (key != nullptr) {
        return false;
    }
    VC_LOG(Error, function, "key is NULL");
    return true;
}

}  // namespace

struct RemoteConfig::Body {
    AString module;
    // Guards the map. Not held while an adapter is withdrawn: that may wait for a notification.
    Ubrix::Platform::RecursiveMutex lock;
    std::map<RemoteConfigObserver*, std::unique_ptr<ConfigObserver>> observers VC_GUARDED_BY(lock);
};

IRemoteConfig::~IRemoteConfig() = default;

RemoteConfig::RemoteConfig(char const* module) : _body(new Body) {
    _body->module = module;
}

RemoteConfig::~RemoteConfig() {
    std::map<RemoteConfigObserver*, std::unique_ptr<ConfigObserver>> observers;
    {
        ScopedLock lock(_body->lock);
        observers.swap(_body->observers);
    }
    if (!observers.empty()) {
        Configure::GetInstance()->RemoveObserver(_body->module.c_str());
    }
    delete _body;
}

int RemoteConfig::GetInt(char const* key, int defaultValue) {
    return IsKeyMissing(key, "Velmor::RemoteConfig::GetInt")
               ? defaultValue
               : Configure::GetInstance()->GetInt(_body->module.c_str(), key, defaultValue);
}

std::int64_t RemoteConfig::GetLong(char const* key, std::int64_t defaultValue) {
    return IsKeyMissing(key, "Velmor::RemoteConfig::GetLong")
               ? defaultValue
               : Configure::GetInstance()->GetLong(_body->module.c_str(), key, defaultValue);
}

double RemoteConfig::GetDouble(char const* key, double defaultValue) {
    return IsKeyMissing(key, "Velmor::RemoteConfig::GetDouble")
               ? defaultValue
               : Configure::GetInstance()->GetDouble(_body->module.c_str(), key, defaultValue);
}

bool RemoteConfig::GetBool(char const* key, bool defaultValue) {
    return IsKeyMissing(key, "Velmor::RemoteConfig::GetBool")
               ? defaultValue
               : Configure::GetInstance()->GetBool(_body->module.c_str(), key, defaultValue);
}

bool RemoteConfig::GetString(char const* key, char* value, int* size, char const* defaultValue) {
    if (key == nullptr || value == nullptr || size == nullptr || *size <= 0) {
        VC_LOG(Error, "Velmor::RemoteConfig::GetString", "key == NULL || value == NULL || size <=0");
        return false;
    }
    AString const text = Configure::GetInstance()->GetString(_body->module.c_str(), key, defaultValue);
    if (text.length() >= *size) {
        return false;
    }
    std::memcpy(value, text.c_str(), static_cast<std::size_t>(text.length()) + 1);
    *size = text.length();
    return true;
}

void RemoteConfig::AddObserver(RemoteConfigObserver* observer) {
    ScopedLock lock(_body->lock);
    auto const entry = _body->observers.try_emplace(observer);
    if (!entry.second) {
        VC_LOG(Warning, "Velmor::RemoteConfig::AddObserver", "observer already add before");
        return;
    }
    entry.first->second = std::make_unique<ConfigObserver>(this, observer);
    Configure::GetInstance()->AddObserver(_body->module.c_str(), entry.first->second.get());
}

void RemoteConfig::RemoveObserver(RemoteConfigObserver* observer) {
    std::unique_ptr<ConfigObserver> adapter;
    {
        ScopedLock lock(_body->lock);
        auto const entry = _body->observers.find(observer);
        if (entry != _body->observers.end()) {
            adapter = std::move(entry->second);
            _body->observers.erase(entry);
        }
    }
    Configure::GetInstance()->RemoveObserver(_body->module.c_str());
}

void RemoteConfig::SetUserInfo(int channelId, char const* openId) {
    VC_LOG(Info, "Velmor::RemoteConfig::SetUserInfo", "module %s SetUserInfo channelid %d, openid %s",
           Ubrix::ForeignText(_body->module.c_str()).c_str(), channelId, Ubrix::ForeignText(openId).c_str());
    Velmor::SetUserInfo(Ubrix::int2str(channelId).c_str(), openId);
}

void RemoteConfig::Fetch() {
    VC_LOG(Info, "Velmor::RemoteConfig::Fetch", "module %s Fetch",
           Ubrix::ForeignText(_body->module.c_str()).c_str());
    Configure::GetInstance()->StartOnce();
}

void RemoteConfig::Reserved1(void* /*a*/, void* /*b*/) {}

void RemoteConfig::Reserved2(void* /*a*/, void* /*b*/) {}

}  // namespace Velmor
