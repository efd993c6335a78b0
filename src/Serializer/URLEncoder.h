// Percent-encoding for the values of an HTTP query (application/x-www-form-urlencoded, as in the WHATWG URL
// standard and RFC 3986): a blank is '+'.
#pragma once

#include <string>

namespace Ubrix {

// Works on bytes of any encoding, zero bytes included. No state: any thread may call.
class URLEncoder {
public:
    URLEncoder() = delete;

    // ASCII letters, digits and "-_.~" stay; a blank becomes '+'; each other byte '%' and two upper-case
    // hexadecimal digits.
    static std::string Encode(std::string const& text);

    // The way back. Digits may be of either case; letters past 'F' count on from it, and the sum is cut to a
    // byte. A '%' that two letters or digits don't follow is copied as it is.
    static std::string Decode(std::string const& text);
};

}  // namespace Ubrix
