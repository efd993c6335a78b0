// Where an answer sends its request on. No state: any thread.
#pragma once

#include <VelmorCore/HttpTransport.h>

#include <string>

namespace Ubrix::Platform {

struct CurlRedirect {
    HttpError error;    // why it can't be followed; HttpErrorNone if it can
    std::string url;    // without user information
    bool isSameOrigin;  // scheme, host and port are those of the URL that answered
};

// Reads a Location header's text `location` from the answer of `from`, an https URL.
CurlRedirect ResolveRedirect(std::string const& from, std::string const& location);

}  // namespace Ubrix::Platform
