#include "Support/ResolverStub.h"

#include <dlfcn.h>
#include <netdb.h>

#include "Support/Watched.h"

namespace Test {

namespace {

struct LookUps {
    std::string latest;
    int stalled = 0;
    int releases = 0;
};

Watched<LookUps>& All() {
    static auto& all = *new Watched<LookUps>;
    return all;
}

bool EndsWith(std::string const& name, std::string const& end) {
    return name.size() >= end.size() && name.compare(name.size() - end.size(), end.size(), end) == 0;
}

void Look(std::string const& name) {
    int const stalls = EndsWith(name, ".stalled") ? 1 : 0;
    int const before = All().With([&](LookUps& all) {
        all.latest = name;
        all.stalled += stalls;
        return all.releases;
    });
    All().Await([&](LookUps const& all) { return stalls == 0 || all.releases != before; });
    All().With([&](LookUps& all) { all.stalled -= stalls; });
}

}  // namespace

std::string ResolverStub::LatestName() {
    return All().With([](LookUps const& all) { return all.latest; });
}

bool ResolverStub::AwaitStall() {
    return All().Await([](LookUps const& all) { return all.stalled > 0; });
}

void ResolverStub::Release() {
    All().With([](LookUps& all) { ++all.releases; });
    All().Await([](LookUps const& all) { return all.stalled == 0; });
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
