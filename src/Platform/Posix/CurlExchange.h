// One request on libcurl.
#pragma once

#include <VelmorCore/HttpTransport.h>
#include <curl/curl.h>

#include <string>

#include "Platform/BuiltInTransport.h"
#include "Platform/Posix/TlsStay.h"

namespace Ubrix::Platform {

// Belongs to the thread that makes it. Nothing is shared with other requests: no connection, no cache.
class CurlExchange {
public:
    // All four must outlive the object.
    CurlExchange(HttpRequest const& request, IHttpExchange& exchange, HttpSettings const& settings,
                 TlsStay& stay);
    ~CurlExchange();
    CurlExchange(CurlExchange const&) = delete;
    CurlExchange& operator=(CurlExchange const&) = delete;

    // Carries the request to its end, as IHttpTransport::Perform tells. Called once.
    int Run();

private:
    // How far the exchange is, and with it which limit runs.
    enum class Phase { Connecting, Handshaking, Exchanging };

    template <typename T>
    void Set(CURLoption option, T value);
    void SetSecurity();
    void SetIsolation();
    void SetRequest();
    void SetCallbacks();
    void AddOwnHeaders();
    void AddRequestedHeaders();
    void Append(curl_slist*& list, std::string const& line);

    // One request of the chain, and what it ends with.
    int Perform();
    // Sets up the next request of the chain.
    int Follow();
    int Drive();
    int Outcome(CURLcode code);
    int Failure(CURLcode code);
    CURLcode TransferResult();
    void Enter(Phase phase);
    void Touch();
    bool HasTimedOut() const;
    // True once more has come than an answer may cost, whatever it was.
    bool HasReceivedTooMuch() const;
    // False if the answer is to end here.
    bool ReadHeaderLine(std::string const& line);
    bool ReadHeadEnd();

    static std::size_t OnHeader(char* bytes, std::size_t size, std::size_t count, void* self);
    static std::size_t OnBody(char* bytes, std::size_t size, std::size_t count, void* self);
    static int OnProgress(void* self, curl_off_t downTotal, curl_off_t down, curl_off_t upTotal,
                          curl_off_t up);
    static int OnConnected(void* self, char* peer, char* local, int peerPort, int localPort);
    static CURLcode OnTlsContext(CURL* easy, void* context, void* self);

    HttpRequest const& _request;
    IHttpExchange& _exchange;
    HttpSettings const& _settings;
    TlsStay& _stay;
    CURL* _easy;
    CURLM* _multi;
    curl_slist* _headers = nullptr;
    curl_slist* _connectTo = nullptr;
    bool _isSetUp;
    std::string _url;  // of the request in hand
    Phase _phase = Phase::Connecting;
    long long const _began;  // ms of the monotonic clock, as the next
    long long _lastActivity = 0;
    curl_off_t _sent = 0;  // bytes of the body
    bool _isSending = false;
    std::size_t _headBytes = 0;    // of all heads, interim ones too, and of what follows a chunked body
    std::string _location;         // that the head in hand names; empty for none
    bool _isRedirect = false;      // the head that came sends the request there
    bool _isHeadBegun = false;     // of the answer in hand
    bool _isHeadComplete = false;  // of the answer that counts
    bool _isCaFileUnreadable = false;
};

}  // namespace Ubrix::Platform
