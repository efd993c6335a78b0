// Ends a process, again and again, while requests are under way: in each way of ending, with and without a
// release, whoever set the TLS library up. Counts the processes that died instead.
#include <VelmorCore/Http.h>
#include <VelmorCore/HttpTransport.h>
#include <VelmorCore/velmorcore.h>
#include <openssl/ssl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Sanitized.h"
#include "Support/RawTlsServer.h"

extern char** environ;

namespace {

constexpr char kHost[] = "game.example";
constexpr char kUrl[] = "https://game.example/x";
constexpr char kCaFile[] = "authority.pem";
constexpr char kExitFile[] = "exit-began";
// A sanitizer's processes start slowly.
constexpr int kQuick = ::Stress::kIsSanitized ? 10 : 30;
constexpr int kSlowest = 7000;  // ms from the exit's beginning to the process's end, on the busiest machine

enum Host { SetsUpFirst, SetsUpLast, LeavesItAlone, kHosts };
enum Ending { ByReturn, ByExit, ByOtherThread, ByListener, ByQuickExit, ByFork, kEndings };

// One process: what it does is in the digits of its number.
struct Variant {
    explicit Variant(int number)
        : host(static_cast<Host>(number % kHosts)),
          ending(static_cast<Ending>(number / kHosts % kEndings)),
          releases(number / kHosts / kEndings % 2 == 1),
          milliseconds(number / kHosts / kEndings / 2 % 11 * 3) {}
    Host host;
    Ending ending;
    bool releases;
    int milliseconds;  // between the requests' start and the end
};

long long Milliseconds() {
    auto const now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

void TellExit() {
    std::ofstream(kExitFile) << Milliseconds() << std::endl;
}

// One thread of a process may do so.
[[noreturn]] void Exit() {
    static std::atomic_flag isTaken = ATOMIC_FLAG_INIT;
    while (isTaken.test_and_set()) {
        pause();
    }
    TellExit();
    std::exit(0);
}

class ExitingListener final : public Ubrix::DataTask::Listener {
public:
    void OnDataTaskFinished(Ubrix::DataTask*, int, int, char const*, std::uint64_t) override { Exit(); }
};

void SetUpTls() {
    SSL_CTX_free(SSL_CTX_new(TLS_client_method()));
}

int RunChild(Variant const& variant, char const* address) {
    // One that hangs dies of it, and counts.
    alarm(60);
    if (variant.host == SetsUpFirst) {
        SetUpTls();
    }
    Ubrix::SetHttpCaFile(kCaFile);
    Ubrix::SetHttpConnectAddress(address);
    velmorcore_configure_seturl("https://game.example");
    static ExitingListener listener;
    for (int i = 0; i < 3; ++i) {
        Ubrix::DataTask* const task = Ubrix::WWW::Request(kUrl);
        if (variant.ending == ByListener) {
            task->SetListener(&listener);
        }
        task->Get();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(variant.milliseconds));
    if (variant.host == SetsUpLast) {
        SetUpTls();
    }
    if (variant.releases) {
        velmorcore_releaseInstance();
    }
    if (variant.ending == ByListener) {
        std::this_thread::sleep_for(std::chrono::seconds(5));
    }
    if (variant.ending == ByOtherThread) {
        std::thread(Exit).join();
    }
    if (variant.ending == ByQuickExit) {
        TellExit();
        std::quick_exit(0);
    }
    if (variant.ending == ByFork) {
        // The fork ends first, and then the process. A fork of a process with threads may only leave at once:
        // it has copies of locks whose holders it hasn't.
        pid_t const child = fork();
        if (child == 0) {
            std::_Exit(0);
        }
        int status = 0;
        if (waitpid(child, &status, 0) != child || status != 0) {
            std::_Exit(2);
        }
    }
    if (variant.ending == ByReturn) {
        TellExit();
        return 0;
    }
    Exit();
}

// Runs this program once more. Gives the process's end.
int Spawn(int number, std::string const& address) {
    std::string const text = std::to_string(number);
    char const* const arguments[] = {"exits", "child", text.c_str(), address.c_str(), nullptr};
    pid_t child = 0;
    ::Test::Demand(
        posix_spawn(&child, "/proc/self/exe", nullptr, nullptr, const_cast<char**>(arguments), environ) == 0,
        "spawn");
    int status = 0;
    ::Test::Demand(waitpid(child, &status, 0) == child, "wait");
    return status;
}

// Some answers come at once, most in small pieces.
void Converse(::Test::RawConnection& connection) {
    static int served = 0;
    if (!connection.Handshake()) {
        return;
    }
    connection.ReadHead();
    connection.Send("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n");
    if (++served % 3 == 0) {
        return;
    }
    for (int i = 0; i < 200 && connection.Send("{\"x\":1,}"); ++i) {
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
}

int RunAll(int count) {
    Example::CertificateAuthority const authority("Exits");
    authority.WriteCertificate(kCaFile);
    std::vector<std::unique_ptr<::Test::RawTlsServer>> servers;
    for (int i = 0; i < 4; ++i) {
        servers.push_back(std::make_unique<::Test::RawTlsServer>(authority.Issue({kHost}), Converse));
    }
    int died = 0;
    long long slowest = 0;
    for (int i = 0; i < count; ++i) {
        // Steps that share no factor with the variants' number spread a short run over all kinds.
        int const number = i * 7;
        int const status = Spawn(number, servers[static_cast<std::size_t>(i) % servers.size()]->Address());
        long long began = 0;
        std::ifstream(kExitFile) >> began;
        slowest = std::max(slowest, Milliseconds() - began);
        if (status != 0) {
            ++died;
            std::fprintf(stderr, "process %d: wait status %d\n", number, status);
        }
    }
    std::printf("%d of %d exits with requests under way died; the slowest took %lld ms\n", died, count,
                slowest);
    return died == 0 && slowest < kSlowest ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 4) {
        return RunChild(Variant(std::atoi(argv[2])), argv[3]);
    }
    return RunAll(argc == 2 && std::string(argv[1]) == "full" ? 1000 : kQuick);
}
