#include "Platform/Posix/CurlExchange.h"

#include <openssl/ssl.h>
#include <strings.h>

#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

#include "Platform/Posix/CurlAdvice.h"
#include "Platform/Posix/CurlErrors.h"
#include "Platform/Posix/CurlRedirect.h"
#include "Platform/SystemClock.h"

namespace Ubrix::Platform {

namespace {

// How often a waiting exchange looks whether it was cancelled or has run out of time.
constexpr int kPollMilliseconds = 100;
constexpr int kMostRedirects = 10;
constexpr std::size_t kMostHeadBytes = std::size_t{1} << 20U;
// Off the wire, for one request of a chain. A body of the longest kind has room in it in small chunks, too.
constexpr std::uint64_t kMostReceived = std::uint64_t{256} << 20U;

bool StartsWith(std::string const& line, char const* prefix) {
    return strncasecmp(line.c_str(), prefix, std::strlen(prefix)) == 0;
}

// What follows the colon, without the blanks around it.
std::string ValueOf(std::string const& line) {
    char const* const blanks = " \t\r\n";
    std::size_t const begin = line.find_first_not_of(blanks, line.find(':') + 1);
    return begin == std::string::npos ? std::string()
                                      : line.substr(begin, line.find_last_not_of(blanks) - begin + 1);
}

bool IsRedirectStatus(long status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

}  // namespace

CurlExchange::CurlExchange(HttpRequest const& request, IHttpExchange& exchange, HttpSettings const& settings,
                           TlsStay& stay)
    : _request(request),
      _exchange(exchange),
      _settings(settings),
      _stay(stay),
      _easy(curl_easy_init()),
      _multi(curl_multi_init()),
      _isSetUp(_easy != nullptr && _multi != nullptr),
      _began(MonotonicMilliseconds()) {
    _stay.WakeBy(_multi);
    if (_isSetUp) {
        SetSecurity();
        SetIsolation();
        SetRequest();
        SetCallbacks();
    }
}

CurlExchange::~CurlExchange() {
    _stay.WakeBy(nullptr);
    curl_multi_cleanup(_multi);
    curl_easy_cleanup(_easy);
    curl_slist_free_all(_headers);
    curl_slist_free_all(_connectTo);
}

// An option that can't be set must not quietly weaken the request: nothing is sent then.
template <typename T>
void CurlExchange::Set(CURLoption option, T value) {
    _isSetUp = curl_easy_setopt(_easy, option, value) == CURLE_OK && _isSetUp;
}

void CurlExchange::Append(curl_slist*& list, std::string const& line) {
    curl_slist* const longer = curl_slist_append(list, line.c_str());
    _isSetUp = longer != nullptr && _isSetUp;
    list = longer != nullptr ? longer : list;
}

void CurlExchange::SetSecurity() {
    Set(CURLOPT_PROTOCOLS_STR, "https");
    Set(CURLOPT_SSL_VERIFYPEER, 1L);
    Set(CURLOPT_SSL_VERIFYHOST, 2L);
    Set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    Set(CURLOPT_SSL_CTX_FUNCTION, &CurlExchange::OnTlsContext);
    Set(CURLOPT_SSL_CTX_DATA, this);
}

void CurlExchange::SetIsolation() {
    Set(CURLOPT_PROXY, "");
    Set(CURLOPT_NOPROXY, "*");
    Set(CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
    Set(CURLOPT_FRESH_CONNECT, 1L);
    Set(CURLOPT_FORBID_REUSE, 1L);
    Set(CURLOPT_SSL_SESSIONID_CACHE, 0L);
    Set(CURLOPT_NOSIGNAL, 1L);
    // A name that is still being resolved must not hold a cancelled request back.
    Set(CURLOPT_QUICK_EXIT, 1L);
    // The limits of the phases are kept in Drive; this one only has to be longer.
    Set(CURLOPT_CONNECTTIMEOUT_MS,
        2L * (static_cast<long>(_settings.timeouts.connect) + static_cast<long>(_settings.timeouts.receive)));
}

void CurlExchange::SetRequest() {
    _url = std::string("https://") + _request.host;
    if (_request.port != 443) {
        _url += ":" + std::to_string(_request.port);
    }
    _url += _request.path;
    Set(CURLOPT_URL, _url.c_str());
    Set(CURLOPT_PATH_AS_IS, 1L);
    Set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    Set(CURLOPT_USERAGENT, "Ubrix");
    if (std::strcmp(_request.method, "POST") == 0) {
        Set(CURLOPT_POST, 1L);
        Set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(_request.bodyLength));
        Set(CURLOPT_POSTFIELDS, static_cast<char const*>(_request.body));
    }
    AddOwnHeaders();
    AddRequestedHeaders();
    Set(CURLOPT_HTTPHEADER, _headers);
    if (!_settings.connectAddress.empty()) {
        Append(_connectTo, "::" + _settings.connectAddress);
        Set(CURLOPT_CONNECT_TO, _connectTo);
    }
}

// Leaves out what libcurl would send by itself, unless the request names it.
void CurlExchange::AddOwnHeaders() {
    for (std::string const own : {"Accept:", "Content-Type:", "Expect:"}) {
        bool isNamed = false;
        for (std::size_t i = 0; i < _request.headerCount; ++i) {
            isNamed = isNamed || StartsWith(_request.headers[i], own.c_str());
        }
        if (!isNamed) {
            Append(_headers, own);
        }
    }
}

void CurlExchange::AddRequestedHeaders() {
    for (std::size_t i = 0; i < _request.headerCount; ++i) {
        std::string line = _request.headers[i];
        // libcurl reads a colon with nothing behind it as "leave this header out", a semicolon as "empty".
        if (line.find_first_not_of(" \t", line.find(':') + 1) == std::string::npos) {
            line.resize(line.find(':'));
            line += ';';
        }
        Append(_headers, line);
    }
}

void CurlExchange::SetCallbacks() {
    Set(CURLOPT_HEADERFUNCTION, &CurlExchange::OnHeader);
    Set(CURLOPT_HEADERDATA, this);
    Set(CURLOPT_WRITEFUNCTION, &CurlExchange::OnBody);
    Set(CURLOPT_WRITEDATA, this);
    Set(CURLOPT_XFERINFOFUNCTION, &CurlExchange::OnProgress);
    Set(CURLOPT_XFERINFODATA, this);
    Set(CURLOPT_NOPROGRESS, 0L);
    Set(CURLOPT_PREREQFUNCTION, &CurlExchange::OnConnected);
    Set(CURLOPT_PREREQDATA, this);
}

int CurlExchange::Run() {
    int result = Perform();
    for (int followed = 0; _isRedirect && result == HttpErrorNone; ++followed) {
        result = followed < kMostRedirects ? Follow() : HttpErrorRedirectFailed;
        if (result == HttpErrorNone) {
            result = Perform();
        }
    }
    return result;
}

int CurlExchange::Perform() {
    _isRedirect = false;
    _isHeadBegun = false;
    if (!_isSetUp || curl_multi_add_handle(_multi, _easy) != CURLM_OK) {
        return HttpErrorInternal;
    }
    Enter(Phase::Connecting);
    int const result = Drive();
    curl_multi_remove_handle(_multi, _easy);
    return result;
}

int CurlExchange::Follow() {
    long status = 0;
    curl_easy_getinfo(_easy, CURLINFO_RESPONSE_CODE, &status);
    CurlRedirect const redirect = ResolveRedirect(_url, _location);
    if (redirect.error != HttpErrorNone) {
        return redirect.error;
    }
    if (!redirect.isSameOrigin) {
        // What the caller put there may be a secret between it and the first server.
        curl_slist_free_all(std::exchange(_headers, nullptr));
        AddOwnHeaders();
        Set(CURLOPT_HTTPHEADER, _headers);
    }
    if (status != 307 && status != 308) {
        Set(CURLOPT_HTTPGET, 1L);
    }
    _url = redirect.url;
    Set(CURLOPT_URL, _url.c_str());
    return HttpErrorNone;
}

int CurlExchange::Drive() {
    for (;;) {
        int running = 0;
        if (curl_multi_perform(_multi, &running) != CURLM_OK) {
            return HttpErrorInternal;
        }
        if (_exchange.IsCancelled() || TlsStay::IsEnding()) {
            return HttpErrorCancelled;
        }
        if (running == 0) {
            return Outcome(TransferResult());
        }
        if (HasTimedOut()) {
            return Outcome(CURLE_OPERATION_TIMEDOUT);
        }
        if (HasReceivedTooMuch()) {
            return Outcome(CURLE_RECV_ERROR);
        }
        curl_multi_poll(_multi, nullptr, 0, kPollMilliseconds, nullptr);
    }
}

CURLcode CurlExchange::TransferResult() {
    int left = 0;
    CURLMsg const* const message = curl_multi_info_read(_multi, &left);
    return message != nullptr && message->msg == CURLMSG_DONE ? message->data.result : CURLE_FAILED_INIT;
}

int CurlExchange::Outcome(CURLcode code) {
    // Whatever ends the reading of the body ends it like the body's end; and of a redirect nobody reads one.
    if (code == CURLE_OK || _isHeadComplete || _isRedirect) {
        return HttpErrorNone;
    }
    // What breaks a head in the middle, one of libcurl's own limits perhaps, leaves an answer without a head.
    bool const isHeadBroken = _isHeadBegun && code != CURLE_OPERATION_TIMEDOUT;
    return isHeadBroken || IsAnswerWithoutHead(code) ? HttpErrorNone : Failure(code);
}

int CurlExchange::Failure(CURLcode code) {
    long verifyResult = X509_V_OK;
    curl_easy_getinfo(_easy, CURLINFO_SSL_VERIFYRESULT, &verifyResult);
    std::string const advice = CertificateAdvice(code, verifyResult, _isCaFileUnreadable, _settings, _url);
    if (!advice.empty()) {
        _exchange.Explain(advice.c_str());
    }
    return HttpErrorOfCurl(code, verifyResult);
}

void CurlExchange::Enter(Phase phase) {
    _phase = phase;
    Touch();
}

void CurlExchange::Touch() {
    _lastActivity = MonotonicMilliseconds();
}

bool CurlExchange::HasTimedOut() const {
    unsigned int limit = _settings.timeouts.receive;
    if (_phase == Phase::Connecting) {
        limit = _settings.timeouts.connect;
    } else if (_phase == Phase::Exchanging && _isSending) {
        limit = _settings.timeouts.send;
    }
    long long const now = MonotonicMilliseconds();
    return now - _lastActivity >= static_cast<long long>(limit) ||
           now - _began >= static_cast<long long>(_settings.timeouts.exchange);
}

bool CurlExchange::HasReceivedTooMuch() const {
    curl_tlssessioninfo* session = nullptr;
    curl_easy_getinfo(_easy, CURLINFO_TLS_SSL_PTR, &session);
    auto* const tls = session != nullptr ? static_cast<SSL*>(session->internals) : nullptr;
    BIO* const wire = tls != nullptr ? SSL_get_rbio(tls) : nullptr;
    return wire != nullptr && BIO_number_read(wire) > kMostReceived;
}

bool CurlExchange::ReadHeaderLine(std::string const& line) {
    if (_isHeadComplete) {
        return true;
    }
    if (line == "\r\n" || line == "\n") {
        return ReadHeadEnd();
    }
    if (StartsWith(line, "HTTP/")) {
        _location.clear();
    } else if (StartsWith(line, "Location:") && _location.empty()) {
        _location = ValueOf(line);
    } else if (StartsWith(line, "Transfer-Encoding:")) {
        // libcurl would unpack any other, though it never asked for one, and one inside another without end.
        std::string const coding = ValueOf(line);
        return strcasecmp(coding.c_str(), "chunked") == 0 || strcasecmp(coding.c_str(), "identity") == 0;
    }
    return true;
}

bool CurlExchange::ReadHeadEnd() {
    long status = 0;
    curl_easy_getinfo(_easy, CURLINFO_RESPONSE_CODE, &status);
    _isRedirect = IsRedirectStatus(status) && !_location.empty();
    if (status >= 200 && !_isRedirect) {
        _isHeadComplete = true;
        _exchange.SetStatus(static_cast<int>(status));
    }
    return !_isRedirect;
}

// Less than what was offered ends the transfer. No exception may cross libcurl.
std::size_t CurlExchange::OnHeader(char* bytes, std::size_t size, std::size_t count, void* self) {
    auto& exchange = *static_cast<CurlExchange*>(self);
    exchange.Touch();
    exchange._headBytes += size * count;
    exchange._isHeadBegun = true;
    bool goesOn = false;
    try {
        goesOn = exchange._headBytes <= kMostHeadBytes &&
                 exchange.ReadHeaderLine(std::string(bytes, size * count));
    } catch (std::bad_alloc const&) {
        goesOn = false;
    }
    return goesOn ? size * count : 0;
}

std::size_t CurlExchange::OnBody(char* bytes, std::size_t size, std::size_t count, void* self) {
    auto& exchange = *static_cast<CurlExchange*>(self);
    exchange.Touch();
    // No piece is empty.
    return exchange._exchange.AppendBody(bytes, size * count) ? size * count : 0;
}

int CurlExchange::OnProgress(void* self, curl_off_t, curl_off_t, curl_off_t upTotal, curl_off_t up) {
    auto& exchange = *static_cast<CurlExchange*>(self);
    if (up != exchange._sent) {
        exchange._sent = up;
        exchange.Touch();
    }
    exchange._isSending = up < upTotal;
    return 0;
}

int CurlExchange::OnConnected(void* self, char*, char*, int, int) {
    auto& exchange = *static_cast<CurlExchange*>(self);
    exchange.Enter(Phase::Exchanging);
    return CURL_PREREQFUNC_OK;
}

CURLcode CurlExchange::OnTlsContext(CURL*, void* context, void* self) {
    auto& exchange = *static_cast<CurlExchange*>(self);
    auto* const tls = static_cast<SSL_CTX*>(context);
    exchange.Enter(Phase::Handshaking);
    // The environment may name a file for session keys; this library's stay secret.
    SSL_CTX_set_keylog_callback(tls, nullptr);
    std::string const& file = exchange._settings.caFile;
    if (!file.empty() && X509_STORE_load_file(SSL_CTX_get_cert_store(tls), file.c_str()) != 1) {
        exchange._isCaFileUnreadable = true;
        return CURLE_SSL_CACERT_BADFILE;
    }
    return CURLE_OK;
}

}  // namespace Ubrix::Platform
