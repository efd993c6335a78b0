#include "Platform/Posix/CurlExchange.h"

#include <openssl/ssl.h>
#include <strings.h>

#include <cstring>

#include "Platform/Clock.h"
#include "Platform/Posix/CurlErrors.h"

namespace Ubrix::Platform {

namespace {

// How often a waiting exchange looks whether it was cancelled or has run out of time.
constexpr int kPollMilliseconds = 100;
constexpr long kMostRedirects = 10;

bool StartsWith(std::string const& line, char const* prefix) {
    return strncasecmp(line.c_str(), prefix, std::strlen(prefix)) == 0;
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
      _isSetUp(_easy != nullptr && _multi != nullptr) {
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
    Set(CURLOPT_REDIR_PROTOCOLS_STR, "https");
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
    std::string url = std::string("https://") + _request.host;
    if (_request.port != 443) {
        url += ":" + std::to_string(_request.port);
    }
    url += _request.path;
    Set(CURLOPT_URL, url.c_str());
    Set(CURLOPT_PATH_AS_IS, 1L);
    Set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    Set(CURLOPT_USERAGENT, "Ubrix");
    Set(CURLOPT_FOLLOWLOCATION, 1L);
    Set(CURLOPT_MAXREDIRS, kMostRedirects);
    if (std::strcmp(_request.method, "POST") == 0) {
        Set(CURLOPT_POST, 1L);
        Set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(_request.bodyLength));
        Set(CURLOPT_POSTFIELDS, static_cast<char const*>(_request.body));
    }
    AddHeaders();
    if (!_settings.connectAddress.empty()) {
        Append(_connectTo, "::" + _settings.connectAddress);
        Set(CURLOPT_CONNECT_TO, _connectTo);
    }
}

void CurlExchange::AddHeaders() {
    // What libcurl would send by itself, unless the request names it.
    for (std::string const own : {"Accept:", "Content-Type:", "Expect:"}) {
        bool isNamed = false;
        for (std::size_t i = 0; i < _request.headerCount; ++i) {
            isNamed = isNamed || StartsWith(_request.headers[i], own.c_str());
        }
        if (!isNamed) {
            Append(_headers, own);
        }
    }
    for (std::size_t i = 0; i < _request.headerCount; ++i) {
        std::string line = _request.headers[i];
        // libcurl reads a colon with nothing behind it as "leave this header out", a semicolon as "empty".
        if (line.find_first_not_of(" \t", line.find(':') + 1) == std::string::npos) {
            line.resize(line.find(':'));
            line += ';';
        }
        Append(_headers, line);
    }
    Set(CURLOPT_HTTPHEADER, _headers);
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
    if (!_isSetUp || curl_multi_add_handle(_multi, _easy) != CURLM_OK) {
        return HttpErrorInternal;
    }
    Enter(Phase::Connecting);
    int const result = Drive();
    curl_multi_remove_handle(_multi, _easy);
    return result;
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
        curl_multi_poll(_multi, nullptr, 0, kPollMilliseconds, nullptr);
    }
}

CURLcode CurlExchange::TransferResult() {
    int left = 0;
    CURLMsg const* const message = curl_multi_info_read(_multi, &left);
    return message != nullptr && message->msg == CURLMSG_DONE ? message->data.result : CURLE_FAILED_INIT;
}

int CurlExchange::Outcome(CURLcode code) {
    // Whatever ends the reading of the body ends it like the body's end.
    if (code == CURLE_OK || _isHeadComplete) {
        return HttpErrorNone;
    }
    // A redirect that names another protocol ends before it connects, with one of the same codes.
    if (!_isRedirect && IsAnswerWithoutHead(code)) {
        return HttpErrorNone;
    }
    long verifyResult = X509_V_OK;
    curl_easy_getinfo(_easy, CURLINFO_SSL_VERIFYRESULT, &verifyResult);
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
    return MonotonicMilliseconds() - _lastActivity >= static_cast<long long>(limit);
}

void CurlExchange::ReadHeaderLine(std::string const& line) {
    if (StartsWith(line, "HTTP/")) {
        _isRedirect = false;
        return;
    }
    long status = 0;
    curl_easy_getinfo(_easy, CURLINFO_RESPONSE_CODE, &status);
    bool const isElsewhere = status >= 300 && status < 400;
    if (StartsWith(line, "Location:")) {
        // libcurl passes over an empty one.
        bool const isEmpty = line.find_first_not_of(" \t\r\n", std::strlen("Location:")) == std::string::npos;
        _isRedirect = _isRedirect || (isElsewhere && !isEmpty);
        return;
    }
    bool const isEnd = line == "\r\n" || line == "\n";
    if (!isEnd || _isHeadComplete || status < 200) {
        return;
    }
    if (_isRedirect) {
        Enter(Phase::Connecting);
        return;
    }
    _isHeadComplete = true;
    _exchange.SetStatus(static_cast<int>(status));
}

std::size_t CurlExchange::OnHeader(char* bytes, std::size_t size, std::size_t count, void* self) {
    auto& exchange = *static_cast<CurlExchange*>(self);
    exchange.Touch();
    exchange.ReadHeaderLine(std::string(bytes, size * count));
    return size * count;
}

std::size_t CurlExchange::OnBody(char* bytes, std::size_t size, std::size_t count, void* self) {
    auto& exchange = *static_cast<CurlExchange*>(self);
    exchange.Touch();
    // Less than what was offered ends the transfer; no piece is empty.
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
    exchange._isRedirect = false;
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
        return CURLE_SSL_CACERT_BADFILE;
    }
    return CURLE_OK;
}

}  // namespace Ubrix::Platform
