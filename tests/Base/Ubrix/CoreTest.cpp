#include <VelmorCore/Core.h>
#include <VelmorCore/Log.h>
#include <VelmorCore/velmorcore.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <string>

#include "Base/Ubrix/IBase.h"
#include "Platform/MemoryWant.h"
#include "Support/OnThreads.h"
#include "System/PlatformObject/CPlatformClassRegistry.h"
#include "System/PlatformObject/CPlatformObject.h"

namespace {

using Ubrix::IBase;

std::string g_order;

template <char kLetter>
constexpr auto kNote = [] { g_order += kLetter; };

TEST(ReleaseList, RunsEachOnceInOrderAndWhatComesInDuringTheWalk) {
    IBase::RunReleaseCallbacks();
    for (int life = 0; life < 2; ++life) {
        g_order.clear();
        // Uses the service that the first one released and its own, so that both register again, and a third
        // one.
        static IBase::ReleaseCallback const makesAnew = [] {
            g_order += 'b';
            IBase::AddReleaseCallback(kNote<'a'>);
            IBase::AddReleaseCallback(g_order.size() < 4 ? makesAnew : nullptr);
            IBase::AddReleaseCallback(kNote<'c'>);
            IBase::RunReleaseCallbacks();
        };
        IBase::AddReleaseCallback(nullptr);
        IBase::AddReleaseCallback(kNote<'a'>);
        IBase::AddReleaseCallback(makesAnew);
        IBase::AddReleaseCallback(kNote<'a'>);
        for (char const* const order : {"abc", "abcabc", "abcabca", "abcabca"}) {
            IBase::RunReleaseCallbacks();
            EXPECT_EQ(g_order, order);
        }
    }
}

// Says goodbye to its managed twin.
struct Dying : Ubrix::CPlatformObject {
    ~Dying() override { SendVoidMethod(1); }
};

struct DyingCreator : Ubrix::IPlatformObjectCreator {
    Ubrix::IPlatformObject* CreateObject() override {
        EXPECT_FALSE(Ubrix::Platform::WantUnwinds());
        return new Dying;
    }
} g_dying;

std::atomic<int> g_greetings{0};
std::atomic<int> g_teardowns{0};

void CallBack() {
    EXPECT_FALSE(Ubrix::Platform::WantUnwinds()) << "what fails here is the game's own";
    velmorcore_getInstance();
    velmorcore_releaseInstance();
}

TEST(Core, MayBeAskedForAndReleasedInEveryCallbackOfItsTeardown) {
    g_greetings = g_teardowns = 0;
    Ubrix::CPlatformClassRegistry::GetInstance().RegisterCreator("Dying.REQ", &g_dying);
    Ubrix::SetUbrixLogCallback([](Ubrix::ALogPriority, char const* line) {
        bool const greets = std::strstr(line, "Hello VelmorCore!") != nullptr;
        g_greetings += greets ? 1 : 0;
        g_teardowns += std::strstr(line, "~CVelmorCore(), end") != nullptr ? 1 : 0;
        if (greets) {
            velmorcore_getInstance();
        } else if (std::strstr(line, "ISarnetObjectManager::DestroyAll") != nullptr) {
            CallBack();
        }
    });
    VelmorCoreObject* const core = velmorcore_getInstance();
    EXPECT_EQ(g_greetings, 1);
    Ubrix::IBase::AddReleaseCallback(CallBack);
    setSarnetSendVoidMethodCallback([](std::int64_t, std::intptr_t) { CallBack(); });
    EXPECT_TRUE(addPlatformObject(1, "Dying"));
    EXPECT_TRUE(addPlatformObject(2, "Dying"));
    removePlatformObject(2);
    EXPECT_EQ(g_teardowns, 1);
    EXPECT_EQ(core->Initialize(), 0) << "one that was kept works as ever";
    ::Test::OnThreads(4, [core](int) { EXPECT_EQ(velmorcore_getInstance(), core); });
    EXPECT_EQ(g_greetings, 2);
    ::Test::OnThreads(4, [](int) { velmorcore_releaseInstance(); });
    EXPECT_EQ(g_teardowns, 2);
    Ubrix::SetUbrixLogCallback(nullptr);
}

}  // namespace
