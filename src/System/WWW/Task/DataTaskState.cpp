#include "System/WWW/Task/DataTaskState.h"

#include <utility>

#include "Platform/MemoryWant.h"

namespace Ubrix {

thread_local DataTaskState* DataTaskState::t_delivering = nullptr;

DataTaskState::Ticket DataTaskState::Begin() {
    Ticket ticket = _ticket.load();
    do {
        if (ticket % 2 == 1) {
            return kNoTicket;
        }
    } while (!_ticket.compare_exchange_weak(ticket, ticket + 1));
    return ticket + 1;
}

void DataTaskState::End(Ticket ticket) {
    _ticket.compare_exchange_strong(ticket, ticket + 1);
}

void DataTaskState::GiveUp() {
    Ticket const ticket = _ticket.load();
    if (ticket % 2 == 1) {
        End(ticket);
    }
}

void DataTaskState::SetListener(DataTask::Listener* listener) {
    Platform::ScopedTurn const turn(_turn);
    _listener = listener;
}

void DataTaskState::Cancel() {
    Platform::ScopedTurn const turn(_turn);
    if (!_isDelivering) {
        GiveUp();
    }
}

void DataTaskState::Detach() {
    Platform::ScopedTurn const turn(_turn);
    _task = nullptr;
    _listener = nullptr;
    _onceIdle = nullptr;
    GiveUp();
}

void DataTaskState::Finish(Ticket ticket, int errorCode, int httpStatus, char const* data,
                           std::uint64_t length) {
    Platform::ScopedTurn const turn(_turn);
    if (IsCurrent(ticket) && _listener != nullptr) {
        _isDelivering = true;
        Platform::CallOut const out;
        DataTaskState* const outer = std::exchange(t_delivering, this);
        _listener->OnDataTaskFinished(_task, errorCode, httpStatus, data, length);
        t_delivering = outer;
        _isDelivering = false;
    }
    End(ticket);
    std::function<void()> const work = std::exchange(_onceIdle, nullptr);
    if (work) {
        work();
    }
}

void DataTaskState::RunOnceIdle(std::function<void()> work) {
    if (t_delivering != nullptr) {
        DataTaskState& state = *t_delivering;
        Platform::ScopedTurn const turn(state._turn);
        if (state._task != nullptr) {
            state._onceIdle = std::move(work);
        }
    }
}

}  // namespace Ubrix
