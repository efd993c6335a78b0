// Fans the host application's lifecycle events out to whoever wants to hear them. A platform integration
// drives it; nothing in the library does.
#pragma once

#include <memory>
#include <vector>

#include "Platform/Mutex.h"

namespace Ubrix {

// Hears lifecycle events from its construction to its destruction. Called on the thread that reports the
// event, with the application's lock held, which is recursive: a callback may add and remove observers, this
// one included, and release the application. Whoever constructs or destroys one while another thread reports
// an event sees to it that the derived part stands whenever it is registered.
class IApplicationObserver {
public:
    // Ends the registration, and makes the application anew for that if it is gone.
    virtual ~IApplicationObserver();
    IApplicationObserver(IApplicationObserver const&) = delete;
    IApplicationObserver& operator=(IApplicationObserver const&) = delete;

    // What 1, 2 and 5 stand for is the platform integration's choice.
    virtual void OnLifecycleEvent1() = 0;
    virtual void OnLifecycleEvent2() = 0;
    virtual void OnPause() = 0;
    virtual void OnResume() = 0;
    virtual void OnLifecycleEvent5() = 0;
    virtual void OnTerminate() = 0;

protected:
    IApplicationObserver();
};

// Thread-safe. The lock guards the list, and is held while observers are called, in their order of
// registration: nobody leaves in the middle of a call from another thread. An observer that is added during a
// fan-out isn't called in it; one that is removed isn't called any more.
class CApplication : public std::enable_shared_from_this<CApplication> {
public:
    // The one instance, made at the first call and again after a release, which ends it.
    static CApplication& GetInstance();
    // Lets go of all observers, without telling them. The teardown calls this.
    static void ReleaseInstance();

    ~CApplication() = default;
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
    friend class IApplicationObserver;
    using Event = void (IApplicationObserver::*)();
    // Where a fan-out stands, and where the observers end that it calls.
    struct Walk {
        std::size_t next;
        std::size_t end;
    };

    CApplication() = default;
    // The same, kept for the caller's use over a release on another thread: observers come and go anywhere.
    static std::shared_ptr<CApplication> Share();
    void FanOut(Event event);
    void Close();

    Platform::RecursiveMutex _mutex;
    std::vector<IApplicationObserver*> _observers VC_GUARDED_BY(_mutex);
    // The innermost last: more than one if an observer reports an event itself.
    std::vector<Walk> _walks VC_GUARDED_BY(_mutex);
};

}  // namespace Ubrix
