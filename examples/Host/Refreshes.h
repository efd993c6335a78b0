// Hears of refreshed keys, on the library's thread, for the game's thread to ask.
#pragma once

#include <VelmorCore/RemoteConfig.h>

#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace Host {

class Journal;

// The keys that came in, by module. Thread-safe.
class Refreshes {
public:
    explicit Refreshes(Journal& journal) : _journal(journal) {}

    void Add(std::string const& module, Velmor::IStringIterator& keys);
    void Forget();

    std::size_t Modules() const;
    bool Heard(std::string const& module) const;
    std::map<std::string, std::vector<std::string>> Keys() const;

private:
    Journal& _journal;
    mutable std::mutex _mutex;  // guards _keys
    std::map<std::string, std::vector<std::string>> _keys;
};

// Listens for one module at the configuration itself.
class ModuleObserver final : public Velmor::ConfigureObserver {
public:
    ModuleObserver(char const* module, Refreshes& refreshes) : _module(module), _refreshes(refreshes) {}
    char const* Module() const { return _module; }
    void OnConfigureRefreshed(Velmor::IStringIterator* keys) override { _refreshes.Add(_module, *keys); }

private:
    char const* _module;
    Refreshes& _refreshes;
};

// Listens through a module's own view of the configuration.
class ViewObserver final : public Velmor::RemoteConfigObserver {
public:
    ViewObserver(char const* module, Refreshes& refreshes) : _module(module), _refreshes(refreshes) {}
    void OnRemoteConfigRefreshed(Velmor::IRemoteConfig*, Velmor::IStringIterator* keys) override {
        _refreshes.Add(_module, *keys);
    }

private:
    char const* _module;
    Refreshes& _refreshes;
};

}  // namespace Host
