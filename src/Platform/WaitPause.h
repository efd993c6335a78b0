// What a thread does before and after each wait of the library.
#pragma once

namespace Ubrix::Platform {

// Around each wait: has the thread give up, for the length of the scope, what it must not keep meanwhile.
// What that is, is told by who has it (CallTurn). For the calling thread alone; nothing here allocates.
class WaitPause {
public:
    struct Steps {
        // True if something was given up, which is taken back behind the wait.
        bool (*giveUp)();
        void (*takeBack)();
    };

    WaitPause();
    ~WaitPause();
    WaitPause(WaitPause const&) = delete;
    WaitPause& operator=(WaitPause const&) = delete;

    // What the calling thread does from now on.
    static void Use(Steps const& steps);

private:
    Steps const* const _steps;
    bool const _gaveUp;
};

}  // namespace Ubrix::Platform
