// A log callback may call every function: threads log, with locks of the library held and without, use every
// service, and the callback, on whichever thread, calls whatever there is. Nobody may wait for ever, and no
// line may reach the callback under a lock.
#include <VelmorCore/FileUploader.h>
#include <VelmorCore/Http.h>
#include <VelmorCore/HttpTransport.h>
#include <VelmorCore/Log.h>
#include <VelmorCore/RemoteConfig.h>
#include <VelmorCore/Timer.h>
#include <VelmorCore/velmorcore.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "Children.h"
#include "Platform/CallTurn.h"
#include "Platform/LockDepth.h"
#include "Platform/Mutex.h"
#include "Watchdog.h"

namespace {

namespace Platform = Ubrix::Platform;

constexpr std::size_t kWorkers = 6;
constexpr int kDeepest = 3;

std::atomic<long long> g_lines{0};
std::atomic<long long> g_calls{0};
std::atomic<long long> g_underLock{0};
std::atomic<bool> g_isOver{false};
thread_local unsigned int t_random = 0;
thread_local int t_depth = 0;

// The same sequence on each thread in each run; threads make the difference.
unsigned int Random() {
    static std::atomic<unsigned int> seed{1};
    if (t_random == 0) {
        t_random = seed++ * 2654435761U;
    }
    t_random = t_random * 1664525U + 1013904223U;
    return t_random >> 8;
}

void Say(char const* text) {
    VelmorCore_XLog(static_cast<VelmorCoreLogPriority>(Random() % 5), "f.cpp", 1, "F", text);
}

// Answers at once: each module once more, and an order for the uploader.
class Answerer final : public Ubrix::IHttpTransport {
public:
    int Perform(Ubrix::HttpRequest const&, Ubrix::IHttpExchange& exchange) override {
        static constexpr char kAnswer[] =
            R"({"biz_data":{"merged_cfg":{"":{"k":"1"},"Mod":{"a":"b"},"VelmorCore":{"LogLevel":"Debug"},)"
            R"("Upload":{"file_path":"VelmorSDKLog","file_pattern":"*","upload_id":"id"}}}})";
        exchange.SetStatus(200);
        exchange.AppendBody(kAnswer, sizeof kAnswer - 1);
        return Random() % 4 == 0 ? 12002 : 0;
    }
};

class TalkingListener : public Ubrix::DataTask::Listener {
public:
    void OnDataTaskFinished(Ubrix::DataTask*, int, int, char const*, std::uint64_t) override {
        Say("finished");
    }
};

class TalkingObserver : public Velmor::RemoteConfigObserver {
public:
    void OnRemoteConfigRefreshed(Velmor::IRemoteConfig*, Velmor::IStringIterator*) override {
        Say("refreshed");
    }
};

// Locks as the library's own, taken in their order.
struct Shared {
    Platform::RecursiveMutex outer;
    Platform::RecursiveMutex inner;
    Platform::CallTurn turn;
    Ubrix::CTimer timer;
    TalkingListener listener;
    Velmor::RemoteConfig view{"Mod"};
    TalkingObserver observer;
    Ubrix::DataTask* task = Ubrix::WWW::Request("https://a.example/");
};

Shared& TheShared() {
    static auto* const shared = new Shared;
    return *shared;
}

template <typename... Words>
void Ignore(std::int64_t, Words...) {
    Say("managed");
}

void UseConfigFile() {
    VelmorCoreConfigFile* file = VelmorCore_NewConfigFile(("own" + std::to_string(Random())).c_str());
    VelmorCore_DeleteConfigFile(&file);
}

void UseTimer() {
    Shared& shared = TheShared();
    unsigned int const id = shared.timer.StartTimer(
        0, false, [](unsigned int, void*) { Say("timer"); }, nullptr);
    shared.timer.StopTimer(id);
}

void UseView() {
    Shared& shared = TheShared();
    shared.view.AddObserver(&shared.observer);
    shared.view.Fetch();
    shared.view.RemoveObserver(&shared.observer);
}

// One request at a time; the first of them to come starts it.
void UseTask() {
    Shared& shared = TheShared();
    shared.task->SetListener(Random() % 2 == 0 ? &shared.listener : nullptr);
    shared.task->Get();
}

// Every C function, and what else the library offers that logs or waits.
std::vector<std::function<void()>> const& Functions() {
    static auto const& functions = *new std::vector<std::function<void()>>{
        [] { velmorcore_getInstance(); },
        [] { velmorcore_init(); },
        [] { velmorcore_releaseInstance(); },
        [] { velmorcore_setLogLevel(static_cast<int>(Random() % 2)); },
        [] { VelmorSDKLog_setLogLevel("VelmorCore", 0); },
        [] { VelmorSDKLog_setAllLogLevel(0); },
        [] { VelmorCore_SetUbrixLogLevel(static_cast<VelmorCoreLogPriority>(Random() % 2)); },
        [] { Say("own"); },
        [] { VelmorCore_GetDefaultHandler(); },
        UseConfigFile,
        [] { velmorcore_configure_seturl(Random() % 2 == 0 ? "https://a.example" : "https://b.example"); },
        [] { velmorcore_configure_clear(); },
        [] { ubrix_remoteconfig_GetInt("k", 1); },
        [] { ubrix_remoteconfig_GetLong("k", 1); },
        [] { ubrix_remoteconfig_GetDouble("k", 1); },
        [] { ubrix_remoteconfig_GetBool("k", true); },
        [] {
            char text[16];
            ubrix_remoteconfig_GetString("k", text, sizeof text, "");
        },
        [] { ubrix_target_unity_update(); },
        [] { addPlatformObject(static_cast<std::int64_t>(Random()), "Unknown"); },
        [] { removePlatformObject(1); },
        [] { setSarnetSendVoidMethodCallback(nullptr); },
        [] { setSarnetSendMessageCallback(Ignore<std::intptr_t>); },
        [] { setSarnetSendBufferCallback(nullptr); },
        [] { ubrix_network_GetNetworkState(); },
        [] {
            std::array<char, 64> record;
            ubrix_network_GetDetailNetworkInfo(record.data(), static_cast<int>(record.size()));
        },
        [] { ubrix_network_SetNetworkChangedCallback([](VelmorCoreNetworkState) { Say("network"); }); },
        [] {
            char id[40];
            Ubrix_system_GetUUID(id, sizeof id);
        },
        [] { Ubrix_system_GetIDFA(); },
        [] { Ubrix_system_IsDeviceRooted(); },
        [] { Ubrix_system_CheckPermission(0); },
        UseTimer,
        UseTask,
        UseView,
        [] { Velmor::FileUploader::Join(); },
    };
    return functions;
}

void CallAny() {
    ++g_calls;
    Functions()[Random() % Functions().size()]();
}

// Each function's first call, with a callback that makes that call as well: nothing may be half made then.
void CallEachFirst() {
    // Threads of the library log as well.
    static std::atomic<std::function<void()> const*> first{nullptr};
    // The program's own is none of them.
    TheShared();
    VelmorCore_SetUbrixLogCallback([](VelmorCoreLogPriority, char const*) {
        if (t_depth == 0) {
            ++t_depth;
            (*first.load())();
            --t_depth;
        }
    });
    for (std::function<void()> const& function : Functions()) {
        first = &function;
        function();
    }
    VelmorCore_SetUbrixLogCallback(nullptr);
}

void OnLine(VelmorCoreLogPriority, char const*) {
    ++g_lines;
    g_underLock += Platform::LockDepth::HoldsLock() ? 1 : 0;
    if (!g_isOver && t_depth < kDeepest && Random() % 4 == 0) {
        ++t_depth;
        CallAny();
        --t_depth;
    }
}

void WorkOnce() {
    Shared& shared = TheShared();
    switch (Random() % 5) {
        case 0: {
            Platform::ScopedLock const outer(shared.outer);
            Say("under one lock");
            Platform::ScopedLock const inner(shared.inner);
            Say("under two");
            break;
        }
        case 1: {
            Platform::ScopedTurn const turn(shared.turn);
            Say("in a turn");
            break;
        }
        case 2:
            VelmorCore_SetUbrixLogCallback(Random() % 50 == 0 ? nullptr : &OnLine);
            break;
        default:
            CallAny();
    }
}

}  // namespace

