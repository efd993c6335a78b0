// Who hears of refreshed keys: of a module's observers the first.
#pragma once

#include <VelmorCore/Configure.h>

#include <map>
#include <string>
#include <vector>

#include "Platform/Condition.h"
#include "Platform/Mutex.h"

namespace Velmor {

// Thread-safe. The lock is held for list work only, never while an observer runs.
//
// The host's own observers, one a module, go with the configuration that they were added to. Those of module
// views are the views' to withdraw, and stay over a release.
class ConfigureObservers {
public:
    // The one instance, never destroyed.
    static ConfigureObservers& GetInstance();

    // The host's: nothing if the module has an observer already.
    void Add(char const* module, ConfigureObserver* observer);
    // A view's: it waits behind those that the module has.
    void AddOfView(char const* module, ConfigureObserver* observer);
    // Takes out the observer of the module that is told. If it runs on another thread, waits for its end, so
    // that it may die afterwards; a thread that runs an observer itself waits for none.
    void Remove(char const* module);
    // The same for this one of a view.
    void RemoveOfView(char const* module, ConfigureObserver* observer);
    // Takes out the host's.
    void ForgetHosts();
    // Calls the module's observer, if it has one. The caller keeps `keys`.
    void Notify(char const* module, IStringIterator* keys);

private:
    struct Listener {
        ConfigureObserver* observer;
        bool ofView;
    };
    using Listeners = std::vector<Listener>;
    struct Call {
        ConfigureObserver* observer;
        unsigned int thread;
    };
    class CallScope;

    ConfigureObservers();
    void Erase(std::map<std::string, Listeners, std::less<>>::iterator module, Listeners::iterator listener)
        VC_REQUIRES(_lock);
    bool RunsElsewhere(ConfigureObserver const* observer) const VC_REQUIRES(_lock);

    Ubrix::Platform::RecursiveMutex _lock;
    Ubrix::Platform::Condition _ended;
    // No module without a listener is in here.
    std::map<std::string, Listeners, std::less<>> _modules VC_GUARDED_BY(_lock);
    std::vector<Call> _calls VC_GUARDED_BY(_lock);
};

}  // namespace Velmor
