// One module's view of the remote configuration.
#include <VelmorCore/RemoteConfig.h>

#include <cstring>
#include <map>
#include <memory>

#include "Base/Configure/ConfigureObservers.h"
#include "Base/Configure/KitParameters.h"
#include "Platform/Boundary.h"
#include "Platform/Mutex.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"

namespace Velmor {

using Ubrix::AtBoundary;
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

// What a read of the module's section gives; the default without a key or without memory.
template <class Result, class Read>
Result ReadKey(AString const* module, char const* key, char const* function, Result otherwise,
               Read const& read) {
    if (key == nullptr) {
        VC_LOG(Error, function, "key is NULL");
        return otherwise;
    }
    return module != nullptr ? read(*Configure::GetInstance(), module->c_str()) : otherwise;
}

char const* NameOf(AString const* module) {
    return module != nullptr ? module->c_str() : "";
}

}  // namespace

struct RemoteConfig::Body {
    static AString const* ModuleOf(Body const* body) { return body != nullptr ? &body->module : nullptr; }

    AString module;
    // Guards the map. Not held while an adapter is withdrawn: that may wait for a notification.
    Ubrix::Platform::RecursiveMutex lock;
    std::map<RemoteConfigObserver*, std::unique_ptr<ConfigObserver>> observers VC_GUARDED_BY(lock);
};

IRemoteConfig::~IRemoteConfig() = default;

RemoteConfig::RemoteConfig(char const* module) : _body(nullptr) {
    AtBoundary([this, module] {
        auto body = std::make_unique<Body>();
        body->module = module;
        _body = body.release();
    });
}

RemoteConfig::~RemoteConfig() {
    if (_body == nullptr) {
        return;
    }
    std::map<RemoteConfigObserver*, std::unique_ptr<ConfigObserver>> observers;
    {
        ScopedLock const lock(_body->lock);
        observers.swap(_body->observers);
    }
    for (auto const& entry : observers) {
        ConfigureObservers::GetInstance().RemoveOfView(_body->module.c_str(), entry.second.get());
    }
    delete _body;
}

int RemoteConfig::GetInt(char const* key, int defaultValue) {
    return ReadKey(Body::ModuleOf(_body), key, "Velmor::RemoteConfig::GetInt", defaultValue,
                   [=](Configure& configure, char const* module) {
                       return configure.GetInt(module, key, defaultValue);
                   });
}

std::int64_t RemoteConfig::GetLong(char const* key, std::int64_t defaultValue) {
    return ReadKey(Body::ModuleOf(_body), key, "Velmor::RemoteConfig::GetLong", defaultValue,
                   [=](Configure& configure, char const* module) {
                       return configure.GetLong(module, key, defaultValue);
                   });
}

double RemoteConfig::GetDouble(char const* key, double defaultValue) {
    return ReadKey(Body::ModuleOf(_body), key, "Velmor::RemoteConfig::GetDouble", defaultValue,
                   [=](Configure& configure, char const* module) {
                       return configure.GetDouble(module, key, defaultValue);
                   });
}

bool RemoteConfig::GetBool(char const* key, bool defaultValue) {
    return ReadKey(Body::ModuleOf(_body), key, "Velmor::RemoteConfig::GetBool", defaultValue,
                   [=](Configure& configure, char const* module) {
                       return configure.GetBool(module, key, defaultValue);
                   });
}

bool RemoteConfig::GetString(char const* key, char* value, int* size, char const* defaultValue) {
    if (key == nullptr || value == nullptr || size == nullptr || *size <= 0) {
        VC_LOG(Error, "Velmor::RemoteConfig::GetString", "key == NULL || value == NULL || size <=0");
        return false;
    }
    AString text;
    bool const isRead = _body != nullptr && AtBoundary([&] {
                            text =
                                Configure::GetInstance()->GetString(_body->module.c_str(), key, defaultValue);
                        });
    if (!isRead || text.length() >= *size) {
        return false;
    }
    std::memcpy(value, text.c_str(), static_cast<std::size_t>(text.length()) + 1);
    *size = text.length();
    return true;
}

void RemoteConfig::AddObserver(RemoteConfigObserver* observer) {
    if (_body == nullptr) {
        return;
    }
    bool isNew = true;
    AtBoundary([&] {
        auto adapter = std::make_unique<ConfigObserver>(this, observer);
        ScopedLock const lock(_body->lock);
        auto const entry = _body->observers.try_emplace(observer);
        isNew = entry.second;
        if (!isNew) {
            return;
        }
        entry.first->second = std::move(adapter);
        ConfigureObserver* const registered = entry.first->second.get();
        if (!AtBoundary(
                [&] { ConfigureObservers::GetInstance().AddOfView(_body->module.c_str(), registered); })) {
            _body->observers.erase(entry.first);
        }
    });
    if (!isNew) {
        VC_LOG(Warning, "Velmor::RemoteConfig::AddObserver", "observer already add before");
    }
}

void RemoteConfig::RemoveObserver(RemoteConfigObserver* observer) {
    if (_body == nullptr) {
        return;
    }
    std::unique_ptr<ConfigObserver> adapter;
    {
        ScopedLock const lock(_body->lock);
        auto const entry = _body->observers.find(observer);
        if (entry == _body->observers.end()) {
            return;
        }
        adapter = std::move(entry->second);
        _body->observers.erase(entry);
    }
    ConfigureObservers::GetInstance().RemoveOfView(_body->module.c_str(), adapter.get());
}

void RemoteConfig::SetUserInfo(int channelId, char const* openId) {
    AtBoundary([=] {
        VC_LOG(Info, "Velmor::RemoteConfig::SetUserInfo", "module %s SetUserInfo channelid %d, openid %s",
               Ubrix::ForeignText(NameOf(Body::ModuleOf(_body))).c_str(), channelId,
               Ubrix::ForeignText(openId).c_str());
        Velmor::SetUserInfo(Ubrix::int2str(channelId).c_str(), openId);
    });
}

void RemoteConfig::Fetch() {
    AtBoundary([this] {
        VC_LOG(Info, "Velmor::RemoteConfig::Fetch", "module %s Fetch",
               Ubrix::ForeignText(NameOf(Body::ModuleOf(_body))).c_str());
        Configure::GetInstance()->StartOnce();
    });
}

void RemoteConfig::Reserved1(void* /*a*/, void* /*b*/) {}

void RemoteConfig::Reserved2(void* /*a*/, void* /*b*/) {}

}  // namespace Velmor
