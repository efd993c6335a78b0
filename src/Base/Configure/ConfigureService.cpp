// The object behind Configure::GetInstance, which is never destroyed, and the holder of its state.
#include <VelmorCore/Network.h>

#include "Base/Configure/ConfigureImpl.h"
#include "Base/Ubrix/Service.h"
#include "Platform/Boundary.h"
#include "Platform/Immortal.h"

namespace Velmor {

using Ubrix::AtBoundary;

namespace {

Ubrix::Service<ConfigureImpl>& TheService() {
    static Ubrix::Platform::Immortal<Ubrix::Service<ConfigureImpl>> service(ConfigureImpl::ReleaseInstance);
    return *service;
}

// Carries a call to the present configuration. One that a release overtook goes to the next as well: it
// may have found nothing left to work on.
template <class Call>
void Carry(Call const& call) {
    std::shared_ptr<ConfigureImpl> const configure = ConfigureImpl::Instance();
    call(*configure);
    if (configure->IsShut()) {
        call(*ConfigureImpl::Instance());
    }
}

template <class Result, class Read>
Result CarryRead(Result otherwise, Read const& read) {
    AtBoundary([&] { Carry([&](ConfigureImpl& configure) { otherwise = read(configure); }); });
    return otherwise;
}

template <class Call>
void CarryCall(Call const& call) {
    AtBoundary([&call] { Carry(call); });
}

// Also hears the network for whichever configuration is the present one.
class ConfigureFront final : public Configure, public Ubrix::CNetworkObserver {
public:
    void Start() override {
        CarryCall([](auto& configure) { configure.Start(); });
    }
    int GetInt(char const* section, char const* key, int defaultValue) override {
        return CarryRead(defaultValue,
                         [=](auto& configure) { return configure.GetInt(section, key, defaultValue); });
    }
    std::int64_t GetLong(char const* section, char const* key, std::int64_t defaultValue) override {
        return CarryRead(defaultValue,
                         [=](auto& configure) { return configure.GetLong(section, key, defaultValue); });
    }
    double GetDouble(char const* section, char const* key, double defaultValue) override {
        return CarryRead(defaultValue,
                         [=](auto& configure) { return configure.GetDouble(section, key, defaultValue); });
    }
    bool GetBool(char const* section, char const* key, bool defaultValue) override {
        return CarryRead(defaultValue,
                         [=](auto& configure) { return configure.GetBool(section, key, defaultValue); });
    }
    AString GetString(char const* section, char const* key, char const* defaultValue) override {
        AString text;
        auto const read = [&](auto& configure) { text = configure.GetString(section, key, defaultValue); };
        if (!AtBoundary([&read] { Carry(read); })) {
            AtBoundary([&] { text = defaultValue; });
        }
        return text;
    }
    void AddObserver(char const* module, ConfigureObserver* observer) override {
        AtBoundary([=] { ConfigureImpl::Instance()->AddObserver(module, observer); });
    }
    void RemoveObserver(char const* module) override {
        AtBoundary([=] { ConfigureImpl::Instance()->RemoveObserver(module); });
    }
    void StartOnce() override {
        CarryCall([](auto& configure) { configure.StartOnce(); });
    }
    void SetUrl(char const* url) override {
        CarryCall([url](auto& configure) { configure.SetUrl(url); });
    }
    void Clear() override {
        CarryCall([](auto& configure) { configure.Clear(); });
    }

    void OnNetworkStateChanged(Ubrix::ANetworkState state) override {
        std::shared_ptr<ConfigureImpl> const present = TheService().ShareIfMade();
        if (present != nullptr) {
            AtBoundary([&] { present->OnNetworkStateChanged(state); });
        }
    }
};

ConfigureFront& TheFront() {
    static Ubrix::Platform::Immortal<ConfigureFront> front;
    return *front;
}

}  // namespace

Configure* Configure::GetInstance() {
    AtBoundary([] { ConfigureImpl::Instance(); });
    return &TheFront();
}

std::shared_ptr<ConfigureImpl> ConfigureImpl::Instance() {
    return TheService().Share();
}

void ConfigureImpl::ReleaseInstance() {
    if (TheService().ShareIfMade() == nullptr) {
        return;
    }
    StopHearingNetwork();
    std::shared_ptr<ConfigureImpl> const released =
        TheService().Release([](ConfigureImpl& configure) { configure.Shut(); });
    if (released != nullptr) {
        released->EndTask();
    }
}

void ConfigureImpl::HearNetwork() {
    Ubrix::INetwork::GetInstance().AddObserver(&TheFront());
}

void ConfigureImpl::StopHearingNetwork() {
    Ubrix::INetwork::GetInstance().RemoveObserver(&TheFront());
}

void ConfigureImpl::OnNextTimer(unsigned int id, void* userData) {
    std::shared_ptr<ConfigureImpl> const present = TheService().ShareIfMade();
    if (present.get() == userData) {
        AtBoundary([&present, id] { present->Refresh(id); });
    }
}

void ConfigureImpl::OnRetryTimer(unsigned int /*id*/, void* userData) {
    std::shared_ptr<ConfigureImpl> const present = TheService().ShareIfMade();
    if (present.get() == userData) {
        AtBoundary([&present] { present->Retry(); });
    }
}

}  // namespace Velmor
