#include "System/WWW/Task/CrackedUrl.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "Base/Container/AsciiText.h"

namespace Ubrix {

namespace {

constexpr char const* kSchemes[] = {"ftp", "gopher", "http", "https"};

bool IsScheme(std::string const& name) {
    std::string lower;
    for (char const letter : name) {
        lower += LowerAscii(letter);
    }
    return std::find(std::begin(kSchemes), std::end(kSchemes), lower) != std::end(kSchemes);
}

bool IsControlOrBlank(char character) {
    auto const octet = static_cast<unsigned char>(character);
    return octet <= 0x20 || octet == 0x7F;
}

bool IsHost(std::string const& host) {
    bool const isBracketed = !host.empty() && host.front() == '[';
    char const* const allowed = "0123456789abcdefABCDEF:.";
    if (isBracketed) {
        return host.size() > 2 && host.back() == ']' && host.find_first_not_of(allowed, 1) == host.size() - 1;
    }
    for (char const character : host) {
        if (IsControlOrBlank(character) || std::strchr("\"%<>[]\\^`{|}:@", character) != nullptr) {
            return false;
        }
    }
    return !host.empty();
}

// The text behind the host's colon. An empty one names no port.
bool IsPort(std::string const& text) {
    return text.size() <= 5 && text.find_first_not_of("0123456789") == std::string::npos &&
           (text.empty() || std::stoi(text) <= 65535);
}

// RFC 3986 knows no place for these octets in a path or a query.
std::string EscapeForWire(std::string const& text) {
    static char const* const digits = "0123456789ABCDEF";
    std::string result;
    result.reserve(text.size());
    for (char const character : text) {
        auto const octet = static_cast<unsigned char>(character);
        if (octet >= 0x80 || IsControlOrBlank(character) ||
            std::strchr("\"<>\\^`{|}", character) != nullptr) {
            result += '%';
            result += digits[octet >> 4U];
            result += digits[octet & 0x0FU];
        } else {
            result += character;
        }
    }
    return result;
}

}  // namespace

bool CrackedUrl::SetUrl(std::string const& url) {
    std::size_t const schemeEnd = url.find("://");
    if (schemeEnd == std::string::npos || !IsScheme(url.substr(0, schemeEnd))) {
        return false;
    }
    std::size_t const start = schemeEnd + 3;
    std::size_t const pathStart = url.find_first_of("/?#", start);
    std::string host = url.substr(start, pathStart == std::string::npos ? pathStart : pathStart - start);
    // A user name and password are not sent.
    host.erase(0, host.rfind('@') + 1);
    std::size_t const colon = host.find(':', host.rfind(']') == std::string::npos ? 0 : host.rfind(']'));
    if (colon != std::string::npos) {
        if (!IsPort(host.substr(colon + 1))) {
            return false;
        }
        host.resize(colon);
    }
    if (!IsHost(host)) {
        return false;
    }
    std::string path = pathStart == std::string::npos ? std::string() : url.substr(pathStart);
    path.resize(path.find('#') == std::string::npos ? path.size() : path.find('#'));
    _host = host;
    _path = (path.empty() || path.front() != '/' ? "/" : "") + EscapeForWire(path);
    return true;
}

}  // namespace Ubrix
