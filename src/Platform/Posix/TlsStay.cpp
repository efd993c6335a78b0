#include "Platform/Posix/TlsStay.h"

#include <openssl/crypto.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <ctime>

#include "Platform/Condition.h"
#include "Platform/Immortal.h"
#include "Platform/Mutex.h"
#include "Platform/SystemClock.h"

namespace Ubrix::Platform {

namespace {

// How long an exit waits, in ms: for threads that don't get on, and for any.
constexpr unsigned int kPatience = 500;
constexpr unsigned int kMostPatience = 5000;

// The processor's time that a thread of this process has used, in ns.
long long WorkOf(pthread_t thread) {
    clockid_t clock = 0;
    timespec used{};
    if (pthread_getcpuclockid(thread, &clock) != 0 || clock_gettime(clock, &used) != 0) {
        return 0;
    }
    return static_cast<long long>(used.tv_sec) * 1000000000LL + used.tv_nsec;
}

[[noreturn]] void RestUntilTheEnd() {
    for (;;) {
        pause();
    }
}

}  // namespace

// Never destroyed: threads outlive static objects. The lock is a leaf.
struct TlsStay::All {
    // What all threads inside have done so far.
    long long Work() const VC_REQUIRES(lock) {
        long long sum = 0;
        for (TlsStay const* stay = first; stay != nullptr; stay = stay->_next) {
            sum += WorkOf(stay->_thread);
        }
        return sum;
    }

    RecursiveMutex lock;
    Condition left{lock};
    TlsStay* first VC_GUARDED_BY(lock) = nullptr;
    std::atomic<bool> isEnding{false};
    std::atomic<pid_t> process{getpid()};
};

TlsStay::All& TlsStay::TheStays() {
    static Immortal<All> all;
    return *all;
}

TlsStay::TlsStay() {
    All& all = TheStays();
    {
        ScopedLock const lock(all.lock);
        if (all.process.exchange(getpid()) != getpid()) {
            // A fork took none of the threads along.
            all.first = nullptr;
        }
        _next = all.first;
        if (_next != nullptr) {
            _next->_previous = this;
        }
        all.first = this;
    }
    // An exit that begins behind the second look finds the handler of the set-up.
    _isAllowed = !IsEnding() && SetUpLibraries() && !IsEnding();
}

TlsStay::~TlsStay() {
    if (_isAllowed) {
        OPENSSL_thread_stop();
    }
    All& all = TheStays();
    {
        ScopedLock const lock(all.lock);
        (_previous != nullptr ? _previous->_next : all.first) = _next;
        if (_next != nullptr) {
            _next->_previous = _previous;
        }
        all.left.Broadcast();
    }
    if (IsEnding()) {
        RestUntilTheEnd();
    }
}

void TlsStay::WatchForExit() {
    static bool const isWatched = std::atexit(&TlsStay::EndAll) == 0;
    if (!isWatched) {
        TheStays().isEnding = true;
    }
}

bool TlsStay::IsEnding() {
    return TheStays().isEnding.load();
}

void TlsStay::WakeBy(CURLM* multi) {
    ScopedLock const lock(TheStays().lock);
    _multi = multi;
}

// Once a process. OpenSSL is to read no configuration file, which can load code, and to leave its tables
// alone at exit; where the host has set it up before, the host's choice holds. Exit handlers run last come,
// first served: ours is registered once more behind OpenSSL's. If OpenSSL's clean-up had begun before that,
// the second look says so; it may be among the last of all, long behind the handlers that watch for the exit.
bool TlsStay::SetUpLibraries() {
    static bool const isSetUp = [] {
        constexpr auto kOptions = OPENSSL_INIT_NO_ATEXIT | OPENSSL_INIT_NO_LOAD_CONFIG;
        return OPENSSL_init_crypto(kOptions, nullptr) == 1 && std::atexit(&TlsStay::EndAll) == 0 &&
               OPENSSL_init_crypto(kOptions, nullptr) == 1 &&
               curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    }();
    return isSetUp;
}

void TlsStay::EndAll() {
    All& all = TheStays();
    if (all.process.load() != getpid()) {
        // A fork's exit: none of these threads is in it, though one may have held the lock.
        return;
    }
    ScopedLock const lock(all.lock);
    all.isEnding = true;
    for (TlsStay const* stay = all.first; stay != nullptr; stay = stay->_next) {
        if (stay->_multi != nullptr) {
            curl_multi_wakeup(stay->_multi);
        }
    }
    long long const began = MonotonicMilliseconds();
    long long lastProgress = began;
    long long work = all.Work();
    for (long long now = began;
         all.first != nullptr && now - lastProgress < kPatience && now - began < kMostPatience;
         now = MonotonicMilliseconds()) {
        all.left.WaitFor(kPatience / 10);
        long long const workNow = all.Work();
        lastProgress = workNow != work ? MonotonicMilliseconds() : lastProgress;
        work = workNow;
    }
}

}  // namespace Ubrix::Platform
