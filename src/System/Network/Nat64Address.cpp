#include "System/Network/Nat64Address.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace Ubrix {

namespace {

struct Address {
    std::string scheme;
    std::string host;
    std::uint16_t port = 0;
};

// The decimal number at the beginning of `text`, in 16 bits, however long it is.
std::uint16_t PortOf(std::string const& text) {
    unsigned int port = 0;
    for (std::size_t i = 0; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        port = (port * 10 + static_cast<unsigned int>(text[i] - '0')) & 0xFFFFU;
    }
    return static_cast<std::uint16_t>(port);
}

bool SplitBracketed(std::string const& rest, Address& address) {
    std::size_t const end = rest.find(']');
    if (end == std::string::npos || end + 1 >= rest.size() || rest[end + 1] != ':') {
        return false;
    }
    address.host = rest.substr(1, end - 1);
    address.port = PortOf(rest.substr(end + 2));
    return true;
}

bool Split(std::string const& url, Address& address) {
    static constexpr char kSchemeEnd[] = "://";
    std::string rest = url;
    std::size_t const schemeEnd = url.find(kSchemeEnd);
    if (schemeEnd != std::string::npos) {
        address.scheme = url.substr(0, schemeEnd);
        rest = url.substr(schemeEnd + sizeof kSchemeEnd - 1);
    }
    if (!rest.empty() && rest[0] == '[') {
        return SplitBracketed(rest, address);
    }
    if (std::count(rest.begin(), rest.end(), ':') == 1) {
        std::size_t const colon = rest.find(':');
        address.host = rest.substr(0, colon);
        address.port = PortOf(rest.substr(colon + 1));
    } else {
        // No port, or an IPv6 address in figures.
        address.host = rest;
    }
    return true;
}

bool IsIpv4Literal(std::string const& host) {
    return std::count(host.begin(), host.end(), ':') <= 1 &&
           host.find_first_not_of("1234567890.:") == std::string::npos;
}

}  // namespace

bool ToNat64Address(char const* url, AString& result) {
    Address address;
    if (url == nullptr || !Split(url, address)) {
        return false;
    }
    if (!IsIpv4Literal(address.host)) {
        result = url;
        return true;
    }
    std::string text = address.scheme.empty() ? "" : address.scheme + "://";
    text += address.port != 0 ? "[64::ff9b:" : "64::ff9b:";
    text += address.host;
    if (address.port != 0) {
        text += "]:" + std::to_string(address.port);
    }
    result = text.c_str();
    return true;
}

}  // namespace Ubrix
