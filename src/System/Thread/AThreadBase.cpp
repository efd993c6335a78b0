#include "System/Thread/AThreadBase.h"

#include <atomic>
#include <cassert>
#include <deque>

#include "Platform/Event.h"
#include "Platform/Mutex.h"
#include "Platform/Thread.h"
#include "Storage/Log/LogMacros.h"
#include "System/Thread/LockedFlag.h"

namespace Ubrix {

namespace {

using CEvent = Platform::Event;

// How long the thread looks out for an early start before it settles down to wait.
constexpr unsigned int kFirstWaitMs = 50;
constexpr unsigned int kSecondWaitMs = 200;

// Who still holds the object. The one that lets go of it last deletes it.
enum class Holder { Both, ThreadOnly, OwnerOnly };

char const kProcName[] = "Ubrix::CThreadBase::onThreadProc";

// Logs an attempt to resume, and passes on whether it is possible.
bool TellResume(bool possible) {
    VC_LOG(Info, "Ubrix::CThreadBase::Resume", "CThreadBase::Resume");
    if (!possible) {
        VC_LOG(Error, "Ubrix::CThreadBase::Resume", "Thread is not running..");
    }
    return possible;
}

}  // namespace

// What the object and its thread share. The thread keeps it to its very end, so it may signal here when the
// object is already the owner's to delete.
struct CThreadBase::Body {
    explicit Body(CThreadBase* threadObject) : object(threadObject) {}

    // True while the thread is to work.
    bool ToRun() const { return m_bThreadRun.Get() && !stopped.Get(); }

    // A thread in the paused state leaves it once it is woken.
    void LetGoOn() {
        resumeDue.Set(true);
        pause.Set(false);
    }
    void Wake() {
        startEvent.Set();
        pauseEvent.Set();
    }

    CThreadBase* const object;
    void* handle = nullptr;
    LockedFlag m_bThreadRun{false};
    LockedFlag stopped{false};
    LockedFlag pause{false};
    LockedFlag resumeDue{false};
    LockedFlag selfDelete{false};
    std::atomic<int> state{kCreated};
    std::atomic<Holder> holder{Holder::Both};
    std::atomic<unsigned int> threadNumber{0};
    CEvent startEvent;
    CEvent pauseEvent;
    // Set when the thread has left the object.
    CEvent exitEvent;

