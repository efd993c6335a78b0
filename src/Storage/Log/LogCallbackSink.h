// The log's third sink: one function of the game's, which may call every function of the library.
#pragma once

#include <VelmorCore/Log.h>

#include <atomic>
#include <memory>

namespace Ubrix {

// Thread-safe. The callback sees one line at a time across all threads, by a turn that isn't a lock
// (Platform::CallTurn) and that is waited for only while no lock of the library is held. It never runs while
// its thread holds one: a line that arises then waits in a queue of the thread's own, and is passed on, in
// order, as soon as the thread has released its last lock. Since a thread's lines never wait while it holds
// no lock, none is left when it ends.
//
// A callback that waits in the library gives the turn up for that time. It may then be called on another
// thread before it returns, as it may be called again on its own thread when it logs.
class LogCallbackSink : public std::enable_shared_from_this<LogCallbackSink> {
public:
    // At most this many lines of a thread wait. The callback loses what comes beyond that, and what there is
    // no memory for; a Warning line tells how many as soon as the rest is passed on.
    static constexpr unsigned int kMostWaiting = 256;
    // How deep calls of the callback are nested on one thread, and how many lines one call may cause
    // inside itself. A callback that logs without an end loses what comes beyond; the console tells it once.
    static constexpr unsigned int kDeepest = 16;
    static constexpr unsigned int kMostCaused = 1000;

    // Null: none. A call that is running on another thread may still end afterwards; none begins.
    void Set(LogCallback callback) { _callback.store(callback, std::memory_order_release); }
    // Passes the line on, now or when the thread holds no lock any more. Doesn't fail.
    void Pass(ALogPriority level, char const* line);

private:
    struct Waiting;
    struct ThreadRecord;
    class Entry;

    void Call(ALogPriority level, char const* line);
    void Keep(ALogPriority level, char const* line);
    static void PassWaiting();

    static thread_local ThreadRecord t_record;
    std::atomic<LogCallback> _callback{nullptr};
};

}  // namespace Ubrix