int main(int argc, char** argv) {
    bool const isFull = argc > 1 && std::strcmp(argv[1], "full") == 0;
    auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(isFull ? 180 : 4);
    static Answerer answerer;
    Ubrix::SetHttpTransport(&answerer);
    Ubrix::SetConsoleOutput(false);
    ubrix_target_unity_enable_ui_update();
    VelmorSDKLog_setAllLogLevel(0);
    Stress::Watchdog dog(kWorkers, std::chrono::seconds(60));
    CallEachFirst();
    VelmorCore_SetUbrixLogCallback(&OnLine);
    std::vector<std::thread> workers;
    for (std::size_t i = 0; i < kWorkers; ++i) {
        workers.emplace_back([&dog, i, end] {
            while (std::chrono::steady_clock::now() < end) {
                WorkOnce();
                dog.Step(i);
            }
            dog.Leave(i);
        });
    }
    for (std::thread& worker : workers) {
        worker.join();
    }
    g_isOver = true;
    VelmorCore_SetUbrixLogCallback(nullptr);
    std::printf(
        "%lld lines reached the callback, %lld of them under a lock; %lld calls; nobody stood still\n",
        g_lines.load(), g_underLock.load(), g_calls.load());
    // Timers and transfers may still be winding down.
    return g_underLock == 0 && g_lines > 0 ? 0 : 1;
}
