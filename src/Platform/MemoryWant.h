// A want of memory, and who answers for it.
//
// Inside the library a want of memory unwinds, as std::bad_alloc does: nothing goes on with half of a text.
// No exception leaves the library, though. Whatever is called from outside, and each thread's body, does its
// work at a boundary (Platform/Boundary.h).
//
// The object model is called from both sides. An operation on a text without a boundary above it on its
// thread leaves the text as it was; with one, the want passes through to that boundary. So whoever composes
// what is stored, sent or used as a name needs no check of its own, as long as it runs below a boundary.
//
// Where the library calls out, a CallOut is around the call: what the game does with a text in its
// callback is the game's own once more.
#pragma once

#include <new>
#include <stdexcept>

namespace Ubrix::Platform {

// Scopes that the thread is in. Constant-initialised and trivial: no access to it allocates.
inline thread_local int t_unwindScopes = 0;

// True if an answer for a want of memory waits further up on this thread.
inline bool WantUnwinds() {
    return t_unwindScopes > 0;
}

// For who got no memory, before it goes on without: hands the want on to the answer that waits, if one does.
inline void PassOnWant() {
    if (WantUnwinds()) {
        throw std::bad_alloc();
    }
}

// Belongs into each `try` that answers for a want of memory.
class UnwindScope {
public:
    UnwindScope() { ++t_unwindScopes; }
    ~UnwindScope() { --t_unwindScopes; }
    UnwindScope(UnwindScope const&) = delete;
    UnwindScope& operator=(UnwindScope const&) = delete;
};

// Belongs around a call into code that isn't the library's.
class CallOut {
public:
    CallOut() : _scopes(t_unwindScopes) { t_unwindScopes = 0; }
    ~CallOut() { t_unwindScopes = _scopes; }
    CallOut(CallOut const&) = delete;
    CallOut& operator=(CallOut const&) = delete;

private:
    int _scopes;
};

// Does `work`. A want of memory in it, or a size beyond what a container can hold, ends it: inside another
// such call it passes on, else the answer is `failed()`. Other exceptions are a caller's own, and pass.
template <class Work, class Failed>
auto WithoutThrow(Work&& work, Failed&& failed) -> decltype(work()) {
    try {
        UnwindScope const scope;
        return work();
    } catch (std::bad_alloc const&) {
        if (WantUnwinds()) {
            throw;
        }
    } catch (std::length_error const&) {
        if (WantUnwinds()) {
            throw;
        }
    }
    return failed();
}

// The same with 0, null, false or an empty text for the answer, or none.
template <class Work>
auto WithoutThrow(Work&& work) -> decltype(work()) {
    using Result = decltype(work());
    return WithoutThrow(static_cast<Work&&>(work), [] { return Result(); });
}

}  // namespace Ubrix::Platform
