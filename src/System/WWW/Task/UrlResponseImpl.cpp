#include "System/WWW/Task/UrlResponseImpl.h"

namespace Ubrix {

char const* UrlResponseImpl::GetHeader(char const* key) {
    if (key == nullptr) {
        return nullptr;
    }
    auto const found = _headers.find(key);
    return found != _headers.end() ? found->second.c_str() : nullptr;
}

void UrlResponseImpl::SetHeader(char const* key, char const* value) {
    if (key != nullptr && value != nullptr) {
        _headers[key] = value;
    }
}

}  // namespace Ubrix
