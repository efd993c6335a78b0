#include "Platform/Posix/CurlRedirect.h"

#include <curl/curl.h>
#include <strings.h>

#include <memory>

namespace Ubrix::Platform {

namespace {

using Url = std::unique_ptr<CURLU, void (*)(CURLU*)>;

std::string Part(Url const& url, CURLUPart part) {
    char* text = nullptr;
    if (curl_url_get(url.get(), part, &text, CURLU_DEFAULT_PORT) != CURLUE_OK) {
        return std::string();
    }
    std::unique_ptr<char, void (*)(void*)> const owned(text, curl_free);
    return text;
}

bool IsSameOrigin(Url const& a, Url const& b) {
    return Part(a, CURLUPART_SCHEME) == Part(b, CURLUPART_SCHEME) &&
           strcasecmp(Part(a, CURLUPART_HOST).c_str(), Part(b, CURLUPART_HOST).c_str()) == 0 &&
           Part(a, CURLUPART_PORT) == Part(b, CURLUPART_PORT);
}

}  // namespace

CurlRedirect ResolveRedirect(std::string const& from, std::string const& location) {
    Url const before(curl_url(), curl_url_cleanup);
    Url const place(curl_url(), curl_url_cleanup);
    unsigned int const flags = CURLU_URLENCODE | CURLU_ALLOW_SPACE | CURLU_NON_SUPPORT_SCHEME;
    if (before == nullptr || place == nullptr ||
        curl_url_set(before.get(), CURLUPART_URL, from.c_str(), CURLU_PATH_AS_IS) != CURLUE_OK ||
        curl_url_set(place.get(), CURLUPART_URL, from.c_str(), CURLU_PATH_AS_IS) != CURLUE_OK ||
        // Relative to what the handle holds.
        curl_url_set(place.get(), CURLUPART_URL, location.c_str(), flags) != CURLUE_OK) {
        return {HttpErrorRedirectFailed, std::string(), false};
    }
    if (Part(place, CURLUPART_SCHEME) != "https") {
        return {HttpErrorRedirectLeavesTls, std::string(), false};
    }
    curl_url_set(place.get(), CURLUPART_USER, nullptr, 0);
    curl_url_set(place.get(), CURLUPART_PASSWORD, nullptr, 0);
    return {HttpErrorNone, Part(place, CURLUPART_URL), IsSameOrigin(before, place)};
}

}  // namespace Ubrix::Platform
