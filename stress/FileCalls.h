// The calls of a traced child to the file system, one at a time.
#pragma once

#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <iterator>
#include <set>

#include "Children.h"

namespace Stress {

// What is to happen to a call.
enum class Fate { Passes, IsTheLast, Fails, IsShortened };

struct Verdict {
    Fate fate = Fate::Passes;
    int error = 0;  // for Fails
};

// True for what opens, reads, writes, looks at, renames, locks or removes files, and for the random source;
// not for the standard streams and the report.
inline bool IsFileCall(unsigned long long number, unsigned long long descriptor) {
    static constexpr int kByName[] = {
        SYS_open,       SYS_openat,    SYS_stat,   SYS_lstat,      SYS_newfstatat, SYS_statx,
        SYS_access,     SYS_faccessat, SYS_rename, SYS_renameat2,  SYS_unlink,     SYS_mkdir,
        SYS_faccessat2, SYS_unlinkat,  SYS_chmod,  SYS_readlink,   SYS_getcwd,     SYS_getrandom,
        SYS_ftruncate,  SYS_flock,     SYS_fchmod, SYS_getdents64, SYS_lseek};
    static constexpr int kByDescriptor[] = {SYS_read,  SYS_pread64, SYS_write, SYS_pwrite64, SYS_writev,
                                            SYS_readv, SYS_close,   SYS_fstat, SYS_fcntl};
    auto const isIn = [number](auto const& list) {
        return std::find(std::begin(list), std::end(list), static_cast<int>(number)) != std::end(list);
    };
    return isIn(kByName) || (descriptor > kReport && isIn(kByDescriptor));
}

// Runs a child that was started with Tracing::FromTheStart to its end, and gives its status. Each call to the
// file system that comes, on any of its threads, between its first and its second raise(SIGUSR1) gets the
// verdict of `judge`, which is given the call's number.
template <typename Judge>
int RunTraced(Child& child, Judge const& judge) {
    pid_t const process = child.Pid();
    int status = 0;
    if (waitpid(process, &status, __WALL) != process || !WIFSTOPPED(status)) {
        Child::Die("a traced child didn't start");
    }
    ptrace(PTRACE_SETOPTIONS, process, nullptr,
           PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACECLONE | PTRACE_O_EXITKILL);
    auto request = PTRACE_CONT;
    ptrace(request, process, nullptr, nullptr);
    std::set<pid_t> failing;
    int error = 0;
    for (pid_t thread = -1; (thread = waitpid(-1, &status, __WALL)) > 0;) {
        if (!WIFSTOPPED(status)) {
            if (thread == process) {
                child.HasEnded();
                return status;
            }
            continue;
        }
        int signal = WSTOPSIG(status);
        if (signal == SIGUSR1) {
            request = request == PTRACE_CONT ? PTRACE_SYSCALL : PTRACE_CONT;
            signal = 0;
        } else if (signal == (SIGTRAP | 0x80)) {
            signal = 0;
            user_regs_struct registers{};
            ptrace(PTRACE_GETREGS, thread, nullptr, &registers);
            __ptrace_syscall_info info{};
            ptrace(PTRACE_GET_SYSCALL_INFO, thread, sizeof info, &info);
            if (failing.erase(thread) != 0) {
                registers.rax = static_cast<unsigned long long>(-error);
                ptrace(PTRACE_SETREGS, thread, nullptr, &registers);
            } else if (request == PTRACE_SYSCALL && info.op == PTRACE_SYSCALL_INFO_ENTRY &&
                       IsFileCall(info.entry.nr, info.entry.args[0])) {
                Verdict const verdict = judge(static_cast<int>(info.entry.nr));
                if (verdict.fate == Fate::IsTheLast) {
                    kill(process, SIGKILL);
                } else if (verdict.fate == Fate::Fails) {
                    error = verdict.error;
                    failing.insert(thread);
                    registers.orig_rax = static_cast<unsigned long long>(-1);
                    ptrace(PTRACE_SETREGS, thread, nullptr, &registers);
                } else if (verdict.fate == Fate::IsShortened) {
                    registers.rdx = (registers.rdx + 1) / 2;
                    ptrace(PTRACE_SETREGS, thread, nullptr, &registers);
                }
            }
        } else if (signal == SIGTRAP || signal == SIGSTOP) {
            signal = 0;  // A thread's start, or the news of it.
        }
        ptrace(failing.count(thread) != 0 ? PTRACE_SYSCALL : request, thread, nullptr, signal);
    }
    Child::Die("a traced child was lost");
}

}  // namespace Stress
