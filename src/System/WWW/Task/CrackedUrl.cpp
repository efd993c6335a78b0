#include "System/WWW/Task/CrackedUrl.h"

#include <cstring>

#include "Base/Container/AsciiText.h"

namespace Ubrix {

namespace {

struct Scheme {
    char const* name;
    int number;
    int port;
};

constexpr Scheme kSchemes[] = {{"ftp", 1, 21}, {"gopher", 2, 70}, {"http", 3, 80}, {"https", 4, 443}};

Scheme const* FindScheme(std::string const& name) {
    std::string lower;
    for (char const letter : name) {
        lower += LowerAscii(letter);
    }
    for (Scheme const& scheme : kSchemes) {
        if (lower == scheme.name) {
            return &scheme;
        }
    }
    return nullptr;
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

// Reads the text behind the host's colon; an empty one leaves `port` as it is.
bool ReadPort(std::string const& text, int& port) {
    if (text.empty()) {
        return true;
    }
    if (text.size() > 5 || text.find_first_not_of("0123456789") != std::string::npos) {
        return false;
    }
    int number = 0;
    for (char const digit : text) {
        number = number * 10 + (digit - '0');
    }
    port = number;
    return number <= 65535;
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
    Scheme const* const scheme =
        schemeEnd != std::string::npos ? FindScheme(url.substr(0, schemeEnd)) : nullptr;
    if (scheme == nullptr) {
        return false;
    }
    std::size_t const start = schemeEnd + 3;
    std::size_t const pathStart = url.find_first_of("/?#", start);
    std::string host = url.substr(start, pathStart == std::string::npos ? pathStart : pathStart - start);
    // A user name and password are not sent.
    host.erase(0, host.rfind('@') + 1);
    int port = scheme->port;
    std::size_t const colon = host.find(':', host.rfind(']') == std::string::npos ? 0 : host.rfind(']'));
    if (colon != std::string::npos) {
        if (!ReadPort(host.substr(colon + 1), port)) {
            return false;
        }
        host.resize(colon);
    }
    if (!IsHost(host)) {
        return false;
    }
    std::string path = pathStart == std::string::npos ? std::string() : url.substr(pathStart);
    path.resize(path.find('#') == std::string::npos ? path.size() : path.find('#'));
    _scheme = scheme->number;
    _host = host;
    _port = port;
    _path = (path.empty() || path.front() != '/' ? "/" : "") + EscapeForWire(path);
    return true;
}

}  // namespace Ubrix
