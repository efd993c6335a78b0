#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "Base/Ubrix/IBase.h"
#include "Support/LogCapture.h"
#include "System/NetworkChecker/ANetworkChecker.h"
#include "System/Thread/GameThread.h"

namespace Ubrix {
namespace {

// The wire form, a character a byte: a small number is 000n, -1 is FFFF.
std::string Wire(_tagSarnetBufferBase const& result) {
    AString encoded;
    result.Encode(encoded);
    std::string wire(encoded.data(), static_cast<std::size_t>(encoded.length()));
    for (char& byte : wire) {
        byte = static_cast<char>(byte == '\xFF' ? 'F' : byte < 10 ? byte + '0' : byte);
    }
    return wire;
}

std::string g_told;

// What comes of the result behind the wire and a copy.
template <class Result>
void Hear(Result* result) {
    AString encoded;
    result->Encode(encoded);
    Result decoded;
    decoded.Decode(encoded);
    std::unique_ptr<AObject> const clone(decoded.Clone());
    g_told += Wire(dynamic_cast<Result const&>(*clone)) + ";";
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
        {'p', "8#h#1#2#3#4#5#6#7", "00080001h0001000200030004000500060007;"},
        {'p', "-1##x#-1#+3#4.9# 5#6#7#8", "FFFF00000000FFFF00000004000000060007;"},
        {'t', "0#h", ""},
        {'t', "8#h#2", "00080001h000200000002;"},
        {'t', "8#h#5#a#b#c#d#9", "00080001h000500020001a0001b0001c0001d0009;"},
        {'t', "8#h#1#a#b#c#d#9", "00080001h000100010001a0001b0009;"},
        {'t', "8#h#5#a#7", "00080001h000500010001a000170007;"},
        {'t', "8#h#-1#a#b#9", "00080001hFFFF00000009;"},
        {'t', nullptr, ""},
        {'n', "0#h", ""},
        {'n', "8#h#3", "00080001h00000003;"},
        {'n', "8#h#ab##3", "00080001h00020002ab00000003;"},
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
    // The first line's callback releases the checker with the second on its way.
    checker.NotifyNSLookupFinish(Line("0#h#1"), [](NSLookupResult* result) {
        IBase::RunReleaseCallbacks();
        Hear(result);
    });
    checker.NotifyNSLookupFinish(Line("0#h#2"), Hear<NSLookupResult>);
    RunHostUpdateSelectors();
    EXPECT_EQ(g_told, "00000001h00000001;");
}

TEST(NetworkResults, SurviveCutBytes) {
    std::string const head("\0\0\0\7\0\0\0\1h", 9);
    // Where the bytes end, or what number of addresses they claim, and what comes of a result that holds
    // "old".
    std::vector<std::pair<std::string, std::string>> const rows = {
        {"", "00010003old0001"},
        {std::string("\0\0\0\2", 4), "00010003old0001"},
        {std::string("\x7F\xFF\xFF\xFF\0\0\0\1x", 9), "00010001x0001"},
        {std::string("\xFF\xFF\xFF\xFF\0\0\0\2", 8), "00000002"},
    };
    for (auto const& [bytes, told] : rows) {
        NSLookupResult result;
        result.addresses.Add("old");
        result.last = 1;
        EXPECT_TRUE(result.Decode((head + bytes).data(), static_cast<int>((head + bytes).size())));
        EXPECT_EQ(Wire(result), "00070001h" + told);
    }
}

}  // namespace
}  // namespace Ubrix
