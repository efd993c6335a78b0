#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "Base/Ubrix/IBase.h"
#include "Support/LogCapture.h"
#include "System/NetworkChecker/ANetworkChecker.h"
#include "System/NetworkChecker/TraceRouteMessage.h"
#include "System/Thread/ATargetBase.h"

namespace Ubrix {
namespace {

template <class Result>
std::ostringstream Begin(Result const& result) {
    std::ostringstream told;
    told << result.code << " " << result.host.c_str();
    return told;
}

std::string Told(PingResult const& r) {
    std::ostringstream told = Begin(r);
    told << " " << r.stat1 << " " << r.stat2 << " " << r.stat3 << " " << r.stat4 << " " << r.stat5 << " "
         << r.stat6 << " " << r.stat7;
    return told.str();
}

std::string Told(TraceRouteResult const& result) {
    std::ostringstream told = Begin(result);
    told << " " << result.hopCount;
    for (int i = 0; i < result.hops.Count(); ++i) {
        auto const& hop = dynamic_cast<TraceRouteMessage const&>(*result.hops.ObjectAtIndex(i));
        told << " " << hop.first.c_str() << "/" << hop.second.c_str();
    }
    told << " " << result.last;
    return told.str();
}

std::string Told(NSLookupResult const& result) {
    std::ostringstream told = Begin(result);
    for (int i = 0; i < result.addresses.Count(); ++i) {
        told << " " << result.addresses.CStringAtIndex(i);
    }
    told << " " << result.last;
    return told.str();
}

std::string g_told;

// What comes of the result behind the wire.
template <class Result>
void Hear(Result* result) {
    AString encoded;
    result->Encode(encoded);
    Result decoded;
    decoded.Decode(encoded);
    std::unique_ptr<AObject> const clone(decoded.Clone());
    g_told += Told(static_cast<Result const&>(*clone)) + ";";
}

// The leak check of the sanitizer build tells whether each line was freed.
char* Line(char const* text) {
    return text != nullptr ? strdup(text) : nullptr;
}

TEST(NetworkChecker, ReadsTheLinesOnTheHostsUpdate) {
    EnableUiUpdate();
    ANetworkChecker& checker = ANetworkChecker::GetInstance();
    std::vector<std::tuple<char, char const*, char const*>> const rows = {
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
    for (auto const& [kind, line, told] : rows) {
        g_told.clear();
        if (kind == 'p') {
            checker.NotifyPingFinish(Line(line), Hear<PingResult>);
        } else if (kind == 't') {
            checker.NotifyTraceRouteFinish(Line(line), Hear<TraceRouteResult>);
        } else {
            checker.NotifyNSLookupFinish(Line(line), Hear<NSLookupResult>);
        }
        EXPECT_EQ(g_told, "");
        RunHostUpdateSelectors();
        EXPECT_EQ(g_told, told) << kind << " " << line;
    }
}

TEST(NetworkChecker, WithoutACallbackOrAfterTheReleaseNothingIsTold) {
    EnableUiUpdate();
    ANetworkChecker& checker = ANetworkChecker::GetInstance();
    ::Test::LogCapture const log;
    checker.NotifyPingFinish(Line("0#h#1#2#3#4#5#6#7"), nullptr);
    checker.NotifyTraceRouteFinish(nullptr, nullptr);
    checker.NotifyNSLookupFinish(Line(""), nullptr);
    for (char const* name : {"ping", "traceRoute", "nsLookup"}) {
        EXPECT_EQ(log.Count("Error", std::string("| ") + name + "Callback is null"), 1);
    }
    g_told.clear();
    INetworkChecker::GetInstance().Ping(1, 2, 3, 4, 5);
    // The first line's callback releases the checker with the second on its way.
    checker.NotifyNSLookupFinish(Line("0#h#1"), [](NSLookupResult* result) {
        IBase::RunReleaseCallbacks();
        Hear(result);
    });
    checker.NotifyNSLookupFinish(Line("0#h#2"), Hear<NSLookupResult>);
    RunHostUpdateSelectors();
    RunHostUpdateSelectors();
    EXPECT_EQ(g_told, "0 h 1;");
}

TEST(NetworkResults, SurviveCutBytes) {
    std::string const head("\0\0\0\7\0\0\0\1h", 9);
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
