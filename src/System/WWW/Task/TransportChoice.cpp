#include "System/WWW/Task/TransportChoice.h"

#include <string>

#include "Platform/BuiltInTransport.h"
#include "Platform/Immortal.h"
#include "Platform/MemoryWant.h"
#include "Platform/Mutex.h"

namespace Ubrix {

namespace {

// Never destroyed: a host may start requests until the process ends.
struct Choice {
    Platform::RecursiveMutex lock;
    IHttpTransport* transport VC_GUARDED_BY(lock) = nullptr;
    bool isFinal VC_GUARDED_BY(lock) = false;
};

Choice& TheChoice() {
    static Platform::Immortal<Choice> choice;
    return *choice;
}

// "host:port" with a port from 1 to 65535; only an address in brackets may hold further colons.
bool IsAddress(std::string const& address) {
    std::size_t const colon = address.rfind(':');
    if (colon == std::string::npos || colon == 0) {
        return false;
    }
    std::string const host = address.substr(0, colon);
    std::string const port = address.substr(colon + 1);
    bool const isBracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
    if (!isBracketed && host.find_first_of(":[]/@ \t\r\n") != std::string::npos) {
        return false;
    }
    return !port.empty() && port.size() <= 5 && port.find_first_not_of("0123456789") == std::string::npos &&
           std::stoi(port) >= 1 && std::stoi(port) <= 65535;
}

}  // namespace

IHttpTransport& TransportChoice::ForRequest() {
    Choice& choice = TheChoice();
    Platform::ScopedLock const lock(choice.lock);
    choice.isFinal = true;
    return choice.transport != nullptr ? *choice.transport : Platform::BuiltInHttpTransport();
}

bool TransportChoice::Choose(IHttpTransport* transport) {
    Choice& choice = TheChoice();
    Platform::ScopedLock const lock(choice.lock);
    if (choice.isFinal) {
        return false;
    }
    choice.transport = transport;
    return true;
}

void TransportChoice::Reopen(IHttpTransport* transport) {
    Choice& choice = TheChoice();
    Platform::ScopedLock const lock(choice.lock);
    choice.isFinal = false;
    choice.transport = transport;
}

bool SetHttpTransport(IHttpTransport* transport) {
    return Platform::WithoutThrow([transport] { return TransportChoice::Choose(transport); });
}

void SetHttpCaFile(char const* path) {
    Platform::WithoutThrow([path] { Platform::SetHttpCaFile(path != nullptr ? path : ""); });
}

bool SetHttpConnectAddress(char const* address) {
    return Platform::WithoutThrow([address] {
        std::string const text = address != nullptr ? address : "";
        if (!text.empty() && !IsAddress(text)) {
            return false;
        }
        Platform::SetHttpConnectAddress(text);
        return true;
    });
}

}  // namespace Ubrix
