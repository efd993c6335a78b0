// Runs one scenario against the shared library in a fresh process. Exit status 0 if it went as it should.
#include <unistd.h>
#include <VelmorCore/VelmorCore.hpp>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

namespace {

int g_failures = 0;

void Expect(bool condition, char const* what) {
    if (!condition) {
        std::fprintf(stderr, "FAILED: %s\n", what);
        ++g_failures;
    }
}

void TwoLives() {
    ubrix_network_GetNetworkState();
    velmorcore_setLogLevel(3);
    velmorcore_releaseInstance();
    Expect(Ubrix::ACheckLogLevel(Ubrix::ALogPriorityEvent), "the level outlives the core");
    Expect(!Ubrix::ACheckLogLevel(Ubrix::ALogPriorityWarning), "and nothing below it shows");
    Expect(velmorcore_init() == 0, "init gives 0");
    Ubrix::IVelmorCore& core = Ubrix::IVelmorCore::GetInstance();
    Expect(std::strcmp(core.GetVersion(), "1.3.01.2706") == 0, "version");
    velmorcore_releaseInstance();
    velmorcore_releaseInstance();
    Expect(velmorcore_getInstance() != nullptr, "a second core");
    Expect(ubrix_network_GetNetworkState() == Ubrix::ANetworkStateReachable, "network");
    velmorcore_releaseInstance();
}

// Prints the device id and what the last run left in a config file.
void Persist() {
    char id[64];
    Expect(Ubrix_system_GetUUID(id, sizeof id), "device id");
    VelmorCoreConfigFile* file = VelmorCore_NewConfigFile("Persist");
    int const runs = file->GetFromCache("s", "runs", 0) + 1;
    file->SetAndSave("s", "runs", runs);
    VelmorCore_DeleteConfigFile(&file);
    std::printf("%s %d\n", id, runs);
}

// Prints what a request at the address of $ADDRESS ends with.
class OutcomePrinter final : public Ubrix::DataTask::Listener {
public:
    void OnDataTaskFinished(Ubrix::DataTask*, int errorCode, int httpStatus, char const* data,
                            std::uint64_t) override {
        std::printf("%d %d %s\n", errorCode, httpStatus, data != nullptr ? data : "null");
        std::fflush(stdout);
        std::_Exit(0);
    }
};

void Fetch() {
    Ubrix::SetHttpCaFile(std::getenv("CA_FILE"));
    Ubrix::SetHttpConnectAddress(std::getenv("ADDRESS"));
    OutcomePrinter printer;
    Ubrix::DataTask* const task = Ubrix::WWW::Request("https://game.example/\xD6\xD0");
    task->SetListener(&printer);
    task->Get();
    // The printer ends the process; the test has a time limit.
    for (;;) {
        pause();
    }
}

// Runs in a directory that is gone: nothing is stored anywhere, and nothing fails.
void NoDirectory() {
    Ubrix::BundleFactory& factory = Ubrix::BundleFactory::GetInstance();
    Ubrix::Bundle& bundle = factory.GetDefaultBundle();
    Expect(Ubrix::CPath::GetCachePath() == nullptr, "no cache directory");
    Expect(!bundle.Set("s", "k", 1), "the default bundle takes nothing");
    Expect(bundle.Get("s", "k", 3) == 3, "the default bundle has nothing");
    char const* elsewhere = std::getenv("ELSEWHERE");
    factory.GetBundle(elsewhere).Set("s", "k", 1);
    factory.DestoryBundle(elsewhere);
    Expect(!Ubrix::CFile::Exist(elsewhere), "no file without a key");
}

}  // namespace

int main(int, char** argv) {
    std::map<std::string, void (*)()> const scenarios = {
        {"two-lives", TwoLives}, {"persist", Persist}, {"no-directory", NoDirectory}, {"fetch", Fetch}};
    scenarios.at(argv[1])();
    return g_failures;
}
