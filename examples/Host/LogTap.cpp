#include "LogTap.h"

#include <VelmorCore/Log.h>

#include <algorithm>
#include <deque>
#include <mutex>

#include "Journal.h"

namespace Host {

namespace {

constexpr std::size_t kKept = 1000;

// A call that began before the callback was cleared may still run, so this outlives every LogTap.
struct TapState {
    std::mutex mutex;
    Journal* journal = nullptr;
    int lines = 0;
    int debugLines = 0;
    std::deque<std::string> kept;
};

TapState& State() {
    static auto* const state = new TapState;
    return *state;
}

void OnLine(VelmorCoreLogPriority level, char const* line) {
    TapState& state = State();
    std::lock_guard<std::mutex> const lock(state.mutex);
    if (state.journal == nullptr) {
        return;
    }
    ++state.lines;
    state.debugLines += level == Velmor::ALogPriorityDebug ? 1 : 0;
    state.kept.emplace_back(line);
    if (state.kept.size() > kKept) {
        state.kept.pop_front();
    }
    if (level == Velmor::ALogPriorityError) {
        state.journal->Say(std::string("log: ") + line);
    }
}

}  // namespace

LogTap::LogTap(Journal& journal) {
    {
        std::lock_guard<std::mutex> const lock(State().mutex);
        State().journal = &journal;
    }
    VelmorCore_SetUbrixLogCallback(OnLine);
}

LogTap::~LogTap() {
    VelmorCore_SetUbrixLogCallback(nullptr);
    std::lock_guard<std::mutex> const lock(State().mutex);
    State().journal = nullptr;
}

int LogTap::Lines() const {
    std::lock_guard<std::mutex> const lock(State().mutex);
    return State().lines;
}

int LogTap::DebugLines() const {
    std::lock_guard<std::mutex> const lock(State().mutex);
    return State().debugLines;
}

bool LogTap::Heard(std::string const& text) const {
    auto& state = State();
    std::lock_guard<std::mutex> const lock(state.mutex);
    return std::any_of(state.kept.begin(), state.kept.end(),
                       [&text](std::string const& line) { return line.find(text) != std::string::npos; });
}

}  // namespace Host
