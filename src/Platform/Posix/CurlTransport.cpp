#include <curl/curl.h>
#include <openssl/crypto.h>
#include <pthread.h>

#include <clocale>
#include <csignal>
#include <ctime>

#include "Platform/HttpTransport.h"
#include "Platform/Posix/CurlExchange.h"

namespace Ubrix::Platform {

namespace {

// Once a process, at the first request. A request may still be in flight at exit, so that OpenSSL is to leave
// its tables alone then; where another library has set it up before, that one's choice holds.
bool SetUpLibraries() {
    static bool const isSetUp = [] {
        OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);
        return curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    }();
    return isSetUp;
}

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

// What OpenSSL keeps for a thread goes with the request, not with the thread: a thread that ends behind its
// request's outcome would free it while the process may be exiting already, and OpenSSL is cleaned up.
class OpenSslThreadState {
public:
    OpenSslThreadState() = default;
    ~OpenSslThreadState() { OPENSSL_thread_stop(); }
    OpenSslThreadState(OpenSslThreadState const&) = delete;
    OpenSslThreadState& operator=(OpenSslThreadState const&) = delete;
};

class CurlTransport : public IHttpTransport {
public:
    int Perform(HttpRequest const& request, IHttpExchange& exchange) override {
        if (!SetUpLibraries()) {
            return HttpErrorInternal;
        }
        OpenSslThreadState const state;
        BrokenPipeBlocker const blocker;
        Utf8Locale const locale;
        HttpSettings const settings = CurrentHttpSettings();
        return CurlExchange(request, exchange, settings).Run();
    }
};

}  // namespace

IHttpTransport& BuiltInHttpTransport() {
    static auto* const transport = new CurlTransport;
    return *transport;
}

}  // namespace Ubrix::Platform
