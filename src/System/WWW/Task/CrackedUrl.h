// A URL split into what a request needs.
#pragma once

#include <string>

namespace Ubrix {

// A plain value. Texts are UTF-8 of any length.
class CrackedUrl {
public:
    // Splits `url`, an absolute URL of the scheme http, https, ftp or gopher in UTF-8. False if it is none;
    // the object is then unchanged.
    bool SetUrl(std::string const& url);

    // 1 ftp, 2 gopher, 3 http, 4 https; 0 before the first success.
    int GetScheme() const { return _scheme; }
    // An IPv6 address is in its brackets.
    std::string const& GetHost() const { return _host; }
    // The port that the URL names, else its scheme's own.
    int GetPort() const { return _port; }
    // Path and query, at least "/", without a fragment. Octets that may not be on a request line are
    // percent-escaped; escapes in the URL are kept.
    std::string const& GetPath() const { return _path; }

private:
    int _scheme = 0;
    std::string _host;
    int _port = 0;
    std::string _path;
};

}  // namespace Ubrix
