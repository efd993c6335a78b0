#include "Support/ResolverStub.h"

#include <dlfcn.h>
#include <netdb.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace Test {

namespace {

struct Stub {
    std::mutex mutex;
    std::condition_variable changed;
    std::string latest;
    int stalled = 0;
    int releases = 0;
};

Stub& TheStub() {
    static auto* const stub = new Stub;
    return *stub;
}

bool EndsWith(std::string const& name, std::string const& end) {
    return name.size() >= end.size() && name.compare(name.size() - end.size(), end.size(), end) == 0;
}

void Look(std::string const& name) {
    Stub& stub = TheStub();
    std::unique_lock<std::mutex> lock(stub.mutex);
    stub.latest = name;
    if (EndsWith(name, ".stalled")) {
        int const before = stub.releases;
        ++stub.stalled;
        stub.changed.notify_all();
        stub.changed.wait_for(lock, std::chrono::seconds(30), [&] { return stub.releases != before; });
        --stub.stalled;
        stub.changed.notify_all();
    }
}

}  // namespace

std::string ResolverStub::LatestName() {
    Stub& stub = TheStub();
    std::lock_guard<std::mutex> const lock(stub.mutex);
    return stub.latest;
}

bool ResolverStub::AwaitStall() {
    Stub& stub = TheStub();
    std::unique_lock<std::mutex> lock(stub.mutex);
    return stub.changed.wait_for(lock, std::chrono::seconds(10), [&] { return stub.stalled > 0; });
}

void ResolverStub::Release() {
    Stub& stub = TheStub();
    std::unique_lock<std::mutex> lock(stub.mutex);
    ++stub.releases;
    stub.changed.notify_all();
    stub.changed.wait_for(lock, std::chrono::seconds(10), [&] { return stub.stalled == 0; });
}

}  // namespace Test

// Found before the system's own by every library in the process.
extern "C" __attribute__((visibility("default"))) int getaddrinfo(char const* name, char const* service,
                                                                  addrinfo const* hints, addrinfo** result) {
    std::string const text = name != nullptr ? name : "";
    if (Test::EndsWith(text, ".stalled") || Test::EndsWith(text, ".unresolved")) {
        Test::Look(text);
        return EAI_NONAME;
    }
    using Function = int (*)(char const*, char const*, addrinfo const*, addrinfo**);
    static auto const next = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return next(name, service, hints, result);
}
