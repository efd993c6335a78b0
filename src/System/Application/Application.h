// Fans the host application's lifecycle events out to whoever wants to hear them. A platform integration
// drives it; nothing in the library does.
#pragma once

#include <vector>

#include "Platform/CallTurn.h"

namespace Ubrix {

// Hears lifecycle events from its construction to its destruction. Called on the thread that reports the
// event, in the turn of the fan-out, which is recursive: a callback may add and remove observers, this one
// included, and release the application. Whoever constructs or destroys one while another thread reports an
// event sees to it that the derived part exists whenever it is registered.
class IApplicationObserver {
public:
    // Ends the registration; if an event is being told on another thread, after that.
    virtual ~IApplicationObserver();
    IApplicationObserver(IApplicationObserver const&) = delete;
    IApplicationObserver& operator=(IApplicationObserver const&) = delete;

    // What 1, 2 and 5 mean is the platform integration's choice.
    virtual void OnLifecycleEvent1() = 0;
    virtual void OnLifecycleEvent2() = 0;
    virtual void OnPause() = 0;
    virtual void OnResume() = 0;
    virtual void OnLifecycleEvent5() = 0;
    virtual void OnTerminate() = 0;

protected:
    IApplicationObserver();
};

// Thread-safe. Observers are called in the turn of the fan-out, one thread at a time, in their order of
// registration: nobody leaves in the middle of a call from another thread. An observer that is added during a
// fan-out isn't called in it; one that is removed isn't called any more. The object is never destroyed; who
// observes lasts until the release.
class CApplication {
public:
    // The one instance.
    static CApplication& GetInstance();
    // Lets go of all observers, without telling them. The teardown calls this.
    static void ReleaseInstance();

    CApplication(CApplication const&) = delete;
    CApplication& operator=(CApplication const&) = delete;

    // Null, and an observer that is registered already, change nothing. The observer stays the caller's.
    void AddObserver(IApplicationObserver* observer);
    void RemoveObserver(IApplicationObserver* observer);

    void LifecycleEvent1();
    void LifecycleEvent2();
    void OnPause();
    void OnResume();
    void LifecycleEvent5();
    // Releases the network first.
    void Terminate();

private:
    using Event = void (IApplicationObserver::*)();
    // How far a fan-out is, and where the observers end that it calls.
    struct Walk {
        std::size_t next;
        std::size_t end;
    };

    CApplication() = default;
    void FanOut(Event event);

    Platform::CallTurn _turn;
    std::vector<IApplicationObserver*> _observers VC_GUARDED_BY(_turn);
    // The innermost last: more than one if an observer reports an event itself.
    std::vector<Walk> _walks VC_GUARDED_BY(_turn);
};

}  // namespace Ubrix
