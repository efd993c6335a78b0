// What a task and the workers of its requests share. It lives as long as the last of them.
#pragma once

#include <VelmorCore/Http.h>

#include <atomic>
#include <cstdint>
#include <functional>

#include "Platform/CallTurn.h"

namespace Ubrix {

// Thread-safe. Its one turn guards the listener and covers the whole finishing step, the listener's call
// included: whoever removes the listener waits for a running call, and knows that none follows. No lock is
// held during that call. Begin, End and IsCurrent don't want the turn, so that a request can be started, or
// be refused, while a listener runs.
class DataTaskState {
public:
    // Marks one request in flight. Even numbers: none.
    using Ticket = std::uint64_t;
    static constexpr Ticket kNoTicket = 0;

    // `task` is what listeners are told; the state never looks into it. `listener` may be null.
    DataTaskState(DataTask* task, DataTask::Listener* listener) : _task(task), _listener(listener) {}
    DataTaskState(DataTaskState const&) = delete;
    DataTaskState& operator=(DataTaskState const&) = delete;

    // Marks a request as in flight. kNoTicket if one is already.
    Ticket Begin();
    // Takes the mark back, unless the request was given up before.
    void End(Ticket ticket);
    // False once the request was given up.
    bool IsCurrent(Ticket ticket) const { return _ticket.load() == ticket; }
    bool IsRequesting() const { return _ticket.load() % 2 == 1; }

    void SetListener(DataTask::Listener* listener);
    // Gives the request in flight up, unless its listener is the caller.
    void Cancel();
    // The task goes: no listener, no request.
    void Detach();

    // The finishing step of a request.
    void Finish(Ticket ticket, int errorCode, int httpStatus, char const* data, std::uint64_t length);
    // For use inside a listener's call, on its thread: `work` runs right behind it, still in the turn, but
    // with the task idle. Dropped if the task is destroyed before, the listener's own doing included.
    static void RunOnceIdle(std::function<void()> work);

private:
    void GiveUp();

    // Moves on by one at each beginning and each end.
    std::atomic<Ticket> _ticket{kNoTicket};
    Platform::CallTurn _turn;
    DataTask* _task VC_GUARDED_BY(_turn);
    DataTask::Listener* _listener VC_GUARDED_BY(_turn);
    bool _isDelivering VC_GUARDED_BY(_turn) = false;
    // The state whose listener the thread is in; null for none.
    static thread_local DataTaskState* t_delivering;
    std::function<void()> _onceIdle VC_GUARDED_BY(_turn);
};

}  // namespace Ubrix
