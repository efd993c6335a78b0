#include "Base/Configure/KitParameters.h"

#include <VelmorCore/Bundle.h>
#include <VelmorCore/System.h>

#include "Base/Configure/JsonCpp.h"
#include "Base/Ubrix/CoreParameters.h"
#include "Storage/Bundle/PlatformMetadata.h"

namespace Velmor {

using Ubrix::CoreParameters;
using Ubrix::CSystem;

namespace {

constexpr char kSection[] = "VelmorCore";
constexpr char kChannelKey[] = "channelid";
constexpr char kOpenIdKey[] = "openid";

AString StoredParameter(CoreParameters::Field field, char const* key) {
    AString const present = CoreParameters::Get(field);
    if (!present.empty()) {
        return present;
    }
    // Whoever sets the field meanwhile knows better than the file.
    return CoreParameters::Fill(
        field, Ubrix::BundleFactory::GetInstance().GetDefaultBundle().Get(kSection, key, ""));
}

char const* TextOf(char const* text) {
    return text != nullptr ? text : "";
}

}  // namespace

AString ChannelId() {
    return StoredParameter(CoreParameters::Field::ChannelId, kChannelKey);
}

AString OpenId() {
    return StoredParameter(CoreParameters::Field::OpenId, kOpenIdKey);
}

void SetUserInfo(char const* channelId, char const* openId) {
    CoreParameters::Set(CoreParameters::Field::ChannelId, TextOf(channelId));
    CoreParameters::Set(CoreParameters::Field::OpenId, TextOf(openId));
    Ubrix::Bundle& bundle = Ubrix::BundleFactory::GetInstance().GetDefaultBundle();
    bundle.Set(kSection, kChannelKey, TextOf(channelId));
    bundle.Set(kSection, kOpenIdKey, TextOf(openId));
}

AString RequestText() {
    Ubrix_Json::Value text(Ubrix_Json::objectValue);
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
    AString const result(WriteCompactJson(text).c_str());
    CoreParameters::Set(CoreParameters::Field::RequestText, result);
    return result;
}

}  // namespace Velmor
