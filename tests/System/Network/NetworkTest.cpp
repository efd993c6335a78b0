#include <VelmorCore/Network.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "Base/Ubrix/IBase.h"
#include "System/Network/Nat64Address.h"
#include "System/Thread/GameThread.h"

namespace Ubrix {
namespace {

std::string g_trail;

class KeepingObserver : public CNetworkObserver {
public:
    using CNetworkObserver::CountOfChangedStates;
    using CNetworkObserver::PopStateFromChangedList;
};

class ActingObserver : public CNetworkObserver {
public:
    explicit ActingObserver(
        std::string name, std::function<void()> action = [] {})
        : _name(std::move(name)), _action(std::move(action)) {
        INetwork::GetInstance().AddObserver(this);
    }
    void OnNetworkStateChanged(ANetworkState state) override {
        g_trail += _name + std::to_string(state);
        _action();
    }

private:
    std::string _name;
    std::function<void()> _action;
};

void Callback(ANetworkState state) {
    g_trail += "callback" + std::to_string(state);
}

class Network : public testing::Test {
protected:
    Network() {
        EnableUiUpdate();
        g_trail.clear();
    }
    static std::string TrailOf(ANetworkState state) {
        CNetwork::GetInstance().OnNetworkStateChanged(state);
        EXPECT_EQ(g_trail, "") << "nobody hears before the host's update";
        RunHostUpdateSelectors();
        return std::exchange(g_trail, "");
    }
    static constexpr ANetworkState kLost = ANetworkStateNotReachable;
    static constexpr ANetworkState kBack = ANetworkStateReachable;
};

TEST_F(Network, ObserversHearInOrderThenTheCallback) {
    INetwork& network = INetwork::GetInstance();
    KeepingObserver keeper;
    ActingObserver a("a");
    ActingObserver b("b");
    network.AddObserver(&keeper);
    network.AddObserver(&a);  // stands there already
    network.SetCallback(Callback);
    EXPECT_EQ(TrailOf(kLost), "a0b0callback0");
    network.RemoveObserver(&a);
    network.RemoveObserver(&a);
    EXPECT_EQ(TrailOf(kBack), "b1callback1");
    network.SetCallback(nullptr);
    EXPECT_EQ(TrailOf(kBack), "b1");
    EXPECT_EQ(keeper.CountOfChangedStates(), 3);
    ANetworkState state;
    for (ANetworkState const expected : {kLost, kBack, kBack}) {
        EXPECT_TRUE(keeper.PopStateFromChangedList(state));
        EXPECT_EQ(state, expected);
    }
    EXPECT_FALSE(keeper.PopStateFromChangedList(state));
}

TEST_F(Network, ObserversMayComeGoAndDieWhileTheyAreTold) {
    ActingObserver removed("removed");
    auto dead = std::unique_ptr<ActingObserver>();
    auto late = std::unique_ptr<ActingObserver>();
    {
        ActingObserver actor("actor", [&] {
            INetwork::GetInstance().RemoveObserver(&removed);
            dead.reset();
            late = std::make_unique<ActingObserver>("late");
        });
        dead = std::make_unique<ActingObserver>("dead");
        INetwork::GetInstance().RemoveObserver(&removed);
        INetwork::GetInstance().AddObserver(&removed);
        EXPECT_EQ(TrailOf(kLost), "actor0removed0");
    }
    EXPECT_EQ(TrailOf(kBack), "late1");
}

TEST_F(Network, AWithdrawalOnAnotherThreadWaitsForTheCallInHand) {
    for (int way = 0; way < 3; ++way) {
        auto withdrawn = std::make_unique<KeepingObserver>();
        std::atomic<bool> isBegun{false};
        std::atomic<bool> isDone{false};
        std::thread other;
        ActingObserver told("told", [&] {
            other = std::thread([&] {
                isBegun = true;
                way == 0   ? INetwork::GetInstance().RemoveObserver(withdrawn.get())
                : way == 1 ? withdrawn.reset()
                           : CNetwork::ReleaseInstance();
                isDone = true;
            });
            for (int i = 0; i < 1000 || !isBegun; ++i) {
                std::this_thread::yield();
            }
            EXPECT_FALSE(isDone) << way;
        });
        EXPECT_EQ(TrailOf(kLost), "told0");
        other.join();
    }
}

// The cells of what was queued are freed, and nobody is called on a dead object, whoever releases.
TEST_F(Network, ReleaseAtAnyMoment) {
    ActingObserver waiting("waiting");
    CNetwork::GetInstance().OnNetworkStateChanged(kLost);
    IBase::RunReleaseCallbacks();
    RunHostUpdateSelectors();
    EXPECT_EQ(TrailOf(kLost), "") << "a new network has no observers";

    auto after = std::unique_ptr<ActingObserver>();
    ActingObserver releaser("releaser", [&] {
        CNetwork::ReleaseInstance();
        after.reset();
    });
    after = std::make_unique<ActingObserver>("after");
    INetwork::GetInstance().SetCallback(Callback);
    EXPECT_EQ(TrailOf(kBack), "releaser1");
}

TEST_F(Network, DetailRecordOnTheWire) {
    _tagADetailNetworkInfo info = INetwork::GetInstance().GetDetailNetworkInfo();
    info.detail = 258;
    info.text1 = "a";
    info.text4 = "b";
    AString encoded;
    info.Encode(encoded);
    _tagADetailNetworkInfo read;
    read.text2 = "old";
    EXPECT_TRUE(read.Decode(encoded));
    read.Encode(encoded);
    std::string const bytes("\0\0\0\1\0\0\1\2\0\0\0\1a\0\0\0\0\0\0\0\0\0\0\0\1b", 26);
    EXPECT_EQ(std::string(encoded.data(), static_cast<std::size_t>(encoded.length())), bytes);
}

TEST(Nat64Address, Table) {
    char const* const accepted[][2] = {
        {"tcp://1.2.3.4:80/path", "tcp://[64::ff9b:1.2.3.4]:80"},
        {"http://1.2.3.4", "http://64::ff9b:1.2.3.4"},
        {"1.2.3.4:0", "64::ff9b:1.2.3.4"},
        {"[1.2.3.4]:443", "[64::ff9b:1.2.3.4]:443"},
        {"://1.2.3.4:65537", "[64::ff9b:1.2.3.4]:1"},
        {"1.2.3.4:999999999999999999999999x", "[64::ff9b:1.2.3.4]:65535"},
        {"1.2.3.4/path", "1.2.3.4/path"},
        {"[64::1]:80", "[64::1]:80"},
        {"", "64::ff9b:"},
    };
    for (auto const& row : accepted) {
        AString result;
        EXPECT_TRUE(ToNat64Address(row[0], result)) << row[0];
        EXPECT_STREQ(result.c_str(), row[1]) << row[0];
    }
    AString result("as it was");
    for (char const* const refused :
         {"[64::1]", "[64::1]80", "tcp://[1.2.3.4", "[", static_cast<char const*>(nullptr)}) {
        EXPECT_FALSE(ToNat64Address(refused, result)) << (refused != nullptr ? refused : "null");
    }
    EXPECT_STREQ(result.c_str(), "as it was");
}

}  // namespace
}  // namespace Ubrix
