#include "Refreshes.h"

#include "Journal.h"

namespace Host {

void Refreshes::Add(std::string const& module, Velmor::IStringIterator& keys) {
    std::vector<std::string> names;
    while (!keys.IsEnd()) {
        names.emplace_back(keys.Next());
    }
    _journal.Say("observer: module '" + module + "' has " + std::to_string(names.size()) + " keys");
    std::lock_guard<std::mutex> const lock(_mutex);
    _keys[module] = std::move(names);
}

void Refreshes::Forget() {
    std::lock_guard<std::mutex> const lock(_mutex);
    _keys.clear();
}

std::size_t Refreshes::Modules() const {
    std::lock_guard<std::mutex> const lock(_mutex);
    return _keys.size();
}

bool Refreshes::Heard(std::string const& module) const {
    std::lock_guard<std::mutex> const lock(_mutex);
    return _keys.count(module) != 0;
}

std::map<std::string, std::vector<std::string>> Refreshes::Keys() const {
    std::lock_guard<std::mutex> const lock(_mutex);
    return _keys;
}

}  // namespace Host
