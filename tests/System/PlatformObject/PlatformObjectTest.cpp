#include <VelmorCore/velmorcore.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <tuple>

#include "Base/Ubrix/IBase.h"
#include "Platform/Event.h"
#include "Platform/Thread.h"
#include "Support/LogCapture.h"
#include "System/PlatformObject/CPlatformClassRegistry.h"
#include "System/PlatformObject/CPlatformObject.h"
#include "System/PlatformObject/PlatformObjects.h"

namespace Ubrix {
namespace {

std::string g_deleted;
int g_living = 0;

std::string TextOf(IPlatformObject const& object) {
    return (object.className != nullptr ? object.className : "?") + std::to_string(object.objectId);
}

class Twin : public CPlatformObject {
public:
    Twin() { ++g_living; }
    ~Twin() override {
        g_deleted += TextOf(*this) + " ";
        --g_living;
    }
};

class Foreign : public IPlatformObject {};

class Creator : public IPlatformObjectCreator {
public:
    IPlatformObject* CreateObject() override { return new Twin; }
} g_twins;

// The objects under an id, role by role.
std::string NamesOf(long long id) {
    std::string names;
    for (auto role : {PlatformObjectRole::Main, PlatformObjectRole::Request, PlatformObjectRole::Response}) {
        IPlatformObject const* const object = PlatformObjectManager(role)->GetObject(id);
        names += object == nullptr ? "none" : TextOf(*object);
        names += ' ';
    }
    return names;
}

class PlatformObjects : public testing::Test {
protected:
    PlatformObjects() { g_deleted.clear(); }
    CPlatformClassRegistry& _registry = CPlatformClassRegistry::GetInstance();
};

TEST_F(PlatformObjects, AreMadeByNameAndKeptByRole) {
    for (char const* name : {"Main", "Pair.REQ", "Pair.RESP", "Ask.REQ", "All", "All.REQ", "All.RESP"}) {
        _registry.RegisterCreator(name, &g_twins);
    }
    _registry.RegisterCreator(nullptr, &g_twins);
    _registry.RegisterCreator("Pair", nullptr);
    Foreign foreign;
    _registry.RegisterSharedObject("Foreign.REQ", &foreign);
    std::string const huge(1 << 20, 'x');
    _registry.RegisterCreator((huge + ".RESP").c_str(), &g_twins);
    // Whether the call is true, and the objects of the three roles.
    std::tuple<char const*, bool, std::string> const rows[] = {
        {nullptr, false, "none none none "},          {"", false, "none none none "},
        {"Foreign", false, "none none none "},        {"Main", false, "Main4 none none "},
        {"Pair", true, "none Pair.REQ5 Pair.RESP5 "}, {"Ask", true, "none Ask.REQ6 none "},
        {"All", true, "All7 All.REQ7 All.RESP7 "},    {huge.c_str(), true, "none none " + huge + ".RESP8 "},
    };
    long long id = 0;
    for (auto const& [name, isAdded, names] : rows) {
        EXPECT_EQ(addPlatformObject(++id, name), isAdded) << id;
        EXPECT_EQ(NamesOf(id), names);
    }
    removePlatformObject(7);
    removePlatformObject(8);
    PlatformObjectManager(PlatformObjectRole::Main)->AddObject(7, nullptr);
    ReleasePlatformObjects();
    EXPECT_EQ(g_deleted, "All.REQ7 All.RESP7 " + huge + ".RESP8 Main4 All7 Pair.REQ5 Ask.REQ6 Pair.RESP5 ");
}

TEST_F(PlatformObjects, ASharedOneGoesOnceWithItsLastId) {
    auto* const shared = new Twin;
    _registry.RegisterCreator("Shared.REQ", &g_twins);
    _registry.RegisterSharedObject("Shared.REQ", shared);
    _registry.RegisterSharedObject("Shared.RESP", shared);
    addPlatformObject(1, "Shared");
    addPlatformObject(2, "Shared");
    addPlatformObject(2, "Shared");  // in its own place
    EXPECT_EQ(NamesOf(1), "none ?2 ?2 ");
    EXPECT_EQ(NamesOf(2), "none ?2 ?2 ");
    removePlatformObject(1);
    PlatformObjectManager(PlatformObjectRole::Response)->RemoveObject(2);
    EXPECT_EQ(g_living, 1);
    removePlatformObject(2);
    EXPECT_EQ(g_deleted, "?2 ");
    // The creator of that name is reached again, and the other name is unknown.
    addPlatformObject(3, "Shared");
    EXPECT_EQ(NamesOf(3), "none Shared.REQ3 none ");
}

std::string g_heard;

template <int kTag, class... Words>
void Hear(std::int64_t id, Words... words) {
    g_heard += std::to_string(kTag) + ":" + std::to_string(id);
    ((g_heard += "," + std::to_string(words)), ...);
    g_heard += ' ';
}

void SendAll(CPlatformObject const& object) {
    g_heard.clear();
    object.SendMessage(1, 2);
    object.SendStruct(3, 4);
    object.SendResult(5, 6);
    object.SendResultStruct(7, 8, 9);
    object.SendBuffer(10, 11, 12);
    object.SendResultBuffer(13, 14, 15, 16);
    object.SendResultStructBuffer(17, 18, 19, 20, 21);
    object.SendVoidMethod(22);
    object.SendVoidMethodParam(23, 24);
    object.SendVoidMethodBuffer(25, 26, INTPTR_MIN);
}

TEST_F(PlatformObjects, SendThroughTheirCallbacksUntilTheTeardown) {
    Twin twin;
    twin.objectId = INT64_MIN;
    setSarnetSendMessageCallback(Hear<0>);
    setSarnetSendStructCallback(Hear<1>);
    setSarnetSendResultCallback(Hear<2>);
    setSarnetSendResultStructCallback(Hear<3>);
    setSarnetSendBufferCallback(Hear<4>);
    setSarnetSendResultBufferCallback(Hear<5>);
    setSarnetSendResultStructBufferCallback(Hear<6>);
    setSarnetSendVoidMethodCallback(Hear<7>);
    setSarnetSendVoidMethodParamCallback(Hear<8>);
    setSarnetSendVoidMethodBufferCallback(Hear<9>);
    SendAll(twin);
    std::string const id = ":" + std::to_string(INT64_MIN) + ",";
    EXPECT_EQ(g_heard, "0" + id + "1,2 1" + id + "3,4 2" + id + "5,6 3" + id + "7,8,9 4" + id + "10,11,12 5" +
                           id + "13,14,15,16 6" + id + "17,18,19,20,21 7" + id + "22 8" + id + "23,24 9" +
                           id + "25,26," + std::to_string(INTPTR_MIN) + " ");
    ::Test::LogCapture const log;
    _registry.RegisterCreator("Late", &g_twins);
    addPlatformObject(1, "Late");
    IBase::Release();
    EXPECT_EQ(g_deleted, "Late1 ");
    EXPECT_TRUE(log.Has("Info", "Release| ISarnetObjectManager::DestroyAll"));
    EXPECT_TRUE(log.Has("Info", "Release| CPlatformObject::ClearEnvironment"));
    SendAll(twin);
    EXPECT_EQ(g_heard, "");
}

Platform::Event g_entered, g_leave;
std::atomic<int> g_inside{0};

void Linger(std::int64_t, CPlatformObject::Word lingers) {
    if (lingers != 0) {
        ++g_inside;
        g_entered.Set();
        g_leave.WaitFor(10000);
        Platform::SleepFor(50);  // who doesn't wait is through by now
        --g_inside;
    }
}

TEST_F(PlatformObjects, ASetterWaitsForACallOnAnotherThreadButNotInsideOne) {
    Twin const twin;
    setSarnetSendVoidMethodCallback(Linger);
    twin.SendVoidMethod(0);
    std::thread sender([&] { twin.SendVoidMethod(1); });
    ASSERT_TRUE(g_entered.WaitFor(10000));
    // Inside another callback nothing is waited for, or the two could wait for each other.
    setSarnetSendMessageCallback([](std::int64_t, CPlatformObject::Word, CPlatformObject::Word) {
        setSarnetSendVoidMethodCallback(nullptr);
        EXPECT_EQ(g_inside, 1);
    });
    twin.SendMessage(1, 2);
    std::thread opener([] { g_leave.Set(); });
    setSarnetSendVoidMethodCallback(nullptr);
    EXPECT_EQ(g_inside, 0);
    opener.join();
    sender.join();
}

}  // namespace
}  // namespace Ubrix
