// The load of ten million clients on the configuration's server over an outage of ten minutes, by the
// schedule that the library keeps. Prints a table, and writes a chart (SVG) to the path in the first
// argument.
//
// A client asks at its start and then once a gap; a request that fails is repeated as the schedule tells. A
// server that is away refuses at once; one that is there answers at once, however many ask.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "Base/Configure/FetchSchedule.h"

namespace {

using Velmor::FetchSchedule;
using Milliseconds = unsigned long long;

constexpr std::uint32_t kClients = 10000000;
constexpr Milliseconds kSecond = 1000;
constexpr Milliseconds kMinute = 60 * kSecond;
constexpr Milliseconds kHour = 60 * kMinute;
constexpr Milliseconds kOutage = 10 * kMinute;
constexpr Milliseconds kEnd = 27 * kHour;
constexpr Milliseconds kNever = ~Milliseconds{0};

// Splitmix64 (Steele, Lea and Flood, 2014): the same run each time.
class Numbers {
public:
    std::uint32_t Next() {
        std::uint64_t number = _state += 0x9E3779B97F4A7C15U;
        number = (number ^ (number >> 30U)) * 0xBF58476D1CE4E5B9U;
        number = (number ^ (number >> 27U)) * 0x94D049BB133111EBU;
        return static_cast<std::uint32_t>(number >> 32U);
    }
    Milliseconds Below(Milliseconds bound) { return bound * Next() >> 32U; }

private:
    std::uint64_t _state = 1;
};

struct Load {
    // Requests in each second, and clients whose first answer since the outage began came in it.
    std::vector<std::uint32_t> requests = std::vector<std::uint32_t>(kEnd / kSecond);
    std::vector<std::uint32_t> answers = std::vector<std::uint32_t>(kEnd / kSecond);
};

// One client from its first request on, which is at `start`.
void Play(FetchSchedule const& schedule, Milliseconds start, Numbers& numbers, Load& load) {
    Milliseconds refresh = start;
    Milliseconds retry = kNever;
    int left = 0;
    bool isAnswered = false;
    for (Milliseconds now = start; now < kEnd; now = std::min(refresh, retry)) {
        if (now == refresh) {
            left = schedule.retries;
            refresh = now + schedule.GapMilliseconds(numbers.Next());
        } else {
            --left;
        }
        retry = kNever;
        ++load.requests[now / kSecond];
        if (now < kOutage) {
            retry = left > 0 ? now + schedule.RetryMilliseconds(numbers.Next()) : kNever;
        } else {
            load.answers[now / kSecond] += isAnswered ? 0 : 1;
            isAnswered = true;
        }
    }
}

Load Simulate(FetchSchedule const& schedule, Milliseconds startsWithin) {
    Numbers numbers;
    Load load;
    for (std::uint32_t client = 0; client < kClients; ++client) {
        Play(schedule, numbers.Below(startsWithin), numbers, load);
    }
    return load;
}

std::uint32_t Peak(Load const& load, Milliseconds from, Milliseconds to) {
    auto const at = [&](Milliseconds time) {
        return load.requests.begin() + static_cast<std::ptrdiff_t>(time / kSecond);
    };
    return *std::max_element(at(from), at(to));
}

double AnsweredPercent(Load const& load, Milliseconds until) {
    double sum = 0;
    for (Milliseconds second = 0; second < until / kSecond; ++second) {
        sum += load.answers[second];
    }
    return sum * 100 / kClients;
}

struct Fleet {
    char const* name;
    char const* colour;
    Milliseconds startsWithin;
    long long retryJitter;
    long long gapJitter;
};

constexpr Fleet kFleets[] = {
    {"spread over the day, no jitter", "", 24 * kHour, 0, 0},
    {"together, no jitter", "#c0392b", kMinute, 0, 0},
    {"together, retry jitter 600", "", kMinute, 600, 0},
    {"together, retry jitter 1,800, gap jitter 7,200", "#2471a3", kMinute, 1800, 7200},
};

void PrintRow(Fleet const& fleet, Load const& load) {
    std::printf("| %s | %u | %u | %u | %.0f %% | %.0f %% | %.0f %% |\n", fleet.name, Peak(load, 0, kOutage),
                Peak(load, kOutage, 2 * kHour), Peak(load, 23 * kHour, kEnd),
                AnsweredPercent(load, 20 * kMinute), AnsweredPercent(load, kHour),
                AnsweredPercent(load, 2 * kHour));
}

// One stretch of time as a panel of the chart; requests a second, the highest of each minute, on a scale of
// powers of ten.
class Panel {
public:
    Panel(std::string title, double left, Milliseconds from, Milliseconds to)
        : _title(std::move(title)), _left(left), _from(from), _to(to) {}

