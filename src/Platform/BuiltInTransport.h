// The built-in HTTP transport, made of what the system offers.
#pragma once

#include <VelmorCore/HttpTransport.h>

#include <string>

namespace Ubrix::Platform {

// Limits in milliseconds of monotonic time; the request ends with HttpErrorTimeout when one is passed, or
// with what came so far once the answer's head is complete.
struct HttpTimeouts {
    unsigned int connect = 60000;    // name resolution and connection, for each redirect anew
    unsigned int send = 20000;       // without a byte of the request's body sent
    unsigned int receive = 30000;    // without a byte received; also for the whole TLS handshake
    unsigned int exchange = 600000;  // the whole of it, redirects included
};

struct HttpSettings {
    std::string caFile;          // additional authorities; empty for none
    std::string connectAddress;  // "host:port" for all connections; empty for none
    HttpTimeouts timeouts;
};

// The settings for requests that start from now on. Thread-safe.
HttpSettings CurrentHttpSettings();
void SetHttpCaFile(std::string const& path);
void SetHttpConnectAddress(std::string const& address);
void SetHttpTimeouts(HttpTimeouts const& timeouts);

// The transport itself. At least TLS 1.2, certificate and name always verified, https only, redirects
// included and at most 10; no proxy whatever the environment says, no cookies, no stored passwords, no kept
// connection. The request's headers go to its own host, port and scheme only. All heads of a request's
// answers, interim ones and redirects included, and what follows a chunked body come to 1 MiB at most; more,
// or a coding that nobody asked for, counts as an answer without a head. A cancelled request ends within
// about 100 ms. The system's set-up happens at the first request. When the process exits, requests are ended,
// and their threads rest until it is gone.
IHttpTransport& BuiltInHttpTransport();

}  // namespace Ubrix::Platform
