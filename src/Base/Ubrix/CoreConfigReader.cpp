#include "Base/Ubrix/CoreConfigReader.h"

#include <atomic>

namespace Ubrix {

namespace {

std::atomic<Velmor::IRemoteConfig*> g_provider{nullptr};

}  // namespace

void CoreConfigReader::SetProvider(Velmor::IRemoteConfig* provider) {
    g_provider.store(provider, std::memory_order_release);
}

int CoreConfigReader::GetInt(char const* key, int defaultValue) {
    Velmor::IRemoteConfig* provider = g_provider.load(std::memory_order_acquire);
    return provider != nullptr ? provider->GetInt(key, defaultValue) : defaultValue;
}

bool CoreConfigReader::GetBool(char const* key, bool defaultValue) {
    Velmor::IRemoteConfig* provider = g_provider.load(std::memory_order_acquire);
    return provider != nullptr ? provider->GetBool(key, defaultValue) : defaultValue;
}

}  // namespace Ubrix
