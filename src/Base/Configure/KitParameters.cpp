#include "Base/Configure/KitParameters.h"

#include <VelmorCore/Bundle.h>
#include <VelmorCore/System.h>

#include <algorithm>
#include <string_view>

#include "Base/Configure/JsonCpp.h"
#include "Base/Ubrix/ConfigurationKeys.h"
#include "Base/Ubrix/CoreParameters.h"
#include "Storage/Bundle/PlatformMetadata.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"

namespace Velmor {

namespace Key = Ubrix::ConfigurationKey;
using Ubrix::CoreParameters;
using Ubrix::CSystem;

namespace {

AString StoredParameter(CoreParameters::Field field, char const* key) {
    AString const present = CoreParameters::Get(field);
    if (!present.empty()) {
        return present;
    }
    // Whoever sets the field meanwhile knows better than the file.
    return CoreParameters::Fill(
        field, Ubrix::BundleFactory::GetInstance().GetDefaultBundle().Get(Key::kSection, key, ""));
}

char const* TextOf(char const* text) {
    return text != nullptr ? text : "";
}

// An id that begins with a "#" would be gone after a restart; a control character is in no honest one. A
// longer one would weigh on each request, and servers refuse long addresses.
bool CanBeId(std::string_view id) {
    constexpr std::size_t kLongest = 1024;
    auto const isControl = [](char character) { return static_cast<unsigned char>(character) < 0x20; };
    return id.size() <= kLongest && (id.empty() || id.front() != '#') &&
           std::none_of(id.begin(), id.end(), isControl);
}

}  // namespace

AString ChannelId() {
    return StoredParameter(CoreParameters::Field::ChannelId, Key::kChannelId);
}

AString OpenId() {
    return StoredParameter(CoreParameters::Field::OpenId, Key::kOpenId);
}

bool SetUserInfo(char const* channelId, char const* openId) {
    char const* const channel = TextOf(channelId);
    char const* const user = TextOf(openId);
    // Both or none: one of them beside the other's older value would name a user who never was.
    if (!CanBeId(channel) || !CanBeId(user)) {
        VC_LOG(Error, "Velmor::CoreParameters::SetUserInfo", "channel id \"%s\", open id \"%s\": refused",
               Ubrix::ForeignText(channel).c_str(), Ubrix::ForeignText(user).c_str());
        return false;
    }
    CoreParameters::Set(CoreParameters::Field::ChannelId, channel);
    CoreParameters::Set(CoreParameters::Field::OpenId, user);
    Ubrix::Bundle& bundle = Ubrix::BundleFactory::GetInstance().GetDefaultBundle();
    bundle.SetNoSave(Key::kSection, Key::kChannelId, channel);
    bundle.SetNoSave(Key::kSection, Key::kOpenId, user);
    bundle.Save();
    return true;
}

AString RequestText() {
    std::string const json = ComposeJson([](Ubrix_Json::Value& text) {
        text["app_ver"] = CSystem::GetAppVersion();
        text["bid"] = CSystem::GetBundleId();
        text["cid"] = CoreParameters::Get(CoreParameters::Field::ChannelId).c_str();
        text["did"] = TextOf(CSystem::GetUdid());
        text["gid"] = Ubrix::GameId().c_str();
        text["mfrs"] = CSystem::GetDeviceBrand();
        text["mtype"] = CSystem::GetModel();
        text["oid"] = CoreParameters::Get(CoreParameters::Field::OpenId).c_str();
        text["os"] = "Windows";
        text["os_ver"] = CSystem::GetSysVersion();
    });
    AString const result(json.c_str());
    CoreParameters::Set(CoreParameters::Field::RequestText, result);
    return result;
}

}  // namespace Velmor