    // Guards the two fields behind it.
    Platform::RecursiveMutex mutex;
    std::deque<CSelector> selectors VC_GUARDED_BY(mutex);
    // What the thread finds when it wants to enter the object: it enters one that exists, and the destructor
    // of one that it hasn't entered keeps it out.
    enum class Access { Open, Entered, Closed } access VC_GUARDED_BY(mutex) = Access::Open;
};

CThreadBase::CThreadBase() : CTargetBase(false), _body(std::make_shared<Body>(this)) {
    auto argument = std::make_unique<std::shared_ptr<Body>>(_body);
    if (Platform::StartThread(onThreadProc, argument.get(), &_body->handle)) {
        static_cast<void>(argument.release());
        return;
    }
    // Nobody but the owner will ever hold the object.
    _body->holder = Holder::OwnerOnly;
    _body->exitEvent.Set();
}

CThreadBase::~CThreadBase() {
    {
        Platform::ScopedLock lock(_body->mutex);
        assert(_body->access != Body::Access::Entered || _body->holder != Holder::Both);
        _body->access = Body::Access::Closed;
    }
    _body->stopped.Set(true);
    _body->startEvent.Set();
}

void CThreadBase::Start() {
    // From the moment that the thread may run, it may also destroy the object.
    std::shared_ptr<Body> const body = _body;
    VC_LOG(Info, "Ubrix::CThreadBase::Start", "Thread: CThreadBase: Start:%p", static_cast<void*>(this));
    if (TellResume(!body->selfDelete.Get())) {
        // Before the thread may run, so that its first turn finds it, and no later one does.
        body->LetGoOn();
    }
    body->m_bThreadRun.Set(true);
    body->Wake();
    Platform::SleepFor(0);
}

void CThreadBase::Pause() {
    if (_body->m_bThreadRun.Get() && !_body->selfDelete.Get()) {
        _body->pause.Set(true);
        _body->resumeDue.Set(true);
    }
}

void CThreadBase::Resume(bool yield) {
    std::shared_ptr<Body> const body = _body;
    if (!TellResume(body->m_bThreadRun.Get() && !body->selfDelete.Get())) {
        return;
    }
    body->LetGoOn();
    body->Wake();
    if (yield) {
        Platform::SleepFor(0);
    }
}

void CThreadBase::Stop() {
    _body->stopped.Set(true);
    _body->m_bThreadRun.Set(false);
    _body->pause.Set(false);
    _body->Wake();
}

void CThreadBase::Destroy(CThreadBase*& thread, bool detach) {
    char const* const name = "Ubrix::CThreadBase::Destroy";
    if (thread != nullptr) {
        CThreadBase* const object = thread;
        std::shared_ptr<Body> const body = object->_body;
        VC_LOG(Event, name, "CThreadBase::Destroy begin:%p", static_cast<void*>(object));
        bool const exited = body->holder == Holder::OwnerOnly;
        VC_LOG(Info, name, "CThreadBase::Destroy m_bThreadExit:%d", exited ? 1 : 0);
        thread = nullptr;
        body->selfDelete.Set(true);
        object->Stop();
        if (!detach && body->threadNumber != Platform::CurrentThreadNumber()) {
            body->exitEvent.Wait();
        }
        if (body->holder.exchange(Holder::ThreadOnly) == Holder::OwnerOnly) {
            delete object;
        }
    }
    VC_LOG(Event, name, "CThreadBase::Destroy end");
}

int CThreadBase::ThreadState() const {
    return _body->state;
}

void CThreadBase::onThreadProc(void* argument) {
    std::unique_ptr<std::shared_ptr<Body>> const share(static_cast<std::shared_ptr<Body>*>(argument));
    Body& body = **share;
    body.threadNumber = Platform::CurrentThreadNumber();
    VC_LOG(Info, kProcName, "Thread: CThreadBase: OnThreadProc, %p", static_cast<void*>(body.object));
    Platform::NameCurrentThread("CThreadBase");
    AwaitStart(body);
    {
        Platform::ScopedLock lock(body.mutex);
        if (body.access == Body::Access::Closed) {
            return;
        }
        body.access = Body::Access::Entered;
    }
    body.object->Run();
    LeaveObject(body, body.object);
}

void CThreadBase::AwaitStart(Body& body) {
    if (!body.m_bThreadRun.Get() && !body.stopped.Get()) {
        body.startEvent.WaitFor(kFirstWaitMs);
    }
    if (body.m_bThreadRun.Get()) {
        return;
    }
    VC_LOG(Info, kProcName, "Thread: CThreadBase: OnThreadProc m_bThreadRun is false");
    if (!body.stopped.Get()) {
        body.startEvent.WaitFor(kSecondWaitMs);
    }
    if (!body.m_bThreadRun.Get()) {
        VC_LOG(Info, kProcName, "Thread: CThreadBase: OnThreadProc before start wait");
        // A stop is latched like a start: an object that was never started doesn't hold its thread.
        while (!body.m_bThreadRun.Get() && !body.stopped.Get()) {
            body.startEvent.Wait();
        }
    }
    VC_LOG(Info, kProcName, "Thread: CThreadBase: OnThreadProc after start");
}

void CThreadBase::LeaveObject(Body& body, CThreadBase* object) {
    VC_LOG(Event, kProcName, "Thread: CThreadBase: OnThreadProc(%p) final Exit...",
           static_cast<void*>(object));
    if (body.holder.exchange(Holder::OwnerOnly) == Holder::ThreadOnly) {
        delete object;
    }
    body.exitEvent.Set();
}

void CThreadBase::Run() {
    if (_body->ToRun()) {
        _body->state = kRunning;
        OnThreadStart();
        VC_LOG(Info, kProcName, "Thread: CThreadBase: OnThreadProc before Running");
        RunLoop();
    } else {
        VC_LOG(Event, kProcName, "Thread: CThreadBase: OnThreadProc not run while starting..");
    }
    _body->state = kEnding;
    OnThreadExit();
}

void CThreadBase::RunLoop() {
    while (_body->ToRun()) {
        Pace const pace = BeginTurn();
        if (pace == Pace::Leave) {
            return;
        }
        if (pace == Pace::Work) {
            ThRun();
            runSelectors();
        }
    }
}

CThreadBase::Pace CThreadBase::BeginTurn() {
    if (_body->pause.Get()) {
        if (!WaitWhilePaused()) {
            return Pace::Leave;
        }
        OnThreadResume();
    } else if (_body->resumeDue.Take()) {
        OnThreadResume();
    }
    _body->state = kRunning;
    if (!_body->ToRun()) {
        VC_LOG(Info, kProcName, "Thread: CThreadBase: OnThreadProc ThRun");
        return Pace::Leave;
    }
    if (_body->pause.Get()) {
        VC_LOG(Info, kProcName, "Thread: CThreadBase: OnThreadProc Pause");
        return Pace::Skip;
    }
    return Pace::Work;
}

bool CThreadBase::WaitWhilePaused() {
    _body->state = kPaused;
    OnThreadPause();
    VC_LOG(Info, kProcName, "Thread: CThreadBase: OnThreadProc before pause wait");
    // Who clears the flag sets the event afterwards, and the event keeps it: no resume falls between the test
    // and the wait. An event left over from earlier costs one more test.
    while (_body->pause.Get() && _body->ToRun()) {
        _body->pauseEvent.Wait();
    }
    VC_LOG(Info, kProcName, "Thread: CThreadBase: OnThreadProc after  pause wait");
    _body->resumeDue.Set(false);
    return _body->ToRun();
}

void CThreadBase::runSelectors() {
    CSelector selector;
    while (TakeSelector(selector)) {
        VC_LOG(Info, "Ubrix::CThreadBase::runSelectors", "runSelectors has selector");
        selector.Run();
    }
}

bool CThreadBase::TakeSelector(CSelector& selector) {
    Platform::ScopedLock lock(_body->mutex);
    if (_body->selectors.empty()) {
        return false;
    }
    selector = _body->selectors.front();
    _body->selectors.pop_front();
    return true;
}

void CThreadBase::AddSelector(CSelector const& selector) {
    Platform::ScopedLock lock(_body->mutex);
    _body->selectors.push_back(selector);
}

}  // namespace Ubrix
