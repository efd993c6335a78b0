// The request task.
#pragma once

#include <VelmorCore/Http.h>

#include <memory>
#include <string>

#include "System/WWW/Task/DataTaskRequest.h"
#include "System/WWW/Task/DataTaskState.h"
#include "System/WWW/Task/WWWTaskBase.h"

namespace Ubrix {

// A worker never touches its task: it owns a copy of what it needs and shares the state, so that the task can
// go at any time. Threads and locks are told in the state's own comment.
class DataTaskImpl : public WWWTaskBase, public DataTask {
public:
    // `listener` may be null. Given here it is set without the lock.
    explicit DataTaskImpl(char const* url, Listener* listener = nullptr);
    ~DataTaskImpl() override;

    void Get() override;
    void Post(void const* data, std::size_t length) override;
    void SetListener(Listener* listener) override;
    void RemoveListener(Listener* listener) override;
    void Cancel() override;

    // Get for callers that must know whether an outcome will come: false if it won't. Never waits for a
    // listener's call. `task` was made by WWW::Request.
    static bool TryGet(DataTask* task);
    bool IsRequesting() const { return _state->IsRequesting(); }

private:
    // After NoThread the task is idle again, and no listener was told.
    enum class Start { Started, Busy, NoThread };

    Start Begin(std::string body);
    void BeginOrTell(std::string body);
    static void RunWorker(void* request);
    static void OnThreadProc(DataTaskRequest const& request);

    std::shared_ptr<DataTaskState> const _state;
};

}  // namespace Ubrix
