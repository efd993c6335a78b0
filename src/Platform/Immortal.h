// What lasts as long as the process, and is never destroyed.
#pragma once

#include <new>
#include <type_traits>
#include <utility>

namespace Ubrix::Platform {

// A static object whose destructor never runs: the library's threads may outlive main, and callers keep what
// an accessor gave them. It is in the static itself, so only what its constructor asks for takes memory.
// Made at its first use under the language's own lock, so its constructor neither logs nor calls out; from
// then on it is as safe for threads as the object in it.
template <class T>
class Immortal {
public:
    template <class... Arguments>
    explicit Immortal(Arguments&&... arguments) {
        new (_room) T(std::forward<Arguments>(arguments)...);
    }
    // For a class whose constructor is private: `make` makes the object in the room that it is given.
    template <class Make, class = std::enable_if_t<std::is_invocable_r_v<T*, Make, void*>>>
    explicit Immortal(Make&& make) {
        make(static_cast<void*>(_room));
    }
    Immortal(Immortal const&) = delete;
    Immortal& operator=(Immortal const&) = delete;

    T& operator*() { return *std::launder(reinterpret_cast<T*>(_room)); }
    T* operator->() { return &**this; }

private:
    alignas(T) unsigned char _room[sizeof(T)];
};

}  // namespace Ubrix::Platform
