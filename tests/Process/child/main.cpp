// Runs one scenario against the shared library in a fresh process. Exit status 0 if it went as it should.
#include <VelmorCore/VelmorCore.hpp>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

namespace {

int Expect(bool condition, char const* what) {
    if (!condition) {
        std::fprintf(stderr, "FAILED: %s\n", what);
    }
    return condition ? 0 : 1;
}

int TwoLives() {
    int failures = Expect(velmorcore_init() == 0, "init gives 0");
    Ubrix::IVelmorCore& core = Ubrix::IVelmorCore::GetInstance();
    failures += Expect(std::strcmp(core.GetVersion(), "1.3.01.2706") == 0, "version");
    velmorcore_releaseInstance();
    velmorcore_releaseInstance();
    failures += Expect(velmorcore_getInstance() != nullptr, "a second core");
    failures += Expect(ubrix_network_GetNetworkState() == Ubrix::ANetworkStateReachable, "network");
    velmorcore_releaseInstance();
    return failures;
}

int NetworkUsedFirst() {
    ubrix_network_GetNetworkState();
    velmorcore_setLogLevel(3);
    velmorcore_releaseInstance();
    return Expect(
        Ubrix::ACheckLogLevel(Ubrix::ALogPriorityEvent) && !Ubrix::ACheckLogLevel(Ubrix::ALogPriorityWarning),
        "the level outlives the core");
}

// Prints the device id and what the last run left in a config file.
int Persist() {
    char id[64];
    int const failures = Expect(Ubrix_system_GetUUID(id, sizeof id), "device id");
    VelmorCoreConfigFile* file = VelmorCore_NewConfigFile("Persist");
    int const runs = file->GetFromCache("s", "runs", 0) + 1;
    file->SetAndSave("s", "runs", runs);
    VelmorCore_DeleteConfigFile(&file);
    std::printf("%s %d\n", id, runs);
    return failures;
}

// Ends the process with a request in flight and no release.
int ExitDuringRequest() {
    Ubrix::SetHttpConnectAddress("127.0.0.1:9");
    velmorcore_configure_seturl("https://config.velmor.example");
    return 0;
}

// Runs in a directory that is gone: nothing is stored anywhere, and nothing fails.
int NoDirectory() {
    Ubrix::BundleFactory& factory = Ubrix::BundleFactory::GetInstance();
    Ubrix::Bundle& bundle = factory.GetDefaultBundle();
    int failures = Expect(Ubrix::CPath::GetCachePath() == nullptr, "no cache directory");
    failures += Expect(!bundle.Set("s", "k", 1) && bundle.Get("s", "k", 3) == 3, "the default bundle");
    char const* elsewhere = std::getenv("ELSEWHERE");
    factory.GetBundle(elsewhere).Set("s", "k", 1);
    factory.DestoryBundle(elsewhere);
    return failures + Expect(!Ubrix::CFile::Exist(elsewhere), "no file without a key");
}

}  // namespace

int main(int argc, char** argv) {
    std::string const scenario = argc > 1 ? argv[1] : "";
    std::map<std::string, int (*)()> const scenarios = {{"two-lives", TwoLives},
                                                        {"network-first", NetworkUsedFirst},
                                                        {"persist", Persist},
                                                        {"no-directory", NoDirectory},
                                                        {"exit-during-request", ExitDuringRequest}};
    auto const found = scenarios.find(scenario);
    return found != scenarios.end() ? found->second() : 64;
}
