#include <VelmorCore/Network.h>

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Base/Ubrix/IBase.h"
#include "Platform/Event.h"
#include "System/Network/Nat64Address.h"
#include "System/Thread/ATargetBase.h"

namespace Ubrix {
namespace {

constexpr unsigned int kBound = 10000;

std::string g_trail;

class KeepingObserver : public CNetworkObserver {
public:
    std::string TakeAll() {
        std::string states = std::to_string(CountOfChangedStates()) + ":";
        ANetworkState state = ANetworkStateReachable;
        while (PopStateFromChangedList(state)) {
            states += std::to_string(state);
        }
        return states;
    }
};

class ActingObserver : public CNetworkObserver {
public:
    explicit ActingObserver(std::string name, std::function<void()> action = {})
        : _name(std::move(name)), _action(std::move(action)) {
        INetwork::GetInstance().AddObserver(this);
    }
    void OnNetworkStateChanged(ANetworkState state) override {
        g_trail += _name + std::to_string(state);
        if (_action) {
            _action();
        }
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
    ~Network() override {
        CNetwork::ReleaseInstance();
        ReleaseHostUpdateQueue();
    }
    static std::string TrailOf(int state) {
        CNetwork::GetInstance().OnNetworkStateChanged(static_cast<ANetworkState>(state));
        EXPECT_EQ(g_trail, "") << "nobody hears before the host's update";
        RunHostUpdateSelectors();
        return std::exchange(g_trail, "");
    }
};

TEST_F(Network, ObserversHearInOrderThenTheCallback) {
    EXPECT_EQ(INetwork::GetInstance().GetNetworkState(), 1);
    KeepingObserver keeper;
    ActingObserver a("a");
    ActingObserver b("b");
    INetwork::GetInstance().AddObserver(&keeper);
    INetwork::GetInstance().AddObserver(&a);  // stands there already
    INetwork::GetInstance().SetCallback(Callback);
    EXPECT_EQ(TrailOf(0), "a0b0callback0");
    INetwork::GetInstance().RemoveObserver(&a);
    INetwork::GetInstance().RemoveObserver(&a);
    EXPECT_EQ(TrailOf(1), "b1callback1");
    INetwork::GetInstance().SetCallback(nullptr);
    EXPECT_EQ(keeper.TakeAll(), "2:01");
    EXPECT_EQ(keeper.TakeAll(), "0:");
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
        EXPECT_EQ(TrailOf(0), "actor0removed0");
    }
    EXPECT_EQ(TrailOf(1), "late1");
}

// The cells of what was queued are freed, and nobody is called on a dead object, whoever releases.
TEST_F(Network, ReleaseAtAnyMoment) {
    ActingObserver waiting("waiting");
    CNetwork::GetInstance().OnNetworkStateChanged(ANetworkStateNotReachable);
    IBase::RunReleaseCallbacks();
    RunHostUpdateSelectors();
    EXPECT_EQ(TrailOf(0), "") << "a new network has no observers";

    auto after = std::unique_ptr<ActingObserver>();
    ActingObserver releaser("releaser", [&] {
        CNetwork::ReleaseInstance();
        after.reset();
    });
    after = std::make_unique<ActingObserver>("after");
    INetwork::GetInstance().SetCallback(Callback);
    EXPECT_EQ(TrailOf(1), "releaser1");

    Platform::Event entered;
    bool left = false;
    ActingObserver slow("slow", [&] {
        entered.Set();
        CNetwork::GetInstance();
        std::this_thread::yield();
        left = true;
    });
    CNetwork::GetInstance().OnNetworkStateChanged(ANetworkStateReachable);
    std::thread pump(RunHostUpdateSelectors);
    EXPECT_TRUE(entered.WaitFor(kBound));
    CNetwork::ReleaseInstance();
    EXPECT_TRUE(left);
    pump.join();
}

TEST_F(Network, FirstUseOnManyThreadsMakesOne) {
    std::vector<INetwork*> seen(8);
    std::vector<std::thread> threads;
    threads.reserve(seen.size());
    for (INetwork*& one : seen) {
        threads.emplace_back([&one] { one = &INetwork::GetInstance(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(seen, std::vector<INetwork*>(8, &CNetwork::GetInstance()));
}

TEST_F(Network, DetailRecordOnTheWire) {
    AString encoded;
    EXPECT_TRUE(INetwork::GetInstance().GetDetailNetworkInfo().Encode(encoded));
    EXPECT_EQ(std::string(encoded.data(), static_cast<std::size_t>(encoded.length())),
              std::string("\0\0\0\1", 4) + std::string(20, '\0'));

    _tagADetailNetworkInfo info;
    info.detail = 258;
    info.text1 = "a";
    info.text4 = "bc";
    info.Encode(encoded);
    std::string const bytes(
        "\0\0\0\0\0\0\1\2\0\0\0\1a\0\0\0\0\0\0\0\0\0\0\0\2"
        "bc",
        27);
    EXPECT_EQ(std::string(encoded.data(), static_cast<std::size_t>(encoded.length())), bytes);
    _tagADetailNetworkInfo read;
    read.text2 = "old";
    EXPECT_TRUE(read.Decode(encoded));
    std::unique_ptr<AObject> const clone(read.Clone());
    auto const* copy = dynamic_cast<_tagADetailNetworkInfo const*>(clone.get());
    ASSERT_NE(copy, nullptr);
    AString again;
    copy->Encode(again);
    EXPECT_TRUE(again.length() == encoded.length() && copy->text2.Empty() && copy->text4 == AString("bc") &&
                copy->detail == 258);
}

TEST(Nat64Address, Table) {
    struct {
        char const* url;
        char const* result;  // null: refused
    } const cases[] = {
        {"tcp://1.2.3.4:80", "tcp://[64::ff9b:1.2.3.4]:80"},
        {"1.2.3.4", "64::ff9b:1.2.3.4"},
        {"http://1.2.3.4", "http://64::ff9b:1.2.3.4"},
        {"1.2.3.4:0", "64::ff9b:1.2.3.4"},
        {"://1.2.3.4:65537", "[64::ff9b:1.2.3.4]:1"},
        {"[1.2.3.4]:443", "[64::ff9b:1.2.3.4]:443"},
        {"1.2.3.4:999999999999999999999999x", "[64::ff9b:1.2.3.4]:65535"},
        {"1.2.3.4:", "64::ff9b:1.2.3.4"},
        {"host.example:80", "host.example:80"},
        {"tcp://1.2.3.4:80/path", "tcp://[64::ff9b:1.2.3.4]:80"},
        {"1.2.3.4/path", "1.2.3.4/path"},
        {"64::1", "64::1"},
        {"[64::1]:80", "[64::1]:80"},
        {"[64::1]", nullptr},
        {"[64::1]80", nullptr},
        {"tcp://[1.2.3.4", nullptr},
        {"[", nullptr},
        {"", "64::ff9b:"},
        {":", "64::ff9b:"},
        {"::", "::"},
        {"\xFF\xFE://\x80", "\xFF\xFE://\x80"},
        {nullptr, nullptr},
    };
    for (auto const& test : cases) {
        AString result("as it was");
        std::string const name = test.url != nullptr ? test.url : "null";
        EXPECT_EQ(ToNat64Address(test.url, result), test.result != nullptr) << name;
        EXPECT_STREQ(result.c_str(), test.result != nullptr ? test.result : "as it was") << name;
    }
}

}  // namespace
}  // namespace Ubrix
