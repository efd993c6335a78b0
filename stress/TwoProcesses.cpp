// Two processes on one directory: each saves a bundle of its own and one that both save, and looks at the
// other's all the while. Every look finds a number, none older than one seen before, and neither loses the
// other's key.
#include <VelmorCore/Bundle.h>
#include <VelmorCore/File.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

#include "Children.h"
#include "Storage/File/IniFile.h"

namespace {

using namespace Stress;
using Clock = std::chrono::steady_clock;

std::string InCache(std::string const& name) {
    return Ubrix::CPath::GetCachePath() + name;
}

// The number in a file, by a fresh look. Negative if the file can't be read.
int Look(std::string const& name) {
    std::unique_ptr<Ubrix::IniFile> const file(Ubrix::CreateEncryptedIniFile(InCache(name).c_str()));
    return file->Load() ? file->ReadInt("s", "n", -1) : -1;
}

bool HasKey(std::string const& name) {
    std::ifstream store(InCache("Store.ini"));
    std::string line;
    while (std::getline(store, line)) {
        if (line.rfind(name + "=", 0) == 0) {
            return true;
        }
    }
    return false;
}

// Beats the files for so many seconds, and tells what it counted.
int Work(std::string const& own, std::string const& other, int seconds) {
    Ubrix::Bundle& bundle = Ubrix::BundleFactory::GetInstance().GetBundle(InCache(own).c_str());
    bundle.Set("s", "n", 0);
    Report("ready");
    std::getchar();
    int looks = 0;
    int bad = 0;
    int seen = 0;
    int number = 0;
    for (auto const end = Clock::now() + std::chrono::seconds(seconds); Clock::now() < end; ++looks) {
        bundle.Set("s", "n", ++number);
        int const now = Look(other);
        bad += now < seen || !HasKey(own) || !HasKey(other) ? 1 : 0;
        seen = now;
        std::unique_ptr<Ubrix::IniFile> const shared(
            Ubrix::CreateEncryptedIniFile(InCache("both.config").c_str()));
        bad += shared->Load() || looks == 0 ? 0 : 1;
        shared->WriteInt("s", "n", number);
        shared->Save();
    }
    bad += Look(own) == number ? 0 : 1;
    Report(std::to_string(looks) + " " + std::to_string(bad));
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    std::string const mode = argc > 1 ? argv[1] : "";
    if (mode == "work") {
        return Work(argv[2], argv[3], std::stoi(argv[4]));
    }
    std::string const seconds = mode == "full" ? "60" : "3";
    // Both have saved before either looks: they wait for the end of this program's standard input.
    int gate[2];
    if (pipe(gate) != 0 || dup2(gate[0], 0) != 0) {
        Child::Die("pipe");
    }
    fcntl(gate[1], F_SETFD, FD_CLOEXEC);
    Child one{"work", "one.config", "two.config", seconds};
    Child two{"work", "two.config", "one.config", seconds};
    int looks = 0;
    int bad = 0;
    std::string line;
    for (Child* child : {&one, &two}) {
        if (!child->Next(line)) {
            Child::Die("a child ended by itself");
        }
    }
    close(gate[1]);
    for (Child* child : {&one, &two}) {
        int counted = 0;
        int amiss = 0;
        bool const isWhole = child->Next(line) && std::sscanf(line.c_str(), "%d %d", &counted, &amiss) == 2;
        bad += child->Wait() == 0 && isWhole && counted > 0 ? amiss : 1;
        looks += counted;
    }
    std::printf("%d rounds of saves and looks by two processes: %d amiss, %d temporary files left\n", looks,
                bad, CountLeftovers());
    return bad == 0 && CountLeftovers() == 0 ? 0 : 1;
}
