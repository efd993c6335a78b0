#include "Platform/Posix/CurlErrors.h"

#include <openssl/x509_vfy.h>

namespace Ubrix::Platform {

namespace {

HttpError CertificateError(long verifyResult) {
    switch (verifyResult) {
        case X509_V_OK:
        case X509_V_ERR_UNSPECIFIED:
            // The chain is good, so it was the name: libcurl checks that itself, with the result still unset.
            return HttpErrorCertificateName;
        case X509_V_ERR_CERT_HAS_EXPIRED:
        case X509_V_ERR_CERT_NOT_YET_VALID:
            return HttpErrorCertificateDate;
        default:
            return HttpErrorCertificateAuthority;
    }
}

}  // namespace

HttpError HttpErrorOfCurl(CURLcode code, long verifyResult) {
    switch (code) {
        case CURLE_OPERATION_TIMEDOUT:
            return HttpErrorTimeout;
        case CURLE_COULDNT_RESOLVE_HOST:
            return HttpErrorNameNotResolved;
        case CURLE_URL_MALFORMAT:
            return HttpErrorInvalidUrl;
        case CURLE_COULDNT_CONNECT:
            return HttpErrorCannotConnect;
        case CURLE_SEND_ERROR:
        case CURLE_RECV_ERROR:
        case CURLE_PARTIAL_FILE:
            return HttpErrorConnectionBroken;
        case CURLE_PEER_FAILED_VERIFICATION:
            return CertificateError(verifyResult);
        case CURLE_SSL_CACERT_BADFILE:
        case CURLE_SSL_ISSUER_ERROR:
            return HttpErrorCertificateAuthority;
        case CURLE_SSL_CONNECT_ERROR:
            return HttpErrorSecureChannel;
        default:
            return HttpErrorInternal;
    }
}

bool IsAnswerWithoutHead(CURLcode code) {
    // A line that isn't HTTP/1 counts as the old protocol without a head, which libcurl calls unsupported.
    return code == CURLE_GOT_NOTHING || code == CURLE_WEIRD_SERVER_REPLY ||
           code == CURLE_UNSUPPORTED_PROTOCOL;
}

}  // namespace Ubrix::Platform
