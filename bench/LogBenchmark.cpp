// The log beside a public peer in the same run: a filtered call, and a 100-byte message into a file with the
// console off. The peer flushes at each line, since each of our lines has gone through the file's stream when
// the call returns.
#include <VelmorCore/Log.h>
#include <benchmark/benchmark.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <memory>
#include <string>

namespace {

constexpr char kMessage[] =
    "0123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789";

std::shared_ptr<spdlog::logger> Peer() {
    static std::shared_ptr<spdlog::logger> const logger = [] {
        auto made = spdlog::basic_logger_mt("peer", "peer.log", true);
        made->flush_on(spdlog::level::trace);
        made->set_level(spdlog::level::info);
        return made;
    }();
    return logger;
}

void FilteredXLog(benchmark::State& state) {
    int number = 0;
    for (auto _ : state) {
        Ubrix::XLog(Ubrix::ALogPriorityDebug, __FILE__, __LINE__, "Bench", "value %d", ++number);
    }
}

void FilteredPeer(benchmark::State& state) {
    int number = 0;
    std::shared_ptr<spdlog::logger> const logger = Peer();
    for (auto _ : state) {
        logger->debug("value {}", ++number);
    }
}

void FileXLog(benchmark::State& state) {
    Ubrix::SetConsoleOutput(false);
    for (auto _ : state) {
        Ubrix::XLog(Ubrix::ALogPriorityInfo, __FILE__, __LINE__, "Bench", "%s", kMessage);
    }
}

void FilePeer(benchmark::State& state) {
    std::shared_ptr<spdlog::logger> const logger = Peer();
    for (auto _ : state) {
        logger->info("{}", kMessage);
    }
}

BENCHMARK(FilteredXLog);
BENCHMARK(FilteredPeer);
BENCHMARK(FileXLog)->Threads(1)->Threads(4)->UseRealTime();
BENCHMARK(FilePeer)->Threads(1)->Threads(4)->UseRealTime();

}  // namespace
