#include "Platform/Posix/CurlAdvice.h"

#include <openssl/x509_vfy.h>

#include <cstdio>
#include <cstring>

#include "Platform/Posix/CurlErrors.h"
#include "Platform/SystemClock.h"

namespace Ubrix::Platform {

namespace {

std::string HostOf(std::string const& url) {
    std::size_t const start = std::strlen("https://");
    return url.substr(start, url.find_first_of("/?#", start) - start);
}

std::string Now() {
    CalendarTime const now = LocalCalendarTime();
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d", now.year, now.month, now.day, now.hour,
                  now.minute);
    return text;
}

std::string AuthorityFileAdvice(bool isCaFileUnreadable, HttpSettings const& settings) {
    return isCaFileUnreadable
               ? "No certificate authority can be read from " + settings.caFile +
                     ", the file named with SetHttpCaFile: nothing is sent before it is a readable PEM file."
               : "The system's own certificate authorities can't be read: install them (ca-certificates).";
}

}  // namespace

std::string CertificateAdvice(CURLcode code, long verifyResult, bool isCaFileUnreadable,
                              HttpSettings const& settings, std::string const& url) {
    if (code == CURLE_SSL_CACERT_BADFILE) {
        return AuthorityFileAdvice(isCaFileUnreadable, settings);
    }
    std::string const reason = X509_verify_cert_error_string(verifyResult);
    switch (HttpErrorOfCurl(code, verifyResult)) {
        case HttpErrorCertificateAuthority:
            return "The certificate of " + HostOf(url) + " isn't trusted (" + reason +
                   "). If its authority is the server's own, name that one's PEM file with SetHttpCaFile "
                   "(VelmorCore/HttpTransport.h); if not, somebody may be listening in.";
        case HttpErrorCertificateName:
            return "The certificate that came is for another name than " + HostOf(url) + ": check the URL" +
                   (settings.connectAddress.empty()
                        ? std::string()
                        : ", the address " + settings.connectAddress + " named with SetHttpConnectAddress,") +
                   " and the server's certificate.";
        case HttpErrorCertificateDate:
            return "The certificate of " + HostOf(url) + " doesn't count at this device's time, " + Now() +
                   " (" + reason + "): check the device's clock first, then the server's certificate.";
        default:
            return std::string();
    }
}

}  // namespace Ubrix::Platform
