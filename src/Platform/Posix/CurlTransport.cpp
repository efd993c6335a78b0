#include <pthread.h>

#include <clocale>
#include <csignal>
#include <ctime>
#include <new>

#include "Platform/BuiltInTransport.h"
#include "Platform/Immortal.h"
#include "Platform/Posix/CurlExchange.h"
#include "Platform/Posix/TlsStay.h"

namespace Ubrix::Platform {

namespace {

// libcurl reads host names in the thread's locale; ours are UTF-8 whatever the host program has chosen.
class Utf8Locale {
public:
    Utf8Locale() : _locale(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)) {
        if (_locale != nullptr) {
            _before = uselocale(_locale);
        }
    }
    ~Utf8Locale() {
        if (_locale != nullptr) {
            uselocale(_before);
            freelocale(_locale);
        }
    }
    Utf8Locale(Utf8Locale const&) = delete;
    Utf8Locale& operator=(Utf8Locale const&) = delete;

private:
    locale_t _locale;
    locale_t _before = nullptr;
};

// Writing to a closed connection raises SIGPIPE, whose default is to end the process.
class BrokenPipeBlocker {
public:
    BrokenPipeBlocker() {
        sigemptyset(&_pipe);
        sigaddset(&_pipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &_pipe, &_before);
    }
    ~BrokenPipeBlocker() {
        timespec const noWait{};
        if (sigismember(&_before, SIGPIPE) == 0) {
            sigtimedwait(&_pipe, nullptr, &noWait);
        }
        pthread_sigmask(SIG_SETMASK, &_before, nullptr);
    }
    BrokenPipeBlocker(BrokenPipeBlocker const&) = delete;
    BrokenPipeBlocker& operator=(BrokenPipeBlocker const&) = delete;

private:
    sigset_t _pipe{};
    sigset_t _before{};
};

class CurlTransport : public IHttpTransport {
public:
    int Perform(HttpRequest const& request, IHttpExchange& exchange) override {
        BrokenPipeBlocker const blocker;
        Utf8Locale const locale;
        TlsStay stay;
        if (!stay.IsAllowed()) {
            return HttpErrorInternal;
        }
        try {
            HttpSettings const settings = CurrentHttpSettings();
            return CurlExchange(request, exchange, settings, stay).Run();
        } catch (std::bad_alloc const&) {
            return HttpErrorInternal;
        }
    }
};

}  // namespace

IHttpTransport& BuiltInHttpTransport() {
    static Immortal<CurlTransport> transport;
    TlsStay::WatchForExit();
    return *transport;
}

}  // namespace Ubrix::Platform
