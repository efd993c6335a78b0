#include <VelmorCore/Bundle.h>
#include <VelmorCore/Configure.h>
#include <VelmorCore/File.h>
#include <VelmorCore/Network.h>
#include <VelmorCore/RemoteConfig.h>
#include <VelmorCore/velmorcore.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "Base/Configure/ConfigureImpl.h"
#include "Readers/Files.h"
#include "Serializer/URLEncoder.h"
#include "Storage/Log/LogFacade.h"
#include "Support/FileSizeLimit.h"
#include "Support/LogCapture.h"
#include "Support/OnThreads.h"
#include "Support/ScriptedTransport.h"
#include "Support/SteppedClock.h"
#include "Support/Watched.h"

namespace {

using Velmor::ConfigureImpl;

constexpr char kUrl[] = "https://config.velmor.example";
constexpr char kCacheFile[] = "Cache/RemoteConfig.config";
constexpr char kGood[] =
    R"({"ret":0,"err":"","biz_data":{"rule_id":7,"merged_cfg":{)"
    R"("Game":{"speed":3,"title":"red","zeros":"007","ratio":"2.5","on":"true","big":"123456789012"},)"
    R"("VelmorCore":{"LogLevel":"warning","RemoteConfigMaxRetryCount":1}}}})";

ConfigureImpl& Impl() {
    return *ConfigureImpl::Instance();
}

std::string Text(char const* section, char const* key) {
    return Velmor::Configure::GetInstance()->GetString(section, key, "absent").c_str();
}

// An answer with these modules.
std::string Modules(std::string const& modules) {
    return R"({"biz_data":{"merged_cfg":{)" + modules + "}}}";
}

// Hears of one module, and lets a test wait for it.
class Observer final : public Velmor::ConfigureObserver {
public:
    void OnConfigureRefreshed(Velmor::IStringIterator* keys) override {
        std::string names;
        while (!keys->IsEnd()) {
            names += std::string(keys->Next()) + " ";
        }
        if (auto const work = during) {
            work();
        }
        _told.With([&](std::string& told) { told += names + "|"; });
    }
    // Waits until it has been told of these keys in all, with a bar behind each time. False after ten
    // seconds.
    bool Hears(std::string const& names) {
        return _told.Await([&](std::string const& told) { return told == names; });
    }
    std::function<void()> during;

private:
    ::Test::Watched<std::string> _told;
};

class Configure : public testing::Test {
protected:
    Configure() : _server(::Test::ScriptedTransport::Install()) {}
    ~Configure() override {
        ConfigureImpl::ReleaseInstance();
        ::Test::SteppedClock::Remove();
    }

    // Fetches this answer and waits for its end.
    void Fetch(std::string const& body, int status = 200) {
        _server.Answer(body, status);
        EXPECT_TRUE(velmorcore_configure_seturl(kUrl));
        AwaitState(ConfigureImpl::kFinished);
    }
    void AwaitState(ConfigureImpl::State state) {
        EXPECT_TRUE(::Test::AwaitTrue([state] { return Impl().CurrentState() == state; })) << state;
    }

