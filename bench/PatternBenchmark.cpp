// Matching 1,000 file names, as an upload order does for each of its patterns, beside std::regex; both read
// the pattern once and ignore case. The last rows show what a hostile pattern costs on the longest name that
// a file can bear, and the worst one on the longest name of all.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <regex>
#include <string>
#include <vector>

#include "Base/Configure/Pattern/FilePattern.h"

namespace {

constexpr char const* kPatterns[] = {"^VelmorCore_20[0-9]+\\.log$", "(crash|hang).*\\.dmp", "\\.log"};

std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (int i = 0; i < 1000; ++i) {
        char name[64];
        char const* const form = i % 3 == 0   ? "VelmorCore_202611%04d.log"
                                 : i % 3 == 1 ? "Crash-report-%04d.dmp"
                                              : "match_replay_%04d.bin";
        // NOLINTNEXTLINE(clang-diagnostic-format-nonliteral): one of the three literals above.
        std::snprintf(name, sizeof name, form, i);
        names.emplace_back(name);
    }
    return names;
}

void PatternThousandNames(benchmark::State& state) {
    std::vector<std::string> const names = Names();
    char const* const text = kPatterns[state.range(0)];
    Velmor::FilePattern pattern(text);
    int matches = 0;
    while (state.KeepRunning()) {
        matches = 0;
        for (std::string const& name : names) {
            matches += pattern.Match(name) >= 0 ? 1 : 0;
        }
        benchmark::DoNotOptimize(matches);
    }
    state.counters["matches"] = matches;
    state.SetLabel(text);
}
BENCHMARK(PatternThousandNames)->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);

void StdRegexThousandNames(benchmark::State& state) {
    std::vector<std::string> const names = Names();
    char const* const pattern = kPatterns[state.range(0)];
    std::regex const regex(pattern, std::regex::icase | std::regex::optimize);
    int matches = 0;
    while (state.KeepRunning()) {
        matches = 0;
        for (std::string const& name : names) {
            matches += std::regex_search(name, regex) ? 1 : 0;
        }
        benchmark::DoNotOptimize(matches);
    }
    state.counters["matches"] = matches;
    state.SetLabel(pattern);
}
BENCHMARK(StdRegexThousandNames)->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);

void PatternHostile(benchmark::State& state) {
    std::string const name(255, 'a');
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(Velmor::MatchPattern("(a*)*(a*)*b", name));
    }
}
BENCHMARK(PatternHostile)->Unit(benchmark::kMicrosecond);

void PatternWorst(benchmark::State& state) {
    std::string pattern(99, '(');
    for (int i = 0; i < 1890; ++i) {
        pattern += "a?";
    }
    for (int i = 0; i < 99; ++i) {
        pattern += ")*";
    }
    std::string const name(static_cast<std::size_t>(state.range(0)), 'a');
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(Velmor::MatchPattern(pattern + "b", name));
    }
}
BENCHMARK(PatternWorst)->Arg(255)->Arg(4096)->Unit(benchmark::kMillisecond);

}  // namespace
