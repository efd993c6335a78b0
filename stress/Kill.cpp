// Processes that save are killed, at random moments and in front of each single call to the file system. What
// loads afterwards is what was saved last, or what was being saved; and of the killed process nothing is left
// once the next one has saved.
#include <VelmorCore/Bundle.h>
#include <VelmorCore/ConfigFile.h>
#include <VelmorCore/File.h>
#include <VelmorCore/velmorcore.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>
#include <random>
#include <string>

#include "Children.h"
#include "Storage/File/IniFile.h"
#if defined(__x86_64__) && defined(__LP64__)
#include "FileCalls.h"
#endif

namespace {

using namespace Stress;

constexpr int kStores = 3;
// More calls than a round of saves makes.
constexpr int kWindows = 150;

// An enciphered bundle, a plain INI file, a config file, each with one number.
class Stores {
public:
    int Load(int store) {
        switch (store) {
            case 0:
                return _bundle.Get("s", "n", 0);
            case 1:
                return _ini->ReadInt("s", "n", 0);
            default:
                return _config->GetFromCache("s", "n", 0);
        }
    }
    void Save(int store, int number) {
        switch (store) {
            case 0:
                _bundle.Set("s", "n", number);
                break;
            case 1:
                _ini->WriteInt("s", "n", number);
                _ini->Save();
                break;
            default:
                _config->SetAndSave("s", "n", number);
                break;
        }
    }

private:
    static std::string InCache(char const* name) { return std::string(Ubrix::CPath::GetCachePath()) + name; }

    Ubrix::Bundle& _bundle = Ubrix::BundleFactory::GetInstance().GetBundle(InCache("bundle.config").c_str());
    std::unique_ptr<Ubrix::IniFile> _ini{Ubrix::CreateIniFile(InCache("plain.ini").c_str())};
    Velmor::IConfigFile* _config = VelmorCore_NewConfigFile("killed");
};

// Tells what it loads, saves higher numbers for good, and tells before and after each.
[[noreturn]] void SaveUntilKilled() {
    Stores stores;
    int highest = 0;
    for (int store = 0; store < kStores; ++store) {
        int const number = stores.Load(store);
        highest = std::max(highest, number);
        Report("loaded " + std::to_string(store) + " " + std::to_string(number));
    }
    for (int number = highest + 1;; ++number) {
        for (int store = 0; store < kStores; ++store) {
            std::string const what = std::to_string(store) + " " + std::to_string(number);
            Report("begun " + what);
            stores.Save(store, number);
            Report("saved " + what);
        }
        if (number == highest + 1) {
            Report("left " + std::to_string(CountLeftovers()) + " 0");
            raise(SIGUSR1);
        }
    }
}

class Beater {
public:
    // Kills a child that saves, `moment` after it has saved once.
    void KillAfter(std::chrono::microseconds moment) {
        Child child{"save"};
        std::string line;
        do {
            if (!child.Next(line)) {
                Child::Die("the child ended by itself");
            }
            Take(line);
        } while (line.rfind("left", 0) != 0);
        auto const end = std::chrono::steady_clock::now() + moment;
        while (std::chrono::steady_clock::now() < end) {
        }
        child.Kill();
        TakeRest(child);
    }

#if defined(__x86_64__) && defined(__LP64__)
    // Kills one in front of a call to the file system, the first being 0.
    void KillBefore(int call) {
        Child child({"save"}, Tracing::FromTheStart);
        int passed = 0;
        RunTraced(child, [&](int) { return Verdict{passed++ == call ? Fate::IsTheLast : Fate::Passes, 0}; });
        TakeRest(child);
    }
#endif

    int Kills() const {
        return _kills;
    }
    int Lost() const {
        return _lost;
    }
    int Left() const {
        return _left;
    }

private:
    void TakeRest(Child& child) {
        std::string line;
        while (child.Next(line)) {
            Take(line);
        }
        ++_kills;
    }
    void Take(std::string const& line) {
        char what[16];
        int store = 0;
        int number = 0;
        if (std::sscanf(line.c_str(), "%15s %d %d", what, &store, &number) != 3) {
            Child::Die("a broken report");
        }
        if (std::strcmp(what, "begun") == 0) {
            _begun[store] = number;
        } else if (std::strcmp(what, "saved") == 0) {
            _saved[store] = number;
        } else if (std::strcmp(what, "left") == 0) {
            _left += store;
        } else if (number != _saved[store] && number != _begun[store]) {
            std::fprintf(stderr, "kill %d, store %d: %d loads, %d was saved, %d begun\n", _kills, store,
                         number, _saved[store], _begun[store]);
            ++_lost;
        }
        if (std::strcmp(what, "loaded") == 0) {
            _saved[store] = _begun[store] = number;
        }
    }

    int _begun[kStores] = {};
    int _saved[kStores] = {};
    int _kills = 0;
    int _lost = 0;
    int _left = 0;
};

}  // namespace

int main(int argc, char** argv) {
    std::string const mode = argc > 1 ? argv[1] : "";
    std::signal(SIGUSR1, SIG_IGN);
    if (mode == "save") {
        SaveUntilKilled();
    }
    bool const isFull = mode == "full";
    int const pairs = isFull ? 1000 : 20;
    Beater beater;
    std::mt19937 random(20240229);
    for (int i = 0; i < pairs; ++i) {
        beater.KillAfter(std::chrono::microseconds(random() % 8000));
#if defined(__x86_64__) && defined(__LP64__)
        beater.KillBefore((isFull ? i : i * kWindows / pairs) % kWindows);
#endif
    }
    beater.KillAfter({});
    std::printf("%d kills: %d values lost, %d temporary files left\n", beater.Kills(), beater.Lost(),
                beater.Left());
    return beater.Lost() == 0 && beater.Left() == 0 ? 0 : 1;
}
