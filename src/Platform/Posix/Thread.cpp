#include "Platform/Thread.h"

#include <pthread.h>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <memory>
#include <new>

namespace Ubrix::Platform {

namespace {

struct Start {
    void (*body)(void*);
    void* argument;
};

void* RunStart(void* pointer) {
    std::unique_ptr<Start> start(static_cast<Start*>(pointer));
    start->body(start->argument);
    return nullptr;
}

}  // namespace

bool StartThread(void (*body)(void* argument), void* argument, void** handle) {
    if (handle != nullptr) {
        *handle = nullptr;
    }
    std::unique_ptr<Start> start(new (std::nothrow) Start{body, argument});
    if (start == nullptr) {
        return false;
    }
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_t thread{};
    int const result = pthread_create(&thread, &attributes, RunStart, start.get());
    pthread_attr_destroy(&attributes);
    if (result != 0) {
        return false;
    }
    // The thread owns its start record from here on.
    static_cast<void>(start.release());
    if (handle != nullptr) {
        std::memcpy(handle, &thread, sizeof *handle < sizeof thread ? sizeof *handle : sizeof thread);
    }
    return true;
}

unsigned int CurrentThreadNumber() {
    // One system call a thread: every log line asks.
    thread_local auto const number = static_cast<unsigned int>(syscall(SYS_gettid));
    return number;
}

void NameCurrentThread(char const* name) {
    // Linux takes 15 characters and a terminator.
    char cut[16] = {};
    std::strncpy(cut, name, sizeof cut - 1);
    pthread_setname_np(pthread_self(), cut);
}

void SleepFor(unsigned int milliseconds) {
    if (milliseconds == 0) {
        sched_yield();
        return;
    }
    timespec rest{static_cast<time_t>(milliseconds / 1000U),
                  static_cast<long>(milliseconds % 1000U) * 1000000L};
    while (nanosleep(&rest, &rest) != 0 && errno == EINTR) {
    }
}

}  // namespace Ubrix::Platform
