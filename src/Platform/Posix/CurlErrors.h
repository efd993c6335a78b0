// Names libcurl's outcomes in the transport's numbers. No state: any thread.
#pragma once

#include <VelmorCore/HttpTransport.h>
#include <curl/curl.h>

namespace Ubrix::Platform {

// The number of a failed transfer. `verifyResult` is the certificate check's own result, which tells an
// expired certificate from an unknown authority and from a wrong name.
HttpError HttpErrorOfCurl(CURLcode code, long verifyResult);

// True for the outcomes in which the server was reached and gave no head of an answer.
bool IsAnswerWithoutHead(CURLcode code);

}  // namespace Ubrix::Platform
