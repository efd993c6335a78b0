// A thread's stay inside libcurl and the TLS library.
#pragma once

#include <curl/curl.h>
#include <pthread.h>

namespace Ubrix::Platform {

// When the process exits, the TLS library frees its tables, if the host has let it; a thread that is inside
// then would fall. So the exit ends all stays before that, and waits for their threads: half a second, and on
// a machine that has no time for them up to five, as long as they get on. A thread whose stay the exit has
// ended never comes back from it: whatever it would do next, such as tell a listener that is gone, comes too
// late.
//
// Belongs to the thread that makes it. The libraries are set up with the first stay.
class TlsStay {
public:
    TlsStay();
    // Frees what OpenSSL keeps for this thread: freeing it at the thread's own end could come behind the
    // clean-up.
    ~TlsStay();
    TlsStay(TlsStay const&) = delete;
    TlsStay& operator=(TlsStay const&) = delete;

    // Before the first stay, on the thread that asks for it: an exit that begins before the libraries are set
    // up is then known of, too. Costs nothing else.
    static void WatchForExit();

    // False if the libraries can't be used.
    bool IsAllowed() const { return _isAllowed; }
    // True once the process exits: the stay is to end at once. Any thread.
    static bool IsEnding();
    // `multi` is woken if it is being polled when the process exits. Null for none.
    void WakeBy(CURLM* multi);

private:
    struct All;

    static All& TheStays();
    static bool SetUpLibraries();
    static void EndAll();

    pthread_t const _thread = pthread_self();
    CURLM* _multi = nullptr;
    TlsStay* _next = nullptr;
    TlsStay* _previous = nullptr;
    bool _isAllowed = false;
};

}  // namespace Ubrix::Platform
