// The list of services that have a place in the teardown.
#pragma once

namespace Ubrix {

// Exists by itself: services register before any core exists.
class ReleaseList {
public:
    // A plain function that releases one service.
    using Callback = void (*)();

    ReleaseList() = delete;

    // Puts `release` at the end of the list, unless it is null or on it already. A callback may register
    // another one while the list is walked: it still runs in that walk. One that has run in the walk doesn't
    // run in it again; it stays on the list for the next one. Any thread.
    static void Add(Callback release);

    // Runs the callbacks in the order of their registration on the calling thread, with no lock held, and
    // empties the list. Nothing happens while a walk is under way, be it on this thread.
    static void Run();
};

}  // namespace Ubrix
