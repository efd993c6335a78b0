// Every call to the file system that a run of the library makes fails in turn: with ENOSPC, EACCES, EIO,
// EMFILE, by taking or giving half of the bytes, for a while, and for good from there on. Nothing crashes or
// hangs, and a fresh process finds every value that was acknowledged, now or in a run before.
#include <VelmorCore/Bundle.h>
#include <VelmorCore/ConfigFile.h>
#include <VelmorCore/Configure.h>
#include <VelmorCore/File.h>
#include <VelmorCore/Log.h>
#include <VelmorCore/System.h>
#include <VelmorCore/Zip.h>
#include <VelmorCore/velmorcore.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Base/Configure/ConfigureImpl.h"
#include "Children.h"
#include "FileCalls.h"
#include "Readers/Files.h"
#include "Storage/File/IniFile.h"
#include "Support/ScriptedTransport.h"

namespace {

using namespace Stress;

constexpr char const* kStores[] = {"bundle", "plain", "config", "fetched"};
constexpr int kStoreCount = 4;
// A key of each store but the fetched one that only the first run writes.
constexpr char kFirstKey[] = "first";
constexpr char kOldLog[] = "Cache/VelmorSDKLog/VelmorCore/VelmorCore_2020010100.log";

std::string InCache(char const* name) {
    return std::string(Ubrix::CPath::GetCachePath() != nullptr ? Ubrix::CPath::GetCachePath() : "") + name;
}

void Acknowledge(int store, int number) {
    Report("kept " + std::to_string(store) + " " + std::to_string(number));
}

// The library's load steps are part of the run.
__attribute__((constructor(102))) void BeginRun(int argc, char** argv) {
    if (argc > 1 && std::strcmp(argv[1], "run") == 0) {
        alarm(60);
        raise(SIGUSR1);
    }
}

int Fetched() {
    return Velmor::Configure::GetInstance()->GetInt("M", "n", 0);
}

void Fetch(int number) {
    ::Test::ScriptedTransport::Install().Answer(
        "{\"biz_data\":{\"merged_cfg\":{\"M\":{\"n\":" + std::to_string(number) + "}}}}");
    Velmor::Configure::GetInstance()->SetUrl("https://config.velmor.example");
    using Velmor::ConfigureImpl;
    while (ConfigureImpl::Instance()->CurrentState() == ConfigureImpl::kRequesting) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    if (Fetched() == number) {
        Acknowledge(3, number);
    }
}

// Both ends of the archive are there, and nothing was cut.
bool IsWholeArchive(std::string const& path) {
    std::string const bytes = ::Test::ReadWholeFile(path);
    return bytes.size() > 22 && bytes.compare(0, 4, "PK\x03\x04") == 0 &&
           bytes.compare(bytes.size() - 22, 4, "PK\x05\x06") == 0;
}

// One of everything, with `number` as the value.
int Run(int number) {
    Ubrix::Bundle& bundle = Ubrix::BundleFactory::GetInstance().GetBundle(InCache("bundle.config").c_str());
    if (bundle.Set("s", "n", number)) {
        Acknowledge(0, number);
    }
    std::unique_ptr<Ubrix::IniFile> plain(Ubrix::CreateIniFile(InCache("plain.ini").c_str()));
    if (plain->WriteInt("s", "n", number) && plain->Save()) {
        Acknowledge(1, number);
    }
    plain.reset();
    if (auto* config = VelmorCore_NewConfigFile("mine")) {
        if (config->SetAndSave("s", "n", number)) {
            Acknowledge(2, number);
        }
        if (number == 1) {
            bundle.Set("s", kFirstKey, 1);
            config->SetAndSave("s", kFirstKey, 1);
            std::unique_ptr<Ubrix::IniFile>(Ubrix::CreateIniFile(InCache("plain.ini").c_str()))
                ->WriteInt("s", kFirstKey, 1);
        }
        VelmorCore_DeleteConfigFile(&config);
    }
    Fetch(number);
    VelmorCore_XLog(Velmor::ALogPriorityError, "file", 1, "func", "a line");
    Ubrix::ZipArchive archive;
    if (archive.CreateZipFile("archive.zip") && archive.AddFileToZip("source", "entry") &&
        archive.CloseZipFile()) {
        Report("archive 0 0");
    }
    if (char const* id = Ubrix::CSystem::GetUdid()) {
        Report(std::string("id ") + id);
    }
    raise(SIGUSR1);
    return 0;
}

// What a fresh process finds.
int Look() {
    Ubrix::Bundle& bundle = Ubrix::BundleFactory::GetInstance().GetBundle(InCache("bundle.config").c_str());
    std::unique_ptr<Ubrix::IniFile> const plain(Ubrix::CreateIniFile(InCache("plain.ini").c_str()));
    Velmor::IConfigFile& config = *VelmorCore_NewConfigFile("mine");
    int const numbers[] = {bundle.Get("s", "n", 0), plain->ReadInt("s", "n", 0),
                           config.GetFromCache("s", "n", 0), Fetched()};
    int const firsts[] = {bundle.Get("s", kFirstKey, 0), plain->ReadInt("s", kFirstKey, 0),
                          config.GetFromCache("s", kFirstKey, 0), 1};
    for (int store = 0; store < kStoreCount; ++store) {
        Report("found " + std::to_string(store) + " " + std::to_string(numbers[store]));
        if (firsts[store] != 1) {
            Report("lost " + std::to_string(store) + " 0");
        }
    }
    Report("whole " + std::to_string(IsWholeArchive("archive.zip") ? 1 : 0) + " 0");
    std::string const head = ::Test::ReadWholeFile(InCache("bundle.config")).substr(16, 64);
    if (!head.empty() && head.find_first_not_of('\0') == std::string::npos) {
        Report("zero 0 0");
    }
    Report(std::string("id ") + Ubrix::CSystem::GetUdid());
    return 0;
}

struct Fault {
    char const* name;
    Fate fate;
    int error;
    // How many calls from the one on.
    int length;
};

constexpr Fault kFaults[] = {{"ENOSPC", Fate::Fails, ENOSPC, 1},
                             {"EACCES", Fate::Fails, EACCES, 1},
                             {"EIO", Fate::Fails, EIO, 1},
                             {"EMFILE", Fate::Fails, EMFILE, 1},
                             {"half", Fate::IsShortened, 0, 1},
                             {"EMFILE for a while", Fate::Fails, EMFILE, 40},
                             {"ENOSPC for good", Fate::Fails, ENOSPC, INT_MAX},
                             {"EIO for good", Fate::Fails, EIO, INT_MAX}};
constexpr Fault kNone = {"none", Fate::Passes, 0, 1};
constexpr Fault kNoRandomness = {"EIO", Fate::Fails, EIO, 1};

bool MovesBytes(int number) {
    return number == SYS_read || number == SYS_write || number == SYS_pread64 || number == SYS_pwrite64;
}

class Beater {
public:
    // Runs once with the fault at the call of that number, then looks. Gives the number of calls.
    int Beat(Fault const& fault, int call) {
        ++_runs;
        ::Test::WriteWholeFile(kOldLog, "old");
        _fault = &fault;
        _call = call;
        _draws.clear();
        int calls = 0;
        {
            Child child({"run", std::to_string(_runs)}, Tracing::FromTheStart);
            int const status = RunTraced(child, [&](int number) {
                int const at = calls++;
                bool const hits = at >= call && at - call < fault.length;
                bool const can = fault.fate != Fate::IsShortened || MovesBytes(number);
                _number = at == call ? number : _number;
                if (number == SYS_getrandom && fault.fate == Fate::Passes) {
                    _draws.push_back(at);
                }
                return hits && can ? Verdict{fault.fate, fault.error} : Verdict{};
            });
            if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
                Tell("ended with status " + std::to_string(status));
            }
            Take(child);
        }
        Child look{"look"};
        Take(look);
        if (look.Wait() != 0) {
            Tell("couldn't be looked at");
        }
        return calls;
    }

