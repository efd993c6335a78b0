// The keys of a file that hold a value which doesn't come back whole: each is told of once.
#pragma once

#include <cstddef>
#include <functional>
#include <set>
#include <string_view>

namespace Ubrix {

// Remembers a bounded number of keys, by a hash of their names: one that meets another's isn't told of. Not
// thread-safe.
class CutKeys {
public:
    enum class Answer {
        Known,  // nothing to tell
        New,
        Last,  // there is no room for this one: tell that no more are told of
    };

    Answer Add(std::string_view section, std::string_view key) {
        std::hash<std::string_view> const hash;
        std::size_t const name = hash(section) * 31U + hash(key);
        if (_full || _names.count(name) != 0) {
            return Answer::Known;
        }
        _full = _names.size() == kRoom;
        if (_full) {
            return Answer::Last;
        }
        _names.insert(name);
        return Answer::New;
    }

private:
    static constexpr std::size_t kRoom = 64;

    std::set<std::size_t> _names;
    bool _full = false;
};

}  // namespace Ubrix
