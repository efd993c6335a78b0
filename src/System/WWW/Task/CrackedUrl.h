// A URL split into what a request needs.
#pragma once

#include <string>

namespace Ubrix {

// A plain value, of one thread at a time. Texts are UTF-8 of any length.
class CrackedUrl {
public:
    // Splits `url`, an absolute URL of the scheme http, https, ftp or gopher in UTF-8. False if it is none;
    // the object is then unchanged.
    bool SetUrl(std::string const& url);

    // An IPv6 address is in its brackets. The port is judged and not kept, nor is the scheme: a request
    // goes over TLS to port 443.
    std::string const& GetHost() const { return _host; }
    // Path and query, at least "/", without a fragment. Octets that may not be on a request line are
    // percent-escaped; escapes in the URL are kept.
    std::string const& GetPath() const { return _path; }

private:
    std::string _host;
    std::string _path;
};

}  // namespace Ubrix
