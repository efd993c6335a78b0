// What to do about a certificate that wasn't accepted, in plain words. No state: any thread.
#pragma once

#include <curl/curl.h>

#include <string>

#include "Platform/BuiltInTransport.h"

namespace Ubrix::Platform {

// One or two sentences for whoever reads the log; empty if the transfer to `url` failed for another reason.
// `verifyResult` is the certificate check's own result; `isCaFileUnreadable` tells that the file of the
// settings is at fault, not the system's.
std::string CertificateAdvice(CURLcode code, long verifyResult, bool isCaFileUnreadable,
                              HttpSettings const& settings, std::string const& url);

}  // namespace Ubrix::Platform