    ::Test::LogCapture _log;
    ::Test::ScriptedTransport& _server;
};

TEST_F(Configure, AsksAsToldAndServesTheAnswerTyped) {
    Velmor::RemoteConfig game("Game");
    game.SetUserInfo(11, std::string(1024, 'p').c_str());
    game.SetUserInfo(11, "player&1");
    // Each of these would plant a key, be gone after a restart, or steer a terminal; the user stays the same.
    for (std::string const& id : {std::string("player\n[Game]\nspeed=999"), std::string("#player"),
                                  std::string("a\rb"), std::string("\x1B[2J"), std::string(1025, 'p')}) {
        game.SetUserInfo(12, id.c_str());
    }
    EXPECT_EQ(_log.Count("Error", ": refused"), 5);
    EXPECT_STREQ(
        Ubrix::BundleFactory::GetInstance().GetDefaultBundle().Get("VelmorCore", "openid", "").CString(),
        "player&1");
    Fetch(kGood);
    std::string const request = Ubrix::URLEncoder::Decode(_server.Seen().at(0));
    EXPECT_THAT(request,
                testing::StartsWith(R"(config.velmor.example/cfgpush/getConfig?com_params={"app_ver":"N",)"
                                    R"("bid":"Sarnet","cid":"11","did":")"));
    EXPECT_THAT(request,
                testing::HasSubstr(R"(","gid":"","mfrs":"Windows","mtype":"Windows","oid":"player&1",)"
                                   R"("os":"Windows","os_ver":"Unknown"})"
                                   "\n&biz_params={\"rule_id\":0}\n&r="));
    EXPECT_THAT(_server.Seen().at(0), testing::HasSubstr("%7D%0A&biz_params="));

    Velmor::Configure& configure = *Velmor::Configure::GetInstance();
    EXPECT_EQ(configure.GetInt("Game", "speed", 0), 3);
    EXPECT_EQ(Text("Game", "title"), "red");
    EXPECT_EQ(Text("Game", "zeros"), "7");
    EXPECT_EQ(configure.GetDouble("Game", "ratio", 1), 2.5);
    EXPECT_EQ(configure.GetDouble("Game", "title", 1.5), 1.5);
    EXPECT_TRUE(configure.GetBool("Game", "on", false));
    EXPECT_EQ(configure.GetLong("Game", "big", 0), 123456789012LL);
    EXPECT_EQ(configure.GetInt("Game", "none", -4), -4);
    EXPECT_EQ(::Test::ReadWholeFile(kCacheFile).substr(0, 4), std::string("\xE4\x08\x02\x00", 4));

    // The level from the server takes effect at the next call of the setter.
    Ubrix::SetUbrixLogLevel(Ubrix::ALogPriorityDebug);
    EXPECT_EQ(Ubrix::CurrentLogger()->GetLevel(), Ubrix::ALogPriorityWarning);

    for (int const room : {3, 4}) {
        char text[4] = "?";
        int size = room;
        EXPECT_EQ(game.GetString("title", text, &size, ""), room == 4);
        EXPECT_EQ(size, 3);
        EXPECT_STREQ(text, room == 4 ? "red" : "?");
    }
    EXPECT_EQ(game.GetInt(nullptr, 7), 7);
    EXPECT_TRUE(_log.Has("Error", "|Velmor::RemoteConfig::GetInt| key is NULL"));
}

TEST_F(Configure, AnAnswerReplacesTheCacheWholeAndOutlivesTheInstance) {
    Fetch(kGood);
    std::string const answer = Modules(R"("B":{"x":1,"skip":true,"half":1.5},"E":{"n":null})");
    Observer observer;
    observer.during = [&] {
        observer.during = nullptr;
        _server.Answer(answer);
        Impl().StartOnce();
    };
    Impl().AddObserver("B", &observer);
    Fetch(answer);
    EXPECT_TRUE(observer.Hears("x |x |")) << "it may fetch, too";
    Impl().RemoveObserver("B");
    EXPECT_EQ(_log.Count("Error", "valueType not support yet"), 6);
    EXPECT_TRUE(
        _log.Await("Error", "|Velmor::ConfigureImpl::OnDataTaskFinished| Value is not Object type", 2));
    EXPECT_EQ(_log.Count("Error", "Value is not Object type"), 4);
    ConfigureImpl::ReleaseInstance();
    EXPECT_EQ(Text("Game", "speed"), "absent");
    EXPECT_EQ(Text("B", "x"), "1");
    EXPECT_EQ(Text("VelmorCore", "RemoteConfigUrl"), kUrl);
    // The stored address is found again, and setting it anew leaves the cache to a start without a network.
    Impl().StartOnce();
    EXPECT_TRUE(_server.AwaitRequests(4));
    ConfigureImpl::ReleaseInstance();
    Impl().SetUrl(kUrl);
    EXPECT_TRUE(_server.AwaitRequests(5));
    for (int life = 0; life < 30; ++life) {
        ConfigureImpl::ReleaseInstance();
        ::Test::OnThreads(
            3, [](int) { EXPECT_EQ(Text("B", "x"), "1") << "nobody meets one that isn't open yet"; });
    }
}

TEST_F(Configure, BadAnswersAreToldAndKeepTheCache) {
    Fetch(kGood);
    struct {
        std::string body;
        std::string message = "parse json error";
        std::string verdict = "ParseJson error:-1";
    } const rows[] = {
        {"", "jsonStr == NULL || len == 0"},
        {"<html><body>Sign in</body></html>"},
        {std::string(64U << 20U, '{')},
        {std::string(100000, '[')},
        {std::string("\0\0{}", 4)},
        {"[1,2]", "json is not Object", "ParseJson error:-2"},
        {R"({"ret":5,"err":"no"})", "Configue error code 5, msg no"},
        {R"({"ret":"0"})"},
        {R"({"ret":true})"},
        {R"({"ret":3000000000})"},
        {R"({"ret":1,"err":7})"},
        {R"({"biz_data":[]})"},
        {R"({"biz_data":{"rule_id":99999999999}})"},
        {R"({"biz_data":{"merged_cfg":"x"}})"},
        {Modules(R"("A":[1])")},
        {Modules(R"("A":{"k":2147483648})")},
        {Modules(R"("A":{"k":-99999999999999999999})")},
        {R"({"more":[)" + std::string(1U << 20U, ',').replace(0, 2, "0,") + "]}"},
    };
    for (auto const& [body, message, verdict] : rows) {
        SCOPED_TRACE(body.substr(0, 60));
        int const before = _log.Count("Error", message);
        int const coded = _log.Count("Error", verdict);
        Fetch(body);
        EXPECT_TRUE(_log.Await("Error", message, before + 1));
        EXPECT_TRUE(_log.Await("Error", verdict, coded + 1));
        EXPECT_EQ(Text("Game", "speed"), "3");
    }
    EXPECT_EQ(_server.Seen().size(), 1 + std::size(rows)) << "a bad answer is not retried";
}

TEST_F(Configure, OddButGoodAnswersAreStored) {
    std::tuple<std::string, char const*, std::string> const rows[] = {
        {Modules(R"("A":{"k":1,"k":2})"), "A", "2"},
        {Modules("\"A\":{\"k\":\"\xC3\x28\"}"), "A", "\xC3\x28"},
        {Modules(R"("A":{"k":"a\u0000b"})"), "A", "a"},
        {Modules(R"("":{"k":"own"})"), "", "own"},
        {Modules(R"("A":{"k":-2147483648})") + " ", "A", "-2147483648"},
        {"/* why */" + Modules(R"("A":{"k":"c"})"), "A", "c"},
        {"null", "A", "absent"},
    };
    for (auto const& [body, section, value] : rows) {
        Fetch(body, 404);
        EXPECT_EQ(Text(section, "k"), value) << body;
    }
    EXPECT_EQ(Text("VelmorCore", "RemoteConfigUrl"), kUrl);
    EXPECT_EQ(ubrix_remoteconfig_GetInt("k", 5), 5);
}

TEST_F(Configure, WhatTheFileCantHoldIsLeftOutInFewLines) {
    std::string unusable;
    for (int i = 0; i < 100000; ++i) {
        unusable += ",\"" + std::to_string(i) + "\":true";
    }
    Fetch(Modules(R"("A]\nB":{"k":1},"M":{"a=b":1,"[a":1,"a\u0000b":1,"VelmorCore\nLogLevel":1,)"
                  R"("cut":"one\r\n[Plant]\ngold=999","mark":"a#b","ok":"yes")" +
                  unusable + "}"));
    EXPECT_TRUE(_log.Await("Error", "99997 more lines like these left out"));
    EXPECT_EQ(_log.Count("Error", "name of module A]\\nB can't be stored, left out"), 1);
    EXPECT_EQ(_log.Count("Error", "valueType not support yet"), 9);
    for (int life = 0; life < 2; ++life) {
        EXPECT_EQ(Text("M", "ok"), "yes");
        EXPECT_EQ(Text("M", "cut"), "one");
        EXPECT_EQ(Text("M", "a"), "absent");
        EXPECT_EQ(Text("Plant", "gold"), "absent");
        ConfigureImpl::ReleaseInstance();
    }
}

TEST_F(Configure, AForeignTextForgesNoLine) {
    std::string const hostile = "x\n[2036-03-05 07:59:01 042] | Error\x1b[2J";
    Velmor::RemoteConfig game(hostile.c_str());
    game.SetUserInfo(11, hostile.c_str());
    game.SetUserInfo(11, "half a character\x9b\xF0\x9F");
    _server.Hold(kGood);
    Impl().SetUrl((std::string(kUrl) + "/" + hostile).c_str());
    EXPECT_TRUE(_server.AwaitRequests(1));
    Impl().SetUrl((std::string(kUrl) + "/?" + hostile).c_str());
    _server.Release();
    AwaitState(ConfigureImpl::kReady);
    Fetch("/*" + hostile + "*/" + Modules(R"("M":{"a\u001b[2J":"#"})"));
    _server.Answer(R"({"ret":1,"err":"a\nb\u001b[2J"})");
    game.Fetch();
    EXPECT_TRUE(_log.Await("Error", "| Configue error code 1, msg a\\nb\\x1b[2J"));
    Ubrix::AArray names;
    Ubrix::CPath::GetFiles(hostile.c_str(), &names);
    game.SetUserInfo(0, "");
    for (char const* planted : {"\x1b", "\x9b", "\n[2036-"}) {
        EXPECT_THAT(_log.Text(), testing::Not(testing::HasSubstr(planted)));
    }
}

TEST_F(Configure, AFailureIsRetriedEveryTenSecondsAndThenWaitsForTheNetwork) {
    ::Test::SteppedClock& clock = ::Test::SteppedClock::Install();
    Impl().SetUrl(kUrl);
    for (std::size_t retry = 1; retry <= 3; ++retry) {
        ASSERT_TRUE(clock.AwaitWaiters({static_cast<long long>(retry) * 10000})) << retry;
        EXPECT_EQ(_server.Seen().size(), retry);
        clock.Advance(10000);
        ASSERT_TRUE(_server.AwaitRequests(retry + 1)) << _log.Text();
    }
    AwaitState(ConfigureImpl::kFailed);
    ASSERT_TRUE(clock.AwaitWaiters({})) << "the retries are used up";
    EXPECT_TRUE(_log.Await("Info", "OnDataTaskFinished error:5", 4));
    EXPECT_TRUE(_log.Await("Info", ", maxRetryCount 3, retryCount 0"));
    clock.Advance(100000);
    Impl().OnNetworkStateChanged(Ubrix::ANetworkStateNotReachable);
    EXPECT_EQ(_log.Count("Info", ", maxRetryCount 3, retryCount 3"), 1);
    _server.Answer(kGood);
    Impl().OnNetworkStateChanged(Ubrix::ANetworkStateReachable);
    AwaitState(ConfigureImpl::kFinished);
    Impl().OnNetworkStateChanged(Ubrix::ANetworkStateReachable);
    EXPECT_FALSE(_log.Has("Info", ", maxRetryCount 1, retryCount 1")) << "nothing to make up for";
}

TEST_F(Configure, AServerCantHurryItsClients) {
    auto const tuned = [](std::string const& keys) { return Modules("\"VelmorCore\":{" + keys + "}"); };
    ::Test::SteppedClock& clock = ::Test::SteppedClock::Install();
    Fetch(tuned(R"("RemoteConfigNextGap":0)"));
    Impl().Start();
    EXPECT_TRUE(clock.AwaitWaiters({10000, 60000}));
    AwaitState(ConfigureImpl::kFailed);
    // The answer that brings another gap is the one from which it counts, and again and again from then on.
    _server.Answer(tuned(R"("RemoteConfigNextGap":90,"RemoteConfigMaxRetryCount":2000000000)"));
    Impl().StartOnce();
    EXPECT_TRUE(clock.AwaitWaiters({90000}));
    clock.Advance(90000);
    EXPECT_TRUE(_server.AwaitRequests(4));
    EXPECT_TRUE(_log.Await("Info", ", maxRetryCount 10, retryCount 10"));
    EXPECT_TRUE(clock.AwaitWaiters({100000, 180000}));

    std::string const spread = tuned(R"("RemoteConfigRetryJitter":86400,"RemoteConfigGapJitter":2000000000)");
    Fetch(spread);
    long long now = clock.Elapsed();
    long long constexpr kDay = 86400000;
    auto const isSpread = [&](std::vector<long long> const& moments) {
        return moments.size() == 1 && moments[0] > now + kDay && moments[0] <= now + 2 * kDay + 100;
    };
    EXPECT_TRUE(clock.AwaitMoments(isSpread)) << "the gap of a day, and up to one more";
    long long const gap = clock.Waiters().at(0) - now;
    _server.Answer(spread);
    clock.Advance(gap);
    now += gap;
    EXPECT_TRUE(_server.AwaitRequests(6));
    EXPECT_TRUE(clock.AwaitMoments(
        [&](auto const& moments) { return isSpread(moments) && moments[0] != now + gap; }));
    // Those who failed together don't come back together.
    std::set<long long> delays;
    for (int life = 0; life < 2; ++life) {
        ConfigureImpl::ReleaseInstance();
        EXPECT_TRUE(clock.AwaitWaiters({}));
        Impl().StartOnce();
        EXPECT_TRUE(clock.AwaitMoments([](auto const& moments) { return moments.size() == 1; }));
        delays.insert(clock.Waiters().at(0) - now);
    }
    EXPECT_EQ(delays.size(), 2U);
    EXPECT_GT(*delays.begin(), 10000);
}

TEST_F(Configure, AnAddressOfAServersOwnDoesntOutliveTheProcess) {
    Fetch(Modules(R"("VelmorCore":{"RemoteConfigUrl":"https://evil.example","k":"v"})"));
    EXPECT_EQ(Text("VelmorCore", "RemoteConfigUrl"), "https://evil.example");
    ConfigureImpl::ReleaseInstance();
    Impl().StartOnce();
    ASSERT_TRUE(_server.AwaitRequests(2));
    EXPECT_THAT(_server.Seen().at(1), testing::StartsWith("config.velmor.example/"));
    ConfigureImpl::ReleaseInstance();
    Impl().SetUrl(kUrl);
    EXPECT_EQ(Text("VelmorCore", "k"), "v") << "the same address keeps the cache, whatever the server wrote";
    ConfigureImpl::ReleaseInstance();
    Ubrix::BundleFactory::GetInstance().GetDefaultBundle().RemoveKey("VelmorCore", "HostRemoteConfigUrl");
    std::filesystem::rename(kCacheFile, "kept");
    ::Test::PutFailingFile(kCacheFile);
    Impl().SetUrl(kUrl);
    // In one step: the request's thread reads the cache, too, and would find none in between.
    std::filesystem::rename("kept", kCacheFile);
    EXPECT_EQ(Text("VelmorCore", "k"), "v") << "nor does one lose it that can't be compared";
    Impl().Clear();
    ConfigureImpl::ReleaseInstance();
    Impl().StartOnce();
    EXPECT_TRUE(_log.Has("Warning", "Configure will not request remote config because of empty url!"));
}

TEST_F(Configure, AnAnswerToAnOutdatedRequestIsThrownAway) {
    Fetch(kGood);
    for (std::string const url : {"https://other.velmor.example", ""}) {
        std::size_t const before = _server.Seen().size();
        Impl().SetUrl(kUrl);
        // A task that isn't idle yet makes the state the same, and the request later.
        ASSERT_TRUE(_server.AwaitRequests(before + 1));
        AwaitState(ConfigureImpl::kFailed);
        _server.Hold(kGood);
        Impl().StartOnce();
        ASSERT_TRUE(_server.AwaitRequests(before + 2));
        url.empty() ? Impl().Clear() : Impl().SetUrl(url.c_str());
        EXPECT_EQ(Impl().CurrentState(), ConfigureImpl::kRequesting);
        _server.Release();
        AwaitState(ConfigureImpl::kReady);
        EXPECT_TRUE(_log.Await("Warning", ", setUrl:" + url)) << _log.Text();
        EXPECT_EQ(Text("Game", "speed"), "absent");
    }
    Impl().StartOnce();
    EXPECT_TRUE(_log.Has("Warning", "Configure will not request remote config because of empty url!"));
    Impl().SetUrl(nullptr);
}

TEST_F(Configure, AnOutdatedFailureCostsNoLaterAnswer) {
    // In the middle of the outcome's handling; the thread that logs this line holds the lock itself.
    Ubrix::SetUbrixLogCallback([](Ubrix::ALogPriority, char const* line) {
        if (std::strstr(line, "OnDataTaskFinished error:5, ") != nullptr) {
            Impl().Clear();
        }
    });
    Impl().SetUrl(kUrl);
    AwaitState(ConfigureImpl::kReady);
    Fetch(kGood);
    EXPECT_EQ(Text("Game", "speed"), "3");
}

TEST_F(Configure, ARetryFindsNothingToAskOnceTheAddressIsCleared) {
    ::Test::SteppedClock& clock = ::Test::SteppedClock::Install();
    Impl().SetUrl(kUrl);
    ASSERT_TRUE(clock.AwaitWaiters({10000}));
    Impl().Clear();
    clock.Advance(10000);
    EXPECT_TRUE(clock.AwaitWaiters({::Test::SteppedClock::kNever})) << _log.Text();
    EXPECT_EQ(_server.Seen().size(), 1U);
}

TEST_F(Configure, AnObserverMayDieOnceItIsRemoved) {
    Observer second;
    std::promise<void> entered;
    std::promise<void> leave;
    auto observer = std::make_unique<Observer>();
    observer->during = [&] {
        entered.set_value();
        leave.get_future().wait_for(std::chrono::seconds(10));
    };
    Impl().AddObserver("Game", observer.get());
    Impl().AddObserver("Game", &second);
    _server.Answer(kGood);
    Impl().SetUrl(kUrl);
    ASSERT_EQ(entered.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
    std::future<void> removed = std::async(std::launch::async, [] { Impl().RemoveObserver("Game"); });
    // Long enough that a removal that doesn't wait is seen.
    EXPECT_EQ(removed.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    leave.set_value();
    ASSERT_EQ(removed.wait_for(std::chrono::seconds(10)), std::future_status::ready);
    observer.reset();
    EXPECT_TRUE(second.Hears("")) << "the first observer of a module stays";
}

TEST_F(Configure, ReadersNeverSeeHalfOfARefresh) {
    std::atomic<bool> stop{false};
    std::atomic<int> torn{0};
    ::Test::OnThreads(5, [&](int role) {
        for (int round = 0; role == 0 && round < 20; ++round) {
            std::string const value = std::to_string(round);
            Fetch(Modules(R"("M":{"a":)" + value + R"(,"z":)" + value + "}"));
        }
        stop = stop || role == 0;
        while (!stop) {
            // "a" is read first: an older "z" than "a" would be half of a refresh.
            int const a = Velmor::Configure::GetInstance()->GetInt("M", "a", -1);
            int const z = Velmor::Configure::GetInstance()->GetInt("M", "z", -1);
            torn += z < a ? 1 : 0;
        }
    });
    EXPECT_EQ(torn, 0);
}

// Writes down that it was told.
class ViewObserver final : public Velmor::RemoteConfigObserver {
public:
    ViewObserver(::Test::Watched<std::string>& trail, char name) : _trail(trail), _name(name) {}
    void OnRemoteConfigRefreshed(Velmor::IRemoteConfig* config, Velmor::IStringIterator* keys) override {
        EXPECT_EQ(config->GetInt("speed", 0), 3);
        EXPECT_STREQ(keys->Next(), "big");
        _trail.With([this](std::string& trail) { trail += _name; });
    }

private:
    ::Test::Watched<std::string>& _trail;
    char const _name;
};

TEST_F(Configure, ViewsAreToldOverAReleaseAndWithdrawNobodyElse) {
    ::Test::Watched<std::string> trail;
    auto const heard = [&](std::string const& names) {
        _server.Answer(kGood);
        Impl().SetUrl(kUrl);
        return trail.Await([&](std::string const& told) { return told == names; });
    };
    ViewObserver a(trail, 'a');
    ViewObserver b(trail, 'b');
    ViewObserver c(trail, 'c');
    Velmor::RemoteConfig game("Game");
    Velmor::RemoteConfig second("Game");
    game.AddObserver(&a);
    game.AddObserver(&a);
    EXPECT_EQ(_log.Count("Warning", "observer already add before"), 1);
    second.AddObserver(&b);
    {
        Velmor::RemoteConfig third("Game");
        third.AddObserver(&c);
    }
    second.RemoveObserver(&a);
    EXPECT_TRUE(heard("a"));
    ConfigureImpl::ReleaseInstance();
    EXPECT_TRUE(heard("aa")) << "the new configuration tells the old registration";
    game.RemoveObserver(&a);
    EXPECT_TRUE(heard("aab")) << "who waited behind it is next";
    second.RemoveObserver(&b);
    game.Fetch();
    AwaitState(ConfigureImpl::kFailed);
}

}  // namespace
