// Collects one request's answer in memory.
#pragma once

#include <VelmorCore/HttpTransport.h>

#include <string>

#include "System/WWW/Task/DataTaskState.h"

namespace Ubrix {

// Belongs to the worker's thread.
class DataTaskExchange final : public IHttpExchange {
public:
    // The longest body that is read, in bytes; what follows is left unread.
    static constexpr std::size_t kBodyLimit = std::size_t{64} * 1024 * 1024;
    // What is kept of an explanation.
    static constexpr std::size_t kAdviceLimit = 2000;

    // `state` must outlive the object.
    DataTaskExchange(DataTaskState const& state, DataTaskState::Ticket ticket)
        : _state(state), _ticket(ticket) {}

    bool IsCancelled() override { return !_state.IsCurrent(_ticket); }
    void SetStatus(int status) override { _status = status; }
    bool AppendBody(void const* bytes, std::size_t length) override;
    void Explain(char const* advice) override;

    // 0 if no head came.
    int Status() const { return _status; }
    std::string const& Body() const { return _body; }
    // Empty if nothing was explained.
    std::string const& Advice() const { return _advice; }

private:
    DataTaskState const& _state;
    DataTaskState::Ticket _ticket;
    int _status = 0;
    std::string _body;
    std::string _advice;
};

}  // namespace Ubrix
