#include "Base/Configure/ConfigureObservers.h"

#include <algorithm>

#include "Platform/Boundary.h"
#include "Platform/Immortal.h"
#include "Platform/MemoryWant.h"
#include "Platform/Thread.h"

namespace Velmor {

using Ubrix::Platform::CurrentThreadNumber;
using Ubrix::Platform::ScopedLock;

// One call of an observer, known to those who want to withdraw it.
class ConfigureObservers::CallScope {
public:
    // Without memory nobody is called.
    CallScope(ConfigureObservers& owner, char const* module) : _owner(owner) {
        ScopedLock const lock(_owner._lock);
        Ubrix::AtBoundary([&]() VC_REQUIRES(_owner._lock) {
            auto const found = _owner._modules.find(std::string_view(module));
            if (found != _owner._modules.end()) {
                ConfigureObserver* const first = found->second.front().observer;
                _owner._calls.push_back({first, CurrentThreadNumber()});
                _observer = first;
            }
        });
    }
    ~CallScope() {
        if (_observer == nullptr) {
            return;
        }
        ScopedLock const lock(_owner._lock);
        std::vector<Call>& calls = _owner._calls;
        calls.erase(std::find_if(calls.begin(), calls.end(), [this](Call const& call) {
            return call.observer == _observer && call.thread == CurrentThreadNumber();
        }));
        _owner._ended.Broadcast();
    }
    CallScope(CallScope const&) = delete;
    CallScope& operator=(CallScope const&) = delete;

    // Null if there is none to call.
    ConfigureObserver* Observer() const { return _observer; }

private:
    ConfigureObservers& _owner;
    ConfigureObserver* _observer = nullptr;
};

ConfigureObservers::ConfigureObservers() : _ended(_lock) {}

ConfigureObservers& ConfigureObservers::GetInstance() {
    static Ubrix::Platform::Immortal<ConfigureObservers> instance(
        [](void* room) { return new (room) ConfigureObservers; });
    return *instance;
}

void ConfigureObservers::Add(char const* module, ConfigureObserver* observer) {
    ScopedLock const lock(_lock);
    _modules.try_emplace(module, Listeners{{observer, false}});
}

void ConfigureObservers::AddOfView(char const* module, ConfigureObserver* observer) {
    ScopedLock const lock(_lock);
    auto const entry = _modules.try_emplace(module, Listeners{{observer, true}});
    if (!entry.second) {
        entry.first->second.push_back({observer, true});
    }
}

void ConfigureObservers::Remove(char const* module) {
    ScopedLock const lock(_lock);
    auto const found = _modules.find(std::string_view(module));
    if (found == _modules.end()) {
        return;
    }
    ConfigureObserver const* const removed = found->second.front().observer;
    Erase(found, found->second.begin());
    while (RunsElsewhere(removed)) {
        _ended.Wait();
    }
}

void ConfigureObservers::RemoveOfView(char const* module, ConfigureObserver* observer) {
    ScopedLock const lock(_lock);
    auto const found = _modules.find(std::string_view(module));
    if (found != _modules.end()) {
        Listeners& all = found->second;
        auto const own = std::find_if(all.begin(), all.end(), [observer](Listener const& listener) {
            return listener.observer == observer;
        });
        if (own != all.end()) {
            Erase(found, own);
        }
    }
    while (RunsElsewhere(observer)) {
        _ended.Wait();
    }
}

void ConfigureObservers::Erase(std::map<std::string, Listeners, std::less<>>::iterator module,
                               Listeners::iterator listener) {
    module->second.erase(listener);
    if (module->second.empty()) {
        _modules.erase(module);
    }
}

void ConfigureObservers::ForgetHosts() {
    ScopedLock const lock(_lock);
    for (auto module = _modules.begin(); module != _modules.end();) {
        auto const next = std::next(module);
        // The host's is added to a module without any, and so it is the first.
        if (!module->second.front().ofView) {
            Erase(module, module->second.begin());
        }
        module = next;
    }
}

bool ConfigureObservers::RunsElsewhere(ConfigureObserver const* observer) const {
    bool runsElsewhere = false;
    for (Call const& call : _calls) {
        if (call.thread == CurrentThreadNumber()) {
            return false;
        }
        runsElsewhere = runsElsewhere || call.observer == observer;
    }
    return runsElsewhere;
}

void ConfigureObservers::Notify(char const* module, IStringIterator* keys) {
    CallScope const call(*this, module);
    if (call.Observer() != nullptr) {
        Ubrix::Platform::CallOut const out;
        call.Observer()->OnConfigureRefreshed(keys);
    }
}

}  // namespace Velmor
