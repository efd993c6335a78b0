// Who hears of refreshed keys: one observer a module.
#pragma once

#include <VelmorCore/Configure.h>

#include <map>
#include <string>

#include "Platform/Condition.h"
#include "Platform/Mutex.h"

namespace Velmor {

// Thread-safe. The lock is held for list work only, never while an observer runs. One notification runs at a
// time.
class ConfigureObservers {
public:
    ConfigureObservers();

    // Keeps the observer that a module has already.
    void Add(char const* module, ConfigureObserver* observer);
    // Takes the module's observer out. If that module's notification runs on another thread, waits for its
    // end, so that the observer may die afterwards.
    void Remove(char const* module);
    // Calls the module's observer, if it has one. The caller keeps `keys`.
    void Notify(char const* module, IStringIterator* keys);

private:
    ConfigureObserver* Begin(std::string const& module);
    void End();

    Ubrix::Platform::RecursiveMutex _lock;
    Ubrix::Platform::Condition _ended;
    std::map<std::string, ConfigureObserver*> _observers VC_GUARDED_BY(_lock);
    // The notification that runs: its module, and the thread's number; 0 while none does.
    std::string _runningModule VC_GUARDED_BY(_lock);
    unsigned int _runningThread VC_GUARDED_BY(_lock) = 0;
};

}  // namespace Velmor
