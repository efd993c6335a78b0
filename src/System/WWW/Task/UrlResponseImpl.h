// The response record with its fields.
#pragma once

#include <VelmorCore/Http.h>

#include <map>
#include <string>

namespace Ubrix {

// A plain record: one thread at a time. A transport's own record derives from it and fills the fields.
class UrlResponseImpl : public UrlResponse {
public:
    char const* GetHeader(char const* key) override;
    char const* GetUrl() override { return _url.c_str(); }
    char const* GetVersion() override { return _version.c_str(); }
    int GetStatusCode() override { return _statusCode; }
    char const* GetReason() override { return _reason.c_str(); }
    char const* GetData() override { return _body.c_str(); }
    std::size_t GetDataLength() override { return _body.size(); }

    // Sets a header, replacing the value of a present key. Ignored if either is null.
    void SetHeader(char const* key, char const* value);

protected:
    std::string _url;
    std::string _version = "HTTP/1.1";
    std::string _reason;
    int _statusCode = 0;
    std::string _body;

private:
    std::map<std::string, std::string> _headers;
};

}  // namespace Ubrix
