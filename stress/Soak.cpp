// A host's life, frame by frame: fetches that succeed and fail, log lines, timers, operations, config files,
// module views. Memory, threads and open files are counted all the while; behind the first third nothing may
// grow any more.
#include <VelmorCore/VelmorCore.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "OwnProcess.h"
#include "Sanitized.h"

namespace {

using namespace Ubrix;
using Clock = std::chrono::steady_clock;

// Fails one request of three, and answers with as many keys as the request's number says.
class Server final : public IHttpTransport {
public:
    int Perform(HttpRequest const&, IHttpExchange& exchange) override {
        int const count = _count++;
        if (count % 3 == 2) {
            return HttpErrorTimeout;
        }
        std::string body = R"({"biz_data":{"rule_id":1,"merged_cfg":{"Game":{)";
        for (int i = 0; i <= count % 50; ++i) {
            body += "\"key" + std::to_string(i) + "\":\"" + std::string(100, 'v') + "\",";
        }
        body += "\"last\":1}}}}";
        exchange.SetStatus(200);
        exchange.AppendBody(body.data(), body.size());
        return 0;
    }
    int Count() const { return _count; }

private:
    std::atomic<int> _count{0};
};

class Listener final : public Velmor::RemoteConfigObserver {
    void OnRemoteConfigRefreshed(Velmor::IRemoteConfig* config, Velmor::IStringIterator* keys) override {
        while (!keys->IsEnd()) {
            config->GetInt(keys->Next(), 0);
        }
    }
};

class Host {
public:
    Host() { _view.AddObserver(&_listener); }

    void Frame(int number) {
        ubrix_target_unity_update();
        ubrix_remoteconfig_GetInt("last", 0);
        _view.GetDouble("key1", 0);
        VelmorCore_XLog(ALogPriorityError, "Host.cpp", 1, "Frame", "a frame");
        if (number % 4 == 0) {
            // Another address now and then empties the cache.
            velmorcore_configure_seturl(number % 64 == 0 ? "https://a.velmor.example"
                                                         : "https://b.velmor.example");
            CNetwork::GetInstance().OnNetworkStateChanged(ANetworkStateReachable);
        }
        if (number % 8 == 0) {
            _timers.StopTimer(_timer);
            _timer = _timers.StartTimer(
                1, true, [](unsigned int, void*) { ubrix_network_GetNetworkState(); }, nullptr);
            OperationQueue::GetInstance()->AddOperation([](Operation*, void*) {}, nullptr, false);
        }
        if (number % 16 == 0) {
            Save(number);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }

private:
    static void Save(int number) {
        VelmorCoreConfigFile* file = VelmorCore_NewConfigFile("Soak");
        file->SetCache("s", std::to_string(number % 100).c_str(), number);
        file->SaveCacheToFile();
        VelmorCore_DeleteConfigFile(&file);
    }

    Velmor::RemoteConfig _view{"Game"};
    Listener _listener;
    CTimer _timers;
    unsigned int _timer = 0;
};

struct Figure {
    char const* name;
    long (*count)();
    // What may come on top; an allocator gives memory back when it likes.
    long slack;
    std::vector<long> samples;
};

// The least of a third of the samples: what comes and goes doesn't count, what stays does.
long FloorOf(std::vector<long> const& samples, std::size_t third) {
    std::size_t const size = samples.size() / 3;
    auto const begin = samples.begin() + static_cast<std::ptrdiff_t>(third * size);
    return *std::min_element(begin, begin + static_cast<std::ptrdiff_t>(size));
}

}  // namespace

int main(int argc, char** argv) {
    bool const full = argc > 1 && std::strcmp(argv[1], "full") == 0;
    auto const length = full ? std::chrono::milliseconds(30 * 60 * 1000) : std::chrono::milliseconds(5000);
    static Server server;
    SetHttpTransport(&server);
    SetConsoleOutput(false);
    ubrix_target_unity_enable_ui_update();
    velmorcore_init();
    // A sanitizer keeps what was freed, and its own notes: memory says nothing there.
    long const memorySlack = ::Stress::kIsSanitized ? LONG_MAX / 2 : full ? 2048 : 1024;
    Figure figures[] = {{"KiB resident", Stress::ResidentKiB, memorySlack, {}},
                        {"threads", [] { return static_cast<long>(Stress::CountOwn("task")); }, 0, {}},
                        {"open files", [] { return static_cast<long>(Stress::CountOwn("fd")); }, 0, {}}};
    int frames = 0;
    {
        Host host;
        auto const begin = Clock::now();
        auto sampleDue = begin;
        while (Clock::now() - begin < length) {
            host.Frame(++frames);
            if (Clock::now() >= sampleDue) {
                sampleDue += length / 300;
                for (Figure& figure : figures) {
                    figure.samples.push_back(figure.count());
                }
            }
        }
    }
    velmorcore_releaseInstance();
    bool grows = false;
    std::printf("%d frames, %d requests", frames, server.Count());
    for (Figure const& figure : figures) {
        long const before = FloorOf(figure.samples, 1);
        long const after = FloorOf(figure.samples, 2);
        std::printf(", %ld -> %ld %s", before, after, figure.name);
        grows = grows || after > before + figure.slack;
    }
    std::printf("\n");
    std::fflush(stdout);
    if (grows) {
        std::fprintf(stderr, "FAILED: it grows\n");
    }
    return grows ? 1 : 0;
}
