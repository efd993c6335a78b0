// Makes and releases the core over and over, with every service at work on threads of their own: reads,
// fetches, timers, the pool, network and lifecycle observers, module views, platform objects, config files,
// log lines with a callback that comes back. Whoever stands still is told with all stacks. At the end nothing
// may be left behind.
#include <VelmorCore/VelmorCore.hpp>

#include <cstring>
#include <memory>
#include <vector>

#include "OwnProcess.h"
#include "System/Application/Application.h"
#include "System/PlatformObject/CPlatformClassRegistry.h"
#include "System/PlatformObject/CPlatformObject.h"
#include "Watchdog.h"

namespace {

using namespace Ubrix;

std::atomic<int> g_failures{0};

void Expect(bool condition, char const* what) {
    if (!condition && ++g_failures < 10) {
        std::fprintf(stderr, "FAILED: %s\n", what);
    }
}

// Answers every other request, with one of two modules' keys.
class Server final : public IHttpTransport {
public:
    int Perform(HttpRequest const&, IHttpExchange& exchange) override {
        if (_count++ % 2 != 0) {
            return HttpErrorCannotConnect;
        }
        static char const kAnswer[] =
            R"({"biz_data":{"rule_id":1,"merged_cfg":{"Game":{"a":1},"":{"a":1}}}})";
        exchange.SetStatus(200);
        exchange.AppendBody(kAnswer, sizeof kAnswer - 1);
        return 0;
    }

private:
    std::atomic<int> _count{0};
};

void Read() {
    // Kept over every release.
    static IVelmorCore& core = IVelmorCore::GetInstance();
    static Velmor::Configure* const configure = Velmor::Configure::GetInstance();
    static INetwork& network = INetwork::GetInstance();
    char text[64];
    int const a = ubrix_remoteconfig_GetInt("a", 7);
    Expect(a == 1 || a == 7, "a value or the default");
    ubrix_remoteconfig_GetString("a", text, sizeof text, "");
    ubrix_remoteconfig_GetDouble("a", 1.5);
    configure->GetLong("Game", "a", 7);
    core.SetLogLevel(3);
    VelmorSDKLog_setAllLogLevel(3);
    Expect(network.GetNetworkState() == ANetworkStateReachable, "the network's state");
    Expect(ubrix_network_GetDetailNetworkInfo(text, sizeof text), "the network's record");
    Expect(Ubrix_system_GetUUID(text, sizeof text), "the device id");
    VelmorCore_GetDefaultHandler()->GetFromCache("s", "k", 0);
    std::this_thread::yield();
}

void Fetch() {
    static int count = 0;
    velmorcore_configure_seturl(++count % 2 == 0 ? "https://a.velmor.example" : "https://b.velmor.example");
    Velmor::Configure::GetInstance()->Start();
    if (count % 7 == 0) {
        velmorcore_configure_clear();
    }
    CNetwork::GetInstance().OnNetworkStateChanged(ANetworkStateReachable);
}

class ViewObserver final : public Velmor::RemoteConfigObserver {
    void OnRemoteConfigRefreshed(Velmor::IRemoteConfig* config, Velmor::IStringIterator* keys) override {
        config->GetInt(keys->Next(), 0);
    }
};

void View() {
    static Velmor::RemoteConfig lasting("Game");
    static ViewObserver observer;
    static auto const begun = (lasting.AddObserver(&observer), true);
    static_cast<void>(begun);
    ViewObserver second;
    Velmor::RemoteConfig view("Game");
    view.AddObserver(&second);
    view.Fetch();
    view.SetUserInfo(1, "player");
    view.RemoveObserver(&second);
}

void Time() {
    static CTimer lasting;
    static std::vector<unsigned int> ids;
    auto const call = [](unsigned int, void*) { ubrix_remoteconfig_GetInt("a", 7); };
    ids.push_back(lasting.StartTimer(0, true, call, nullptr));
    if (ids.size() > 4) {
        lasting.StopTimer(ids.front());
        ids.erase(ids.begin());
    }
    CTimer brief;
    brief.StartTimer(0, false, call, nullptr);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

void Work() {
    static OperationQueue* const pool = OperationQueue::GetInstance();
    auto const function = [](Operation* operation, void*) {
        operation->Sleep(20);
        velmorcore_getInstance();
    };
    pool->AddOperation(function, nullptr, false);
    auto* const target = new OperationTargetBase;
    pool->AddOperation(target, nullptr, nullptr, true);
    target->Cancel(true);
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
}

class Ear final : public CNetworkObserver {
public:
    ~Ear() override { INetwork::GetInstance().RemoveObserver(this); }
    void OnNetworkStateChanged(ANetworkState) override { ubrix_network_GetNetworkState(); }
};

void Hear() {
    Ear ear;
    INetwork::GetInstance().AddObserver(&ear);
    ubrix_network_SetNetworkChangedCallback([](ANetworkState) { velmorcore_getInstance(); });
    ubrix_target_unity_update();
    std::this_thread::yield();
}

class Lifecycle final : public IApplicationObserver {
public:
    void OnLifecycleEvent1() override {}
    void OnLifecycleEvent2() override {}
    void OnPause() override { ubrix_remoteconfig_GetBool("a", false); }
    void OnResume() override {}
    void OnLifecycleEvent5() override {}
    void OnTerminate() override {}
};

void Live() {
    Lifecycle observer;
    CApplication::GetInstance().OnPause();
    static int count = 0;
    if (++count % 16 == 0) {
        CApplication::GetInstance().Terminate();
    }
}

// Says goodbye to its managed twin, which may end the core.
struct Twin final : CPlatformObject {
    ~Twin() override { SendVoidMethod(1); }
};

struct Twins final : IPlatformObjectCreator {
    IPlatformObject* CreateObject() override { return new Twin; }
} g_twins;

void Bridge() {
    static std::int64_t id = 0;
    setSarnetSendVoidMethodCallback([](std::int64_t number, std::intptr_t) {
        if (number % 8 == 0) {
            velmorcore_releaseInstance();
        }
    });
    ++id;
    addPlatformObject(id, "Stress");
    if (id % 3 != 0) {
        removePlatformObject(id);
    }
    std::this_thread::yield();
}

void Store() {
    VelmorCoreConfigFile* file = VelmorCore_NewConfigFile("Stress");
    file->SetCache("s", "k", 1);
    Expect(file->GetFromCache("s", "k", 0) == 1, "what was set stands");
    static std::atomic<int> count{0};
    if (++count % 8 == 0) {
        file->SaveCacheToFile();
    }
    VelmorCore_DeleteConfigFile(&file);
}

void Log() {
    static int count = 0;
    VelmorCore_SetUbrixLogCallback([](ALogPriority, char const* line) {
        velmorcore_getInstance();
        ubrix_remoteconfig_GetInt("a", 7);
        if (std::strstr(line, "bring it down") != nullptr) {
            velmorcore_releaseInstance();
        }
    });
    VelmorCore_XLog(ALogPriorityError, "s.cpp", 1, "f", ++count % 64 == 0 ? "bring it down" : "a line");
    if (count % 10 == 0) {
        VelmorCore_SetUbrixLogCallback(nullptr);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

// By the watchdog's numbers.
constexpr void (*kRoles[])() = {Read, Read, Fetch, View, Time, Work, Hear, Live, Bridge, Store, Store, Log};

// Waits up to a minute until the threads that the library started have ended.
bool AwaitThreads(int count) {
    for (int i = 0; i < 6000 && Stress::CountOwn("task") > count; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return Stress::CountOwn("task") <= count;
}

}  // namespace

int main(int argc, char** argv) {
    bool const full = argc > 1 && std::strcmp(argv[1], "full") == 0;
    int const cycles = full ? 1000 : 40;
    // A sanitizer may have one of its own.
    int const threadsBefore = Stress::CountOwn("task");
    static Server server;
    SetHttpTransport(&server);
    SetConsoleOutput(false);
    ubrix_target_unity_enable_ui_update();
    CPlatformClassRegistry::GetInstance().RegisterCreator("Stress.REQ", &g_twins);
    std::size_t const roles = std::size(kRoles);
    // The last one is the cycles.
    Stress::Watchdog watchdog(roles + 1, std::chrono::seconds(60));
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    for (std::size_t role = 0; role < roles; ++role) {
        threads.emplace_back([&stop, &watchdog, role] {
            for (; !stop; watchdog.Step(role)) {
                kRoles[role]();
            }
            watchdog.Leave(role);
        });
    }
    for (int cycle = 0; cycle < cycles; ++cycle) {
        velmorcore_init();
        std::this_thread::sleep_for(std::chrono::milliseconds(cycle % 16));
        velmorcore_releaseInstance();
        watchdog.Step(roles);
    }
    stop = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
    VelmorCore_SetUbrixLogCallback(nullptr);
    velmorcore_init();
    velmorcore_releaseInstance();
    watchdog.Leave(roles);
    // What is left is the watchdog's, and the lasting timers'.
    Expect(AwaitThreads(threadsBefore + 1 + 4), "the library's threads end");
    std::printf("%d cycles of release and remake, %zu threads at work, %d failures\n", cycles,
                std::size(kRoles), g_failures.load());
    std::fflush(stdout);
    _exit(g_failures == 0 ? 0 : 1);
}
