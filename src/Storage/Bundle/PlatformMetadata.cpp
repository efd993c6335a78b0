#include "Storage/Bundle/PlatformMetadata.h"

#include <string>

#include "Base/Ubrix/CoreParameters.h"

namespace Ubrix {

namespace {

AString WithoutBlanksAtEnds(AString const& text) {
    std::string const whole(text.CString());
    std::size_t const first = whole.find_first_not_of(' ');
    if (first == std::string::npos) {
        return AString();
    }
    return AString(whole.substr(first, whole.find_last_not_of(' ') - first + 1).c_str());
}

AString Parameter(CoreParameters::Field field, char const* section, char const* key) {
    AString const present = CoreParameters::Get(field);
    if (!present.Empty()) {
        return present;
    }
    AString const value = WithoutBlanksAtEnds(PlatformMetadata::Get(section, key, ""));
    if (!value.Empty()) {
        CoreParameters::Set(field, value);
    }
    return value;
}

}  // namespace

bool PlatformMetadata::Get(char const* /*section*/, char const* /*key*/, bool defaultValue) {
    return defaultValue;
}

AString PlatformMetadata::Get(char const* /*section*/, char const* /*key*/, char const* defaultValue) {
    return AString(defaultValue);
}

int PlatformMetadata::Get(char const* /*section*/, char const* /*key*/, int defaultValue) {
    return defaultValue;
}

long long PlatformMetadata::Get(char const* /*section*/, char const* /*key*/, long long defaultValue) {
    return defaultValue;
}

void PlatformMetadata::GetKeys(char const* /*section*/, AArray* /*keys*/) {}

bool PlatformMetadata::HasKey(char const* /*section*/, char const* /*key*/) {
    return false;
}

AString GameId() {
    return Parameter(CoreParameters::Field::GameId, "Velmor", "GameId");
}

AString TransceiverUrl() {
    return Parameter(CoreParameters::Field::TransceiverUrl, "VelmorCore", "TransceiverUrl");
}

}  // namespace Ubrix
