// What an answer of the configuration's server can cost: memory and time, by shape, from its first byte to
// the saved cache, and that the process outlives one that there is no memory for. Each shape has a process of
// its own and is answered twice, so that the second one meets the first one's cache. `full` holds each to its
// time too, and prints a table.
#include <VelmorCore/Configure.h>
#include <VelmorCore/HttpTransport.h>
#include <VelmorCore/Log.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <string>
#include <thread>

#include "Base/Configure/ConfigAnswer.h"
#include "Base/Configure/ConfigureImpl.h"

namespace {

using Velmor::ConfigureImpl;

constexpr char kKept[] = R"({"biz_data":{"merged_cfg":{"Kept":{"k":"yes"}}}})";
constexpr std::size_t kLongest = Velmor::kLongestAnswer;
constexpr int kMostMiB = 512;
constexpr double kMostSeconds = 5;
// Redzones and shadow memory are no cost of the library's.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kMeasures = false;
#else
constexpr bool kMeasures = true;
#endif

std::string Repeated(std::string const& piece, std::size_t count) {
    std::string text;
    text.reserve(piece.size() * count);
    for (std::size_t i = 0; i < count; ++i) {
        text += piece;
    }
    return text;
}

std::string Answer(std::string const& modules) {
    return R"({"biz_data":{"merged_cfg":{)" + modules + "}}}";
}

// `count` members; `piece` holds one "%d" for the number of each.
std::string Members(char const* piece, int count) {
    std::string text;
    char member[2048];
    for (int i = 0; i < count; ++i) {
        std::snprintf(member, sizeof member, piece, i);
        text += i == 0 ? "" : ",";
        text += member;
    }
    return text;
}

std::string OneModule(char const* piece, int count) {
    return Answer("\"M\":{" + Members(piece, count) + "}");
}

struct Shape {
    char const* name;
    bool isGood;
    bool isQuick;
    std::function<std::string()> body;
};

// What an answer may be at most, in each direction; then what is beyond.
Shape const kShapes[] = {
    {"one long text", true, true,
     [] { return Answer(R"("M":{"k":")" + std::string(kLongest - 100, 'x') + "\"}"); }},
    {"one long text of escapes", true, false,
     [] { return Answer(R"("M":{"k":")" + Repeated("\\u00e9", kLongest / 6 - 20) + "\"}"); }},
    {"many keys, numbers", true, false, [] { return OneModule("\"%d\":1", 199000); }},
    {"many keys, texts", true, true,
     [] { return OneModule(("\"%d\":\"" + std::string(140, 'x') + "\"").c_str(), 199000); }},
    {"many keys, no usable one", true, false, [] { return OneModule("\"%d\":true", 199000); }},
    {"many keys, reals", true, false,
     [] { return OneModule(("\"%d\":1." + std::string(140, '9')).c_str(), 199000); }},
    {"many keys, texts of several lines", true, false, [] { return OneModule("\"%d\":\"a\\nb\"", 199000); }},
    {"many keys, texts with a mark", true, false, [] { return OneModule("\"%d\":\"a#b\"", 199000); }},
    {"long keys that begin alike", true, false,
     [] { return OneModule(("\"" + std::string(1000, 'k') + "%d\":1").c_str(), 32000); }},
    {"a long name and many keys", true, false,
     [] { return Answer("\"" + std::string(1024, 'm') + "\":{" + Members("\"%d\":1", 199000) + "}"); }},
    {"many modules", true, false, [] { return Answer(Members("\"%d\":{\"k\":1}", 99000)); }},
    {"many empty modules", true, false, [] { return Answer(Members("\"%d\":{}", 99000)); }},
    {"keys of a section in the middle", true, false,
     [] { return Answer("\"VelmorCore\":{" + Members("\"%d\":1", 190000) + "},\"Z\":{\"k\":1}"); }},
    {"comments", true, false, [] { return Repeated("/**/", kLongest / 4 - 100) + Answer(R"("M":{"k":1})"); }},
    {"one long number", true, false,
     [] { return Answer("\"M\":{\"k\":1." + std::string(30U << 20U, '9') + "}"); }},
    {"an array of numbers, 8 MiB", false, false, [] { return "[" + Repeated("0,", 4U << 20U) + "0]"; }},
    {"an array of numbers, 60 MiB", false, false, [] { return "[" + Repeated("0,", 30U << 20U) + "0]"; }},
    {"empty objects, 30 MiB", false, true, [] { return "[" + Repeated("{},", 10U << 20U) + "0]"; }},
    {"arrays in arrays, 30 MiB", false, true, [] { return Repeated("[", 30U << 20U); }},
    {"an open text, 30 MiB", false, false, [] { return "{\"" + std::string(30U << 20U, 'x'); }},
    {"errors, 30 MiB", false, false, [] { return "[" + Repeated(":", 30U << 20U) + "]"; }},
};

