#include "System/WWW/Task/DataTaskRequest.h"

#include "Platform/TextEncoding.h"

namespace Ubrix {

namespace {

// ASCII is the same in both encodings, and needs nothing of the system.
bool ToWireText(std::string const& text, std::string& utf8) {
    for (char const character : text) {
        if (static_cast<unsigned char>(character) >= 0x80) {
            return Platform::CodePage936ToUtf8(text, utf8);
        }
    }
    utf8 = text;
    return true;
}

bool IsToken(std::string const& key) {
    static char const* const allowed =
        "!#$%&'*+-.^_`|~0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    return !key.empty() && key.find_first_not_of(allowed) == std::string::npos;
}

bool HasControl(std::string const& value) {
    for (char const character : value) {
        auto const octet = static_cast<unsigned char>(character);
        if ((octet < 0x20 && character != '\t') || octet == 0x7F) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool DataTaskRequest::Crack(CrackedUrl& cracked) const {
    std::string text;
    return ToWireText(url, text) && cracked.SetUrl(text);
}

bool DataTaskRequest::BuildHeaderLines(std::vector<std::string>& lines) const {
    for (auto const& header : headers) {
        std::string value;
        if (!IsToken(header.first) || HasControl(header.second) || !ToWireText(header.second, value)) {
            return false;
        }
        lines.push_back(header.first + ":" + value);
    }
    return true;
}

}  // namespace Ubrix
