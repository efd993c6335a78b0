// This program started again, as children that share an empty directory with it.
#pragma once

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <vector>

namespace Stress {

// Where a child writes what it has done, a line each.
constexpr int kReport = 3;

inline void Report(std::string const& line) {
    std::string const whole = line + "\n";
    if (write(kReport, whole.data(), whole.size()) != static_cast<ssize_t>(whole.size())) {
        std::_Exit(3);
    }
}

enum class Tracing { None, FromTheStart };

class Child {
public:
    // `arguments` are main's, behind the program's name.
    explicit Child(std::initializer_list<std::string> arguments, Tracing tracing = Tracing::None) {
        std::vector<std::string> texts{"/proc/self/exe"};
        texts.insert(texts.end(), arguments);
        std::vector<char*> values;
        for (std::string& text : texts) {
            values.push_back(text.data());
        }
        values.push_back(nullptr);
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) {
            Die("pipe");
        }
        _pid = fork();
        if (_pid == 0) {
            dup2(ends[1], kReport);
            if (tracing == Tracing::FromTheStart && ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
                Die("ptrace isn't allowed here");
            }
            execv(values[0], values.data());
            Die("exec");
        }
        close(ends[1]);
        _report = fdopen(ends[0], "r");
        if (_pid < 0 || _report == nullptr) {
            Die("fork");
        }
    }
    // Kills it if it still runs.
    ~Child() {
        if (_pid > 0) {
            Kill();
        }
        std::fclose(_report);
    }
    Child(Child const&) = delete;
    Child& operator=(Child const&) = delete;

    pid_t Pid() const { return _pid; }
    // The next line of the report, without its end. False once the child is gone.
    bool Next(std::string& line) {
        char text[256];
        if (std::fgets(text, sizeof text, _report) == nullptr) {
            return false;
        }
        line = text;
        line.pop_back();
        return true;
    }
    void Kill() {
        kill(_pid, SIGKILL);
        Wait();
    }
    // Somebody else has waited for it.
    void HasEnded() { _pid = -1; }
    // Its status, as waitpid gives it.
    int Wait() {
        int status = 0;
        do {
            if (waitpid(_pid, &status, __WALL) != _pid) {
                Die("waitpid");
            }
        } while (WIFSTOPPED(status));
        _pid = -1;
        return status;
    }

    [[noreturn]] static void Die(char const* what) {
        std::perror(what);
        std::_Exit(2);
    }

private:
    pid_t _pid = -1;
    std::FILE* _report = nullptr;
};

// How many files below the working directory are temporary ones of a save.
inline int CountLeftovers() {
    int count = 0;
    for (auto const& entry : std::filesystem::recursive_directory_iterator(".")) {
        count += entry.path().extension() == ".tmp" ? 1 : 0;
    }
    return count;
}

namespace Detail {

inline char const kMark[] = "VELMORCORE_STRESS_CHILD";

// Before the library's load steps, which take the working directory as the application's. A child stays in
// its parent's.
__attribute__((constructor(101))) inline void EnterScratchDirectory() {
    if (std::getenv(kMark) != nullptr) {
        return;
    }
    setenv(kMark, "1", 1);
    static char path[] = "/tmp/velmorcore-stress-XXXXXX";
    if (mkdtemp(path) == nullptr || chdir(path) != 0) {
        Child::Die("scratch directory");
    }
    std::atexit([] {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    });
}

}  // namespace Detail

}  // namespace Stress