    // The calls for randomness of the latest run, if that was one without a fault.
    std::vector<int> const& Draws() const { return _draws; }
    int Runs() const { return _runs; }
    int Failures() const { return _failures; }

private:
    void Take(Child& child) {
        for (std::string line; child.Next(line);) {
            char what[64];
            char id[64];
            int store = 0;
            int number = 0;
            if (std::sscanf(line.c_str(), "id %63s", id) == 1) {
                _id = _id.empty() ? id : _id;
                if (_id != id) {
                    Tell("the device has another id");
                }
            } else if (std::sscanf(line.c_str(), "%63s %d %d", what, &store, &number) != 3) {
                Tell("a broken report");
            } else if (std::strcmp(what, "kept") == 0) {
                _kept[store] = _fault->length > 1 ? _kept[store] : number;
            } else if (std::strcmp(what, "archive") == 0) {
                _hasArchive = true;
            } else if (std::strcmp(what, "whole") == 0) {
                if (_hasArchive && store == 0) {
                    Tell("a broken archive was told to be whole");
                }
                _hasArchive = false;
            } else if (std::strcmp(what, "lost") == 0) {
                Tell(std::string(kStores[store]) + " has lost what an earlier run kept");
            } else if (std::strcmp(what, "zero") == 0) {
                Tell("a file was enciphered under no key");
            } else {
                // What wasn't acknowledged may be there all the same.
                if (number != _kept[store] && number != _runs) {
                    Tell(std::string(kStores[store]) + " holds " + std::to_string(number) + " instead of " +
                         std::to_string(_kept[store]));
                }
                _kept[store] = number;
            }
        }
    }
    void Tell(std::string const& what) {
        std::fprintf(stderr, "FAILED: run %d, %s at call %d, number %d: %s\n", _runs, _fault->name, _call,
                     _number, what.c_str());
        ++_failures;
    }

    Fault const* _fault = nullptr;
    int _call = 0;
    int _number = -1;
    std::vector<int> _draws;
    int _runs = 0;
    int _failures = 0;
    int _kept[kStoreCount] = {};
    bool _hasArchive = false;
    std::string _id;
};

}  // namespace

int main(int argc, char** argv) {
    std::string const mode = argc > 1 ? argv[1] : "";
    if (mode == "run") {
        return Run(std::stoi(argv[2]));
    }
    if (mode == "look") {
        return Look();
    }
    ::Test::WriteWholeFile("source", std::string(10000, 'x'));
    Beater beater;
    int calls = beater.Beat(kNone, 0);
    calls = std::max(calls, beater.Beat(kNone, 0));
    // A share of the pairs of call and fault, or all of them.
    int const step = mode == "full" ? 1 : 53;
    int const faults = static_cast<int>(std::size(kFaults));
    for (int const call : std::vector<int>(beater.Draws())) {
        beater.Beat(kNoRandomness, call);
    }
    for (int pair = 0; pair < calls * faults; pair += step) {
        beater.Beat(kFaults[pair % faults], pair / faults);
    }
    std::printf("%d runs, each with one of %d calls failing: %d failures\n", beater.Runs(), calls,
                beater.Failures());
    return beater.Failures() == 0 ? 0 : 1;
}