    std::string Frame() const {
        std::string text = Text(_left, kTop - 8, _title);
        for (int power = 0; power <= 6; ++power) {
            double const y = Height(std::pow(10, power));
            text += Format("<line x1='%.0f' y1='%.1f' x2='%.0f' y2='%.1f' stroke='#ddd'/>\n", _left, y,
                           _left + kWidth, y);
            text += Text(_left - 34, y + 4, power == 0 ? "1" : "1e" + std::to_string(power));
        }
        return text;
    }

    std::string Curve(Load const& load, char const* colour) const {
        std::string text = Format("<polyline fill='none' stroke='%s' points='", colour);
        for (Milliseconds minute = _from; minute < _to; minute += kMinute) {
            double const share = static_cast<double>(minute - _from) / static_cast<double>(_to - _from);
            text +=
                Format("%.0f,%.0f ", _left + share * kWidth, Height(Peak(load, minute, minute + kMinute)));
        }
        return text + "'/>\n";
    }

    static std::string Text(double x, double y, std::string const& content) {
        return Format("<text x='%.0f' y='%.0f'>", x, y) + content + "</text>\n";
    }

private:
    static constexpr double kWidth = 340;
    static constexpr double kTop = 30;
    static constexpr double kDecade = 30;

    static double Height(double number) { return kTop + kDecade * (6 - std::log10(std::max(number, 1.0))); }

    template <typename... Arguments>
    static std::string Format(char const* format, Arguments... arguments) {
        char text[256];
        std::snprintf(text, sizeof text, format, arguments...);
        return text;
    }

    std::string _title;
    double _left;
    Milliseconds _from;
    Milliseconds _to;
};

}  // namespace

int main(int argc, char** argv) {
    Panel const panels[] = {{"requests a second, minutes 0 to 60", 50, 0, kHour},
                            {"hours 23 to 27", 450, 23 * kHour, kEnd}};
    std::string chart =
        "<svg xmlns='http://www.w3.org/2000/svg' width='800' height='250' font-family='sans-serif' "
        "font-size='11'>\n<rect width='800' height='250' fill='white'/>\n";
    double legend = 50;
    for (Panel const& panel : panels) {
        chart += panel.Frame();
    }
    std::puts(
        "| fleet | peak in the outage | peak after it | peak at 24 h | answered at 20 min | at 1 h | at 2 h "
        "|\n"
        "|---|---|---|---|---|---|---|");
    for (Fleet const& fleet : kFleets) {
        FetchSchedule schedule;
        schedule.retryJitter = fleet.retryJitter;
        schedule.gapJitter = fleet.gapJitter;
        Load const load = Simulate(schedule, fleet.startsWithin);
        PrintRow(fleet, load);
        if (*fleet.colour != '\0') {
            for (Panel const& panel : panels) {
                chart += panel.Curve(load, fleet.colour);
            }
            chart += std::string("<g fill='") + fleet.colour + "'>" + Panel::Text(legend, 240, fleet.name) +
                     "</g>\n";
            legend += 200;
        }
    }
    if (argc > 1) {
        std::ofstream(argv[1]) << chart << "</svg>\n";
    }
    return 0;
}