// Answers each request with the same body.
class OneAnswer final : public Ubrix::IHttpTransport {
public:
    int Perform(Ubrix::HttpRequest const&, Ubrix::IHttpExchange& exchange) override {
        exchange.SetStatus(200);
        constexpr std::size_t kPiece = 16384;
        for (std::size_t at = 0; at < body.size(); at += kPiece) {
            if (!exchange.AppendBody(body.data() + at, std::min(kPiece, body.size() - at))) {
                break;
            }
        }
        return 0;
    }
    std::string body;
};

OneAnswer& TheServer() {
    static auto* const server = new OneAnswer;
    return *server;
}

// A line of this process's status, in KiB.
long StatusKiB(std::string const& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(name + ":", 0) == 0) {
            return std::atol(line.c_str() + name.size() + 1);
        }
    }
    return 0;
}

double SecondsOfWork() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    auto const seconds = [](timeval const& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// Fetches, and gives the seconds of work that it took: a busy machine makes them no more.
double Fetch(std::string body) {
    TheServer().body = std::move(body);
    double const before = SecondsOfWork();
    Velmor::Configure::GetInstance()->SetUrl("https://config.velmor.example");
    auto const limit = std::chrono::steady_clock::now() + std::chrono::minutes(2);
    while (ConfigureImpl::Instance()->CurrentState() != ConfigureImpl::kFinished) {
        if (std::chrono::steady_clock::now() > limit) {
            std::fprintf(stderr, "FAILED: no end of a fetch\n");
            std::_Exit(1);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return SecondsOfWork() - before;
}

bool IsKept() {
    return Velmor::Configure::GetInstance()->GetString("Kept", "k", "") == Ubrix::AString("yes");
}

void Begin() {
    Ubrix::SetConsoleOutput(false);
    Ubrix::SetHttpTransport(&TheServer());
    Fetch(kKept);
}

void LimitAddresses(long bytes) {
    rlimit const limit{static_cast<rlim_t>(bytes), static_cast<rlim_t>(bytes)};
    setrlimit(RLIMIT_AS, &limit);
}

// One shape, in a process of its own. True if it went as it should.
bool PlayShape(Shape const& shape) {
    if (kMeasures) {
        LimitAddresses(2L << 30U);
    }
    Begin();
    std::string const body = shape.body();
    TheServer().body.reserve(body.size());
    long const before = StatusKiB("VmRSS");
    double const seconds = std::max(Fetch(body), Fetch(body));
    long const grown = (StatusKiB("VmHWM") - before) / 1024;
    std::printf("%-36s | %5.1f | %4ld | %5.2f\n", shape.name, static_cast<double>(body.size()) / (1 << 20),
                grown, seconds);
    bool const isWithin = !kMeasures || (grown <= kMostMiB && seconds <= kMostSeconds);
    return isWithin && IsKept() != shape.isGood;
}

// A good answer in too little memory, in a process of its own: a bad answer, at whatever allocation it ends.
bool PlayWant(long roomMiB) {
    Begin();
    std::string const body = kShapes[3].body();
    TheServer().body.reserve(body.size());
    LimitAddresses((StatusKiB("VmSize") + roomMiB * 1024) * 1024);
    Fetch(body);
    // With the last of these rooms it may just fit; half of it is never there.
    bool const isWhole = Velmor::Configure::GetInstance()->GetString("M", "198999", "") != Ubrix::AString("");
    return IsKept() != isWhole;
}

int RunSelf(char const* program, std::string const& arguments) {
    return std::system(("'" + std::string(program) + "' " + arguments + " 2>>lines.txt").c_str());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 2) {
        int const number = std::atoi(argv[2]);
        bool const isWant = std::strcmp(argv[1], "want") == 0;
        bool const isGood = isWant ? PlayWant(number) : PlayShape(kShapes[number]);
        std::fflush(stdout);
        std::_Exit(isGood ? 0 : 1);
    }
    bool const isFull = argc > 1 && std::strcmp(argv[1], "full") == 0;
    int failures = 0;
    int number = 0;
    int shapes = 0;
    for (Shape const& shape : kShapes) {
        if (isFull || shape.isQuick) {
            bool const ended = RunSelf(argv[0], "shape " + std::to_string(number)) == 0;
            failures += ended ? 0 : 1;
            ++shapes;
            std::fprintf(stderr, "%s%s\n", ended ? "" : "FAILED: ", shape.name);
        }
        ++number;
    }
    int wants = 0;
    for (int room = 8; kMeasures && room <= 200; room += isFull ? 4 : 96) {
        bool const ended = RunSelf(argv[0], "want " + std::to_string(room)) == 0;
        failures += ended ? 0 : 1;
        ++wants;
        std::fprintf(stderr, "%s%d MiB of room\n", ended ? "" : "FAILED: ", room);
    }
    std::printf("%d shapes within %d MiB, %d times without the memory, %d failures\n", shapes, kMostMiB,
                wants, failures);
    return failures;
}
