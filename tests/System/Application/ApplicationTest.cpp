#include "System/Application/Application.h"

#include <VelmorCore/Network.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

#include "Base/Ubrix/IBase.h"
#include "System/Thread/GameThread.h"

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
    CApplication& application = CApplication::GetInstance();
    std::map<char, std::unique_ptr<Observer>> all;
    auto const make = [&](char letter) { all[letter] = std::make_unique<Observer>(trail, letter); };
    make('a');
    make('b');
    make('c');
    // What b does, what is heard then, and the next time.
    std::tuple<std::function<void()>, char const*, char const*> const cases[] = {
        {[&] { make('d'); }, "a3b3c3", "a3b3c3d3"},
        {[&] { application.OnResume(); }, "a3b3a4b4c4d4c3d3", "a3b3c3d3"},
        {[&] {
             application.RemoveObserver(all['b'].get());
             application.AddObserver(all['b'].get());
         },
         "a3b3c3d3", "a3c3d3b3"},
        {[&] {
             make('e');
             all.erase('a');
             all.erase('b');
         },
         "a3c3d3b3", "c3d3e3"},
    };
    for (auto const& [reaction, first, second] : cases) {
        all['b']->reaction = reaction;
        for (char const* heard : {first, second}) {
            trail.clear();
            application.OnPause();
            EXPECT_EQ(trail, heard);
        }
    }
    all['c']->reaction = [&all] {
        all.erase('d');
        IBase::Release();
    };
    trail.clear();
    application.OnPause();
    CApplication::GetInstance().OnPause();
    EXPECT_EQ(trail, "c3") << "the teardown ends the fan-out";
}

}  // namespace
}  // namespace Ubrix
