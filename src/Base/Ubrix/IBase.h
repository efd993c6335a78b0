// The owner of the ordered teardown, and the list of what has a place in it.
#pragma once

namespace Ubrix {

// One instance stands while a core stands. The list of release callbacks stands by itself: services register
// before any core exists.
class IBase {
public:
    // A plain function that releases one service.
    using ReleaseCallback = void (*)();

    // The instance, made at first use.
    static IBase& GetInstance();

    // Puts `release` at the end of the list, unless it is null or stands there already. A callback may
    // register another one while the list is walked: it still runs in that walk. One that has run in the walk
    // doesn't run in it again; it stays on the list for the next one. Any thread.
    static void AddReleaseCallback(ReleaseCallback release);

    // Runs the callbacks in the order of their registration on the calling thread, with no lock held, and
    // empties the list. Nothing happens while a walk is under way, be it on this thread.
    static void RunReleaseCallbacks();

    // The whole teardown, in its order: callbacks first, the instance last.
    static void Release();

    virtual ~IBase();
    IBase(IBase const&) = delete;
    IBase& operator=(IBase const&) = delete;

private:
    IBase() = default;
    static IBase* _instance;
};

}  // namespace Ubrix
