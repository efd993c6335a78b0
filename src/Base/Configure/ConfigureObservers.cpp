#include "Base/Configure/ConfigureObservers.h"

#include "Platform/Thread.h"

namespace Velmor {

using Ubrix::Platform::CurrentThreadNumber;
using Ubrix::Platform::ScopedLock;

ConfigureObservers::ConfigureObservers() : _ended(_lock) {}

void ConfigureObservers::Add(char const* module, ConfigureObserver* observer) {
    ScopedLock lock(_lock);
    _observers.emplace(module, observer);
}

void ConfigureObservers::Remove(char const* module) {
    ScopedLock lock(_lock);
    _observers.erase(module);
    while (_runningThread != 0 && _runningThread != CurrentThreadNumber() && _runningModule == module) {
        _ended.Wait();
    }
}

void ConfigureObservers::Notify(char const* module, IStringIterator* keys) {
    ConfigureObserver* observer = Begin(module);
    if (observer != nullptr) {
        observer->OnConfigureRefreshed(keys);
        End();
    }
}

ConfigureObserver* ConfigureObservers::Begin(std::string const& module) {
    ScopedLock lock(_lock);
    auto const found = _observers.find(module);
    if (found == _observers.end() || found->second == nullptr) {
        return nullptr;
    }
    _runningModule = module;
    _runningThread = CurrentThreadNumber();
    return found->second;
}

void ConfigureObservers::End() {
    ScopedLock lock(_lock);
    _runningThread = 0;
    _ended.Broadcast();
}

}  // namespace Velmor
