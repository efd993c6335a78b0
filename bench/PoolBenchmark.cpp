// The pool: from AddOperation to Run when it is idle, and the processor time that an idle pool takes, in
// percent of one core: with nothing in it, and with one operation that runs once a second.
#include <VelmorCore/Operation.h>
#include <benchmark/benchmark.h>

#include <chrono>
#include <ctime>
#include <thread>

#include "Platform/Event.h"

namespace {

using Clock = std::chrono::steady_clock;

// Longer than the threads' start.
constexpr std::chrono::milliseconds kWarmUp{300};
constexpr std::chrono::seconds kWatched{3};

struct Arrival {
    Clock::time_point at;
    Ubrix::Platform::Event came;

    static void Run(Ubrix::Operation*, void* data) {
        auto* arrival = static_cast<Arrival*>(data);
        arrival->at = Clock::now();
        arrival->came.Set();
    }
};

void PoolAddToRun(benchmark::State& state) {
    Ubrix::OperationQueue* const queue = Ubrix::OperationQueue::GetInstance();
    std::this_thread::sleep_for(kWarmUp);
    Arrival arrival;
    unsigned int step = 0;
    for (auto _ : state) {
        // Additions fall anywhere in a tick.
        std::this_thread::sleep_for(std::chrono::milliseconds(40 + ++step % 10));
        Clock::time_point const added = Clock::now();
        queue->AddOperation(Arrival::Run, &arrival, false);
        arrival.came.Wait();
        state.SetIterationTime(std::chrono::duration<double>(arrival.at - added).count());
    }
}

double ProcessorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

void WatchPool(benchmark::State& state) {
    std::this_thread::sleep_for(kWarmUp);
    for (auto _ : state) {
        double const before = ProcessorSeconds();
        std::this_thread::sleep_for(kWatched);
        double const watched = std::chrono::duration<double>(kWatched).count();
        state.counters["core%"] = (ProcessorSeconds() - before) / watched * 100.0;
    }
}

void PoolIdle(benchmark::State& state) {
    Ubrix::OperationQueue::GetInstance();
    WatchPool(state);
}

void PoolOnceASecond(benchmark::State& state) {
    static Ubrix::Operation* heartbeat = nullptr;
    Ubrix::OperationQueue::GetInstance()->AddOperation(
        [](Ubrix::Operation* operation, void*) {
            heartbeat = operation;
            operation->Sleep(1000);
        },
        nullptr, true);
    WatchPool(state);
    heartbeat->Cancel();
}

BENCHMARK(PoolAddToRun)->UseManualTime()->Iterations(100)->Unit(benchmark::kMillisecond);
BENCHMARK(PoolIdle)->Iterations(1)->UseRealTime();
BENCHMARK(PoolOnceASecond)->Iterations(1)->UseRealTime();

}  // namespace
