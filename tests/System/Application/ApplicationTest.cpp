#include "System/Application/Application.h"

#include <VelmorCore/Network.h>

#include <functional>
#include <string>
#include <utility>

#include "Base/Ubrix/IBase.h"
#include "System/Thread/ATargetBase.h"

namespace Ubrix {
namespace {

// Writes its letter and the number of the operation, and does what it was told, once.
class Observer : public IApplicationObserver {
public:
    Observer(std::string& trail, char letter) : _trail(trail), _letter(letter) {}
    void OnLifecycleEvent1() override { Hear('1'); }
    void OnLifecycleEvent2() override { Hear('2'); }
    void OnPause() override { Hear('3'); }
    void OnResume() override { Hear('4'); }
    void OnLifecycleEvent5() override { Hear('5'); }
    void OnTerminate() override { Hear('6'); }

    std::function<void()> reaction = [] {};

private:
    void Hear(char number) {
        _trail += {_letter, number};
        // It may delete this.
        std::exchange(reaction, [] {})();
    }

    std::string& _trail;
    char _letter;
};

TEST(Application, TellsEachObserverOnceInOrderAndTheNetworkGoesFirst) {
    static bool told = false;
    std::string trail;
    Observer a(trail, 'a');
    Observer b(trail, 'b');
    CApplication& application = CApplication::GetInstance();
    application.AddObserver(&a);
    application.AddObserver(nullptr);
    application.LifecycleEvent1();
    application.LifecycleEvent2();
    application.OnPause();
    application.OnResume();
    application.LifecycleEvent5();
    INetwork::GetInstance().SetCallback([](ANetworkState) { told = true; });
    a.reaction = [] {
        EnableUiUpdate();
        CNetwork::GetInstance().OnNetworkStateChanged(ANetworkStateReachable);
        RunHostUpdateSelectors();
    };
    application.Terminate();
    EXPECT_EQ(trail, "a1b1a2b2a3b3a4b4a5b5a6b6");
    EXPECT_FALSE(told) << "the network is a new one by now";
}

TEST(Application, ChangesFromInsideACallbackAreSafe) {
    std::string trail;
    auto a = std::make_unique<Observer>(trail, 'a');
    auto b = std::make_unique<Observer>(trail, 'b');
    auto c = std::make_unique<Observer>(trail, 'c');
    std::unique_ptr<Observer> d;
    std::unique_ptr<Observer> f;
    auto const application = [] { return &CApplication::GetInstance(); };
    auto const rejoin = [&] {
        application()->RemoveObserver(b.get());
        application()->AddObserver(b.get());
    };
    struct Case {
        char const* what;
        std::function<void()> reaction;
        char const* heard;
        char const* heardNext;
    } const cases[] = {
        {"adds one", [&] { d = std::make_unique<Observer>(trail, 'd'); }, "a3b3c3", "a3b3c3d3"},
        {"reports an event", [&] { application()->OnResume(); }, "a3b3a4b4c4d4c3d3", "a3b3c3d3"},
        {"leaves and comes back", rejoin, "a3b3c3d3", "a3c3d3b3"},
        {"destroys those before it",
         [&] {
             a.reset();
             c.reset();
             f = std::make_unique<Observer>(trail, 'f');
         },
         "a3c3d3b3", "d3b3f3"},
        {"destroys one behind it, and itself",
         [&] {
             f.reset();
             b.reset();
         },
         "d3b3", "d3"},
    };
    for (Case const& test : cases) {
        trail.clear();
        b->reaction = test.reaction;
        application()->OnPause();
        EXPECT_EQ(trail, test.heard) << test.what;
        trail.clear();
        application()->OnPause();
        EXPECT_EQ(trail, test.heardNext) << test.what;
    }
    Observer e(trail, 'e');
    d->reaction = IBase::Release;
    trail.clear();
    application()->OnPause();
    application()->OnPause();
    EXPECT_EQ(trail, "d3") << "the teardown ends the fan-out";
}

}  // namespace
}  // namespace Ubrix
