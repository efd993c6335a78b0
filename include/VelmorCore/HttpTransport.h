/// @file
/// What carries the library's HTTP requests, and how a host puts its own carrier in its place.
#pragma once

#include <VelmorCore/Export.h>

#include <cstddef>

namespace Ubrix {

/// Numbers that a transport reports. Any other number but 0 counts as a failure without a class of its own.
enum HttpError : int {
    /// An answer came.
    HttpErrorNone = 0,
    /// A time-out.
    HttpErrorTimeout = 12002,
    /// Something of the transport's own, such as a want of memory.
    HttpErrorInternal = 12004,
    /// The URL can't be read.
    HttpErrorInvalidUrl = 12005,
    /// The host's name doesn't resolve.
    HttpErrorNameNotResolved = 12007,
    /// The request was given up.
    HttpErrorCancelled = 12017,
    /// No connection.
    HttpErrorCannotConnect = 12029,
    /// The connection broke ahead of an answer's head.
    HttpErrorConnectionBroken = 12031,
    /// The certificate isn't valid at this time.
    HttpErrorCertificateDate = 12037,
    /// The certificate is another host's.
    HttpErrorCertificateName = 12038,
    /// A redirect that leads out of TLS.
    HttpErrorRedirectLeavesTls = 12040,
    /// Nobody who is trusted signed the certificate.
    HttpErrorCertificateAuthority = 12045,
    /// What came is no answer of HTTP.
    HttpErrorNoStatus = 12150,
    /// Too many redirects, or one that can't be followed.
    HttpErrorRedirectFailed = 12156,
    /// TLS failed in another way.
    HttpErrorSecureChannel = 12157,
};

/// One request as it is to go out. Texts are UTF-8, zero-terminated and valid during the call.
struct HttpRequest {
    char const* method;  ///< "GET" or "POST"
    char const* host;    ///< without scheme and port; an IPv6 address stands in brackets
    int port;            ///< 443
    char const* path;    ///< begins with a slash; with the query; ASCII, escaped as the wire needs it
    /// Lines "key:value" without line end, without control characters, in order.
    char const* const* headers;
    /// How many lines.
    std::size_t headerCount;
    /// The body; null for GET.
    void const* body;
    /// Bytes of the body.
    std::size_t bodyLength;
};

/// Where a transport puts the answer, and where it learns that nobody wants it any more.
class VELMORCORE_API IHttpExchange {
public:
    /// True once the request is given up. A transport asks at least once a second, and then ends.
    virtual bool IsCancelled() = 0;
    /// The answer's status number, once its head is complete. Interim answers and followed redirects don't
    /// count. Without this call the answer counts as one without a head.
    virtual void SetStatus(int status) = 0;
    /// The next piece of the body, copied. False if no more is wanted: the transport then ends the exchange
    /// as it would at the body's end.
    virtual bool AppendBody(void const* bytes, std::size_t length) = 0;
    /// What to do about the failure that the transport is going to return: a sentence or two of UTF-8,
    /// copied. Goes into the log as one line of level Warning. The latest call counts; without one there is
    /// no such line.
    virtual void Explain(char const* advice) = 0;

protected:
    ~IHttpExchange() = default;
};

/// Carries requests. The library calls Perform on a thread that it has made for the one request, with no lock
/// held, and on as many threads at once as there are requests.
class VELMORCORE_API IHttpTransport {
public:
    /// Carries one request over verified TLS, and returns when it is over. Returns 0 if an answer came, also
    /// if its body broke off, else an HttpError or a number of the transport's own; what was put into
    /// `exchange` is then forgotten. Sends no header of its own but what HTTP needs. No exception may leave
    /// it.
    virtual int Perform(HttpRequest const& request, IHttpExchange& exchange) = 0;

protected:
    ~IHttpTransport() = default;
};

/// Puts `transport` in place of the built-in one, or the built-in one back for null. Answers false and
/// changes nothing from the first request on. Not owned; must live until the process ends. Any thread.
VELMORCORE_API bool SetHttpTransport(IHttpTransport* transport);

/// Names a PEM file of certificate authorities to trust beside the system's own; null or empty for none.
/// Holds for requests started from then on. The built-in transport reads it for each request, and a request
/// for which it can't be read fails with code 1; a Warning line tells. For staging servers and tests. Any
/// thread.
VELMORCORE_API void SetHttpCaFile(char const* path);
/// Sets an address "host:port" that all connections go to in place of the one that their URL names; null or
/// empty for none. Holds for requests started from then on, with the built-in transport. An IPv6 address
/// stands in brackets. The certificate is still verified against the URL's host. False for a text of another
/// form, which changes nothing. For staging servers and tests. Any thread.
VELMORCORE_API bool SetHttpConnectAddress(char const* address);

}  // namespace Ubrix
