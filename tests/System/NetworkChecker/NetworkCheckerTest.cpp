#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "Base/Ubrix/IBase.h"
#include "Support/LogCapture.h"
#include "System/NetworkChecker/ANetworkChecker.h"
#include "System/NetworkChecker/TraceRouteMessage.h"
#include "System/Thread/ATargetBase.h"

namespace Ubrix {
namespace {

std::string Told(PingResult const& result) {
    std::string told = std::to_string(result.code) + " " + result.host.c_str();
    for (int const number :
         {result.stat1, result.stat2, result.stat3, result.stat4, result.stat5, result.stat6, result.stat7}) {
        told += " " + std::to_string(number);
    }
    return told;
}

std::string Told(TraceRouteResult const& result) {
    std::string told =
        std::to_string(result.code) + " " + result.host.c_str() + " " + std::to_string(result.hopCount);
    for (int i = 0; i < result.hops.Count(); ++i) {
        auto const* hop = dynamic_cast<TraceRouteMessage const*>(result.hops.ObjectAtIndex(i));
        told +=
            hop == nullptr ? " no hop" : std::string(" ") + hop->first.c_str() + "/" + hop->second.c_str();
    }
    return told + " " + std::to_string(result.last);
}

std::string Told(NSLookupResult const& result) {
    std::string told = std::to_string(result.code) + " " + result.host.c_str();
    for (int i = 0; i < result.addresses.Count(); ++i) {
        told += std::string(" ") + result.addresses.CStringAtIndex(i);
    }
    return told + " " + std::to_string(result.last);
}

std::string g_told;

template <class Result>
void Hear(Result* result) {
    g_told += Told(*result) + ";";
}

// The leak check of the sanitizer build tells whether each line was freed.
char* Line(char const* text) {
    return text != nullptr ? strdup(text) : nullptr;
}

class NetworkChecker : public testing::Test {
protected:
    NetworkChecker() : _checker(ANetworkChecker::GetInstance()) {
        EnableUiUpdate();
        g_told.clear();
    }
    ~NetworkChecker() override { ANetworkChecker::ReleaseInstance(); }
    ANetworkChecker& _checker;
};

TEST_F(NetworkChecker, ReadsTheLinesOnTheHostsUpdate) {
    struct Row {
        char kind;
        char const* line;
        char const* told;
    };
    std::vector<Row> const rows = {
        {'p', "0#h#1#2#3#4#5#6", ""},
        {'p', "0#h#1#2#3#4#5#6#7", "0 h 1 2 3 4 5 6 7;"},
        {'p', "-1##x#-2#+3#4.9# 5#99999999999#7#8", "-1  0 -2 0 4 0 1215752191 7;"},
        {'p', nullptr, ""},
        {'t', "", ""},
        {'t', "0#h", ""},
        {'t', "0#h#2", "0 h 2 2;"},
        {'t', "0#h#5#a#b#c#d#9", "0 h 5 a/b c/d 9;"},
        {'t', "0#h#1#a#b#c#d#9", "0 h 1 a/b 9;"},
        {'t', "0#h#5#a#7", "0 h 5 a/7 7;"},
        {'t', "0#h#5#a#b#c", "0 h 5 a/b 0;"},
        {'t', "0#h#-5#a#b#9", "0 h -5 9;"},
        {'t', nullptr, ""},
        {'n', "0#h", ""},
        {'n', "0#h#3", "0 h 3;"},
        {'n', "0#h#1.2.3.4#3", "0 h 1.2.3.4 3;"},
        {'n', "0#h###", "0 h   0;"},
        {'n', nullptr, ""},
    };
    for (Row const& row : rows) {
        g_told.clear();
        if (row.kind == 'p') {
            _checker.NotifyPingFinish(Line(row.line), Hear<PingResult>);
        } else if (row.kind == 't') {
            _checker.NotifyTraceRouteFinish(Line(row.line), Hear<TraceRouteResult>);
        } else {
            _checker.NotifyNSLookupFinish(Line(row.line), Hear<NSLookupResult>);
        }
        EXPECT_EQ(g_told, "");
        RunHostUpdateSelectors();
        EXPECT_EQ(g_told, row.told) << row.kind << " " << row.line;
    }
}

TEST_F(NetworkChecker, WithoutACallbackOrAfterTheReleaseNothingIsTold) {
    ::Test::LogCapture const log;
    _checker.NotifyPingFinish(Line("0#h#1#2#3#4#5#6#7"), nullptr);
    _checker.NotifyTraceRouteFinish(nullptr, nullptr);
    _checker.NotifyNSLookupFinish(Line(""), nullptr);
    for (char const* message :
         {"| pingCallback is null", "| traceRouteCallback is null", "| nsLookupCallback is null"}) {
        EXPECT_EQ(log.Count("Error", message), 1) << log.Text();
    }
    INetworkChecker& checker = INetworkChecker::GetInstance();
    EXPECT_EQ(&checker, &_checker);
    checker.Ping(1, 2, 3, 4, 5);
    checker.TraceRoute(1, 2, 3, 4);
    checker.NSLookup(1, 2, 3);
    // The first line's callback releases the checker with the second on its way.
    _checker.NotifyNSLookupFinish(Line("0#h#1"), [](NSLookupResult* result) {
        IBase::RunReleaseCallbacks();
        Hear(result);
    });
    _checker.NotifyNSLookupFinish(Line("0#h#2"), Hear<NSLookupResult>);
    RunHostUpdateSelectors();
    RunHostUpdateSelectors();
    EXPECT_EQ(g_told, "0 h 1;");
}

template <class Result>
void ExpectRoundTrip(Result const& result, std::string const& told) {
    AString encoded;
    result.Encode(encoded);
    Result decoded;
    decoded.Decode(encoded);
    EXPECT_EQ(Told(decoded), told);
    std::unique_ptr<AObject> const clone(decoded.Clone());
    EXPECT_EQ(Told(static_cast<Result const&>(*clone)), told);
}

TEST(NetworkResults, CrossTheWireAndSurviveCutBytes) {
    PingResult ping;
    ping.code = 1, ping.host = "h", ping.stat1 = 2, ping.stat4 = -3, ping.stat7 = 4;
    ExpectRoundTrip(ping, "1 h 2 0 0 -3 0 0 4");
    TraceRouteResult trace;
    TraceRouteMessage hop;
    hop.first = "a", hop.second = "b";
    trace.hopCount = 3, trace.last = 5;
    trace.hops.Add(hop);
    ExpectRoundTrip(trace, "0  3 a/b 5");
    NSLookupResult look;
    look.code = 7, look.host = "h", look.last = 8;
    look.addresses.Add("x");
    look.addresses.Add("yz");
    ExpectRoundTrip(look, "7 h x yz 8");

    AString whole;
    look.Encode(whole);
    std::string const head("\0\0\0\7\0\0\0\1h", 9);
    ASSERT_EQ(std::string(whole.data(), 9), head);
    // Where the bytes end, or what number of addresses they claim, and what comes of a result that holds
    // "old".
    std::vector<std::pair<std::string, std::string>> const rows = {
        {head, "7 h old 1"},
        {head + std::string("\0\0\0", 3), "7 h old 1"},
        {head + std::string("\0\0\0\2", 4), "7 h old 1"},
        {head + std::string("\x7F\xFF\xFF\xFF\0\0\0\1x", 9), "7 h x 1"},
        {head + std::string("\xFF\xFF\xFF\xFF\0\0\0\2", 8), "7 h 2"},
        {head + std::string("\0\0\0\0\0\0\0\2", 8), "7 h 2"},
    };
    for (auto const& [bytes, told] : rows) {
        NSLookupResult result;
        result.addresses.Add("old");
        result.last = 1;
        EXPECT_TRUE(result.Decode(bytes.data(), static_cast<int>(bytes.size())));
        EXPECT_EQ(Told(result), told);
    }
}

}  // namespace
}  // namespace Ubrix
