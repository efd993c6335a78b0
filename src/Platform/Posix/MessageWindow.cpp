#include "Platform/MessageWindow.h"

#include <deque>
#include <map>
#include <utility>

#include "Platform/Condition.h"
#include "Platform/Immortal.h"
#include "Platform/Mutex.h"
#include "Platform/SystemClock.h"
#include "Platform/Thread.h"

namespace Ubrix::Platform {

namespace {

// A message whose sender waits; it is on the sender's stack.
struct SentMessage {
    unsigned int message;
    void* parameter;
    bool answered = false;
    bool handled = false;
};

struct PostedMessage {
    unsigned int message;
    void* parameter;
};

struct Window {
    unsigned int thread;
    WindowProcedure procedure;
    std::deque<SentMessage*> sent;
    std::deque<PostedMessage> posted;
};

// All windows of the process. The one lock guards every window and every sent message, and is never held
// while a procedure runs; each change wakes everybody, for windows and their messages are few.
struct OpenWindows {
    RecursiveMutex mutex;
    Condition changed{mutex};
    std::map<WindowHandle, Window> windows VC_GUARDED_BY(mutex);
    std::uintptr_t lastHandle VC_GUARDED_BY(mutex) = 0;
};

// Never destroyed: threads may end, and close their windows, after the process has begun to exit.
OpenWindows& TheWindows() {
    static Immortal<OpenWindows> all;
    return *all;
}

bool HasSent(Window const& window) {
    return !window.sent.empty();
}

bool HasPosted(Window const& window) {
    return !window.posted.empty();
}

bool HasAny(Window const& window) {
    return HasSent(window) || HasPosted(window);
}

using WindowEntry = std::pair<WindowHandle const, Window>;

// The calling thread's first window that `test` accepts, or null.
WindowEntry* FindOwnWindow(OpenWindows& all, bool (*test)(Window const&)) VC_REQUIRES(all.mutex) {
    unsigned int const thread = CurrentThreadNumber();
    for (WindowEntry& entry : all.windows) {
        if (entry.second.thread == thread && test(entry.second)) {
            return &entry;
        }
    }
    return nullptr;
}

// Lets the sender go on, whichever way the procedure was left.
class Answer {
public:
    Answer(OpenWindows& all, SentMessage& sent) : _all(all), _sent(sent) {}
    ~Answer() {
        ScopedLock lock(_all.mutex);
        _sent.answered = true;
        _sent.handled = true;
        _all.changed.Broadcast();
    }
    Answer(Answer const&) = delete;
    Answer& operator=(Answer const&) = delete;

private:
    OpenWindows& _all;
    SentMessage& _sent;
};

// Handles the oldest message sent to a window of the calling thread. False if there is none.
bool HandleSent(OpenWindows& all) {
    WindowHandle handle = WindowHandle::None;
    WindowProcedure procedure{};
    SentMessage* sent = nullptr;
    {
        ScopedLock lock(all.mutex);
        WindowEntry* entry = FindOwnWindow(all, HasSent);
        if (entry == nullptr) {
            return false;
        }
        handle = entry->first;
        procedure = entry->second.procedure;
        sent = entry->second.sent.front();
        entry->second.sent.pop_front();
    }
    Answer const answer(all, *sent);
    procedure.handle(handle, sent->message, sent->parameter);
    return true;
}

// The same for posted messages.
bool HandlePosted(OpenWindows& all) {
    WindowHandle handle = WindowHandle::None;
    WindowProcedure procedure{};
    PostedMessage posted{};
    {
        ScopedLock lock(all.mutex);
        WindowEntry* entry = FindOwnWindow(all, HasPosted);
        if (entry == nullptr) {
            return false;
        }
        handle = entry->first;
        procedure = entry->second.procedure;
        posted = entry->second.posted.front();
        entry->second.posted.pop_front();
    }
    procedure.handle(handle, posted.message, posted.parameter);
    return true;
}

// Waits until a message came to a window of the calling thread, or the time ran out.
void AwaitMessage(OpenWindows& all, unsigned int milliseconds) {
    long long const end = MonotonicMilliseconds() + milliseconds;
    ScopedLock lock(all.mutex);
    while (FindOwnWindow(all, HasAny) == nullptr) {
        long long const left = end - MonotonicMilliseconds();
        if (left <= 0) {
            return;
        }
        all.changed.WaitFor(static_cast<unsigned int>(left));
    }
}

// Waits until the message was answered, and serves the calling thread's own windows meanwhile.
bool AwaitAnswer(OpenWindows& all, SentMessage const& sent) {
    for (;;) {
        while (HandleSent(all)) {
        }
        ScopedLock lock(all.mutex);
        if (sent.answered) {
            return sent.handled;
        }
        if (FindOwnWindow(all, HasSent) == nullptr) {
            all.changed.Wait();
        }
    }
}

// Closes the windows of a thread that ends.
struct ThreadEnd {
    bool hasWindows = false;
    ~ThreadEnd() {
        while (hasWindows && CloseOne()) {
        }
    }

private:
    static bool CloseOne() {
        OpenWindows& all = TheWindows();
        WindowHandle window = WindowHandle::None;
        {
            ScopedLock lock(all.mutex);
            WindowEntry const* entry = FindOwnWindow(all, [](Window const&) { return true; });
            window = entry != nullptr ? entry->first : WindowHandle::None;
        }
        return CloseMessageWindow(window);
    }
};

thread_local ThreadEnd t_threadEnd;

}  // namespace

WindowHandle OpenMessageWindow(WindowProcedure const& procedure) {
    t_threadEnd.hasWindows = true;
    OpenWindows& all = TheWindows();
    ScopedLock lock(all.mutex);
    auto const handle = static_cast<WindowHandle>(++all.lastHandle);
    all.windows.emplace(handle, Window{CurrentThreadNumber(), procedure, {}, {}});
    return handle;
}

bool MessageWindowExists(WindowHandle window) {
    OpenWindows& all = TheWindows();
    ScopedLock lock(all.mutex);
    return all.windows.count(window) != 0;
}

bool CloseMessageWindow(WindowHandle window) {
    OpenWindows& all = TheWindows();
    Window closed{};
    {
        ScopedLock lock(all.mutex);
        auto const found = all.windows.find(window);
        if (found == all.windows.end() || found->second.thread != CurrentThreadNumber()) {
            return false;
        }
        closed = std::move(found->second);
        all.windows.erase(found);
        for (SentMessage* sent : closed.sent) {
            sent->answered = true;
        }
        all.changed.Broadcast();
    }
    for (PostedMessage const& posted : closed.posted) {
        closed.procedure.discard(posted.message, posted.parameter);
    }
    return true;
}

bool SendToMessageWindow(WindowHandle window, unsigned int message, void* parameter) {
    OpenWindows& all = TheWindows();
    SentMessage sent{message, parameter};
    WindowProcedure procedure{};
    {
        ScopedLock lock(all.mutex);
        auto const found = all.windows.find(window);
        if (found == all.windows.end()) {
            return false;
        }
        if (found->second.thread == CurrentThreadNumber()) {
            procedure = found->second.procedure;
        } else {
            found->second.sent.push_back(&sent);
            all.changed.Broadcast();
        }
    }
    if (procedure.handle == nullptr) {
        return AwaitAnswer(all, sent);
    }
    procedure.handle(window, message, parameter);
    return true;
}

bool PostToMessageWindow(WindowHandle window, unsigned int message, void* parameter) {
    OpenWindows& all = TheWindows();
    ScopedLock lock(all.mutex);
    auto const found = all.windows.find(window);
    if (found == all.windows.end()) {
        return false;
    }
    found->second.posted.push_back({message, parameter});
    all.changed.Broadcast();
    return true;
}

bool PumpMessages(unsigned int waitMilliseconds) {
    OpenWindows& all = TheWindows();
    AwaitMessage(all, waitMilliseconds);
    bool handled = false;
    while (HandleSent(all) || HandlePosted(all)) {
        handled = true;
    }
    return handled;
}

}  // namespace Ubrix::Platform
