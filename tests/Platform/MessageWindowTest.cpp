#include "Platform/MessageWindow.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "Platform/Event.h"
#include "Platform/Thread.h"

namespace Ubrix::Platform {
namespace {

constexpr unsigned int kBound = 10000;

std::string g_trail;  // of the window under test, on its thread

bool Record(WindowHandle, unsigned int message, void*) {
    g_trail += std::to_string(message) + " ";
    return true;
}

void Discard(unsigned int message, void*) {
    g_trail += "no " + std::to_string(message);
}

class MessageWindow : public testing::Test {
protected:
    WindowHandle window = OpenMessageWindow({Record, Discard});
    ~MessageWindow() override {
        CloseMessageWindow(window);
        g_trail.clear();
    }
};

TEST_F(MessageWindow, SendFromTheOwnThreadRunsAtOnceAndOvertakesPosts) {
    EXPECT_TRUE(PostToMessageWindow(window, 1, nullptr));
    EXPECT_TRUE(SendToMessageWindow(window, 2, nullptr));
    EXPECT_EQ(g_trail, "2 ");
    EXPECT_TRUE(PumpMessages(0));
    EXPECT_EQ(g_trail, "2 1 ");
    EXPECT_FALSE(PumpMessages(0));
}

TEST_F(MessageWindow, CloseLetsSendersGoAndDiscardsPosts) {
    PostToMessageWindow(window, 4, nullptr);
    Event sending;
    std::thread sender([&] {
        sending.Set();
        EXPECT_FALSE(SendToMessageWindow(window, 5, nullptr));
    });
    ASSERT_TRUE(sending.WaitFor(kBound));
    std::thread([this] { EXPECT_FALSE(CloseMessageWindow(window)); }).join();
    EXPECT_TRUE(CloseMessageWindow(window));
    sender.join();
    EXPECT_EQ(g_trail, "no 4");
    EXPECT_FALSE(MessageWindowExists(window));
    EXPECT_FALSE(CloseMessageWindow(window));
    EXPECT_FALSE(PostToMessageWindow(window, 6, nullptr));
    EXPECT_FALSE(SendToMessageWindow(window, 6, nullptr));
}

TEST_F(MessageWindow, ThreadsThatSendToEachOtherGetAlong) {
    // Its handler, on the other thread, sends back to the window that waits for it.
    static WindowHandle back;
    back = window;
    auto const sendBack = [](WindowHandle, unsigned int message, void*) {
        return SendToMessageWindow(back, message + 1, nullptr);
    };
    WindowHandle other = WindowHandle::None;
    Event ready;
    std::thread peer([&] {
        other = OpenMessageWindow({sendBack, Discard});
        ready.Set();
        EXPECT_TRUE(PumpMessages(kBound));
    });
    ASSERT_TRUE(ready.WaitFor(kBound));
    EXPECT_TRUE(SendToMessageWindow(other, 10, nullptr));
    EXPECT_EQ(g_trail, "11 ");
    peer.join();
    EXPECT_FALSE(MessageWindowExists(other)) << "a thread's windows end with it";
}

}  // namespace
}  // namespace Ubrix::Platform
