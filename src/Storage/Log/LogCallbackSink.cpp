#include "Storage/Log/LogCallbackSink.h"

#include <new>
#include <string>
#include <utility>
#include <vector>

#include "Platform/CallTurn.h"
#include "Platform/Immortal.h"
#include "Platform/LastError.h"
#include "Platform/LockDepth.h"
#include "Platform/MemoryWant.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

using Platform::CallTurn;
using Platform::LockDepth;

struct LogCallbackSink::Waiting {
    std::shared_ptr<LogCallbackSink> sink;
    ALogPriority level;
    std::string line;
};

// What the calling thread's lines have come to. Without a destructor: the thread may log while its other
// objects go.
struct LogCallbackSink::ThreadRecord {
    // The lines that wait; null for none.
    std::vector<Waiting>* queue = nullptr;
    unsigned int lost = 0;
    // Calls of the callback that the thread is in, and the lines that the outermost has caused so far.
    unsigned int depth = 0;
    unsigned int caused = 0;
};

thread_local LogCallbackSink::ThreadRecord LogCallbackSink::t_record;

// One call of the callback, for the length of a scope.
class LogCallbackSink::Entry {
public:
    Entry() { ++t_record.depth; }
    ~Entry() {
        if (--t_record.depth == 0) {
            t_record.caused = 0;
        }
    }
    Entry(Entry const&) = delete;
    Entry& operator=(Entry const&) = delete;

    static bool MayBegin() {
        ThreadRecord& record = t_record;
        return record.depth == 0 || (record.depth < kDeepest && record.caused++ < kMostCaused);
    }
};

namespace {

std::atomic<bool> g_toldOfDepth{false};

// All callbacks' one turn. Never destroyed: threads may log to the very end of the process.
CallTurn& TheTurn() {
    static Platform::Immortal<CallTurn> turn(CallTurn::WhileWaiting::GivenUp);
    return *turn;
}

}  // namespace

void LogCallbackSink::Pass(ALogPriority level, char const* line) {
    if (_callback.load(std::memory_order_relaxed) == nullptr) {
        return;
    }
    if (LockDepth::HoldsLock()) {
        Keep(level, line);
    } else {
        Call(level, line);
    }
}

void LogCallbackSink::Call(ALogPriority level, char const* line) {
    if (!Entry::MayBegin()) {
        if (!g_toldOfDepth.exchange(true)) {
            VC_LOG_CONSOLE(Warning, "Ubrix::LogCallbackSink::Call",
                           "the log callback logs without an end; it doesn't get all of that");
        }
        return;
    }
    Platform::ScopedTurn const turn(TheTurn());
    if (LogCallback const callback = _callback.load(std::memory_order_acquire)) {
        Entry const entry;
        Platform::CallOut const out;
        callback(level, line);
    }
}

void LogCallbackSink::Keep(ALogPriority level, char const* line) {
    ThreadRecord& record = t_record;
    LockDepth::RunWhenReleased(&LogCallbackSink::PassWaiting);
    try {
        Platform::UnwindScope const scope;
        if (record.queue == nullptr) {
            record.queue = new std::vector<Waiting>;
        }
        if (record.queue->size() < kMostWaiting) {
            record.queue->push_back({shared_from_this(), level, line});
            return;
        }
    } catch (std::bad_alloc const&) {
        // Told with those that found no room.
    }
    ++record.lost;
}

void LogCallbackSink::PassWaiting() {
    // The lock was released somewhere between a failed system call and its check.
    Platform::LastErrorKeeper const keeper;
    // Taken out first: lines that the callback causes reach it inside that call, ahead of those that wait.
    std::unique_ptr<std::vector<Waiting>> const queue(std::exchange(t_record.queue, nullptr));
    unsigned int const lost = std::exchange(t_record.lost, 0U);
    if (queue != nullptr) {
        for (Waiting const& waiting : *queue) {
            waiting.sink->Call(waiting.level, waiting.line.c_str());
        }
    }
    if (lost > 0) {
        VC_LOG(Warning, "Ubrix::LogCallbackSink::PassWaiting",
               "%u log lines found no room to wait for the callback", lost);
    }
}

}  // namespace Ubrix
