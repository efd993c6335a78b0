#include "System/NetworkChecker/ANetworkChecker.h"

#include <cstdlib>
#include <memory>
#include <set>
#include <utility>

#include "Base/Ubrix/Service.h"
#include "Platform/Immortal.h"
#include "Storage/Log/LogMacros.h"
#include "System/NetworkChecker/ResultLines.h"
#include "System/Thread/GameThread.h"

namespace Ubrix {

namespace {

struct FreeText {
    void operator()(char* text) const { std::free(text); }
};
using HeapText = std::unique_ptr<char, FreeText>;

// Lines that were posted and not yet read. Those that a release finds go with it.
struct LinesOnTheirWay {
    LinesOnTheirWay() = default;
    ~LinesOnTheirWay() {
        for (char* const line : lines) {
            std::free(line);
        }
    }
    LinesOnTheirWay(LinesOnTheirWay const&) = delete;
    LinesOnTheirWay& operator=(LinesOnTheirWay const&) = delete;

    std::set<char*> lines;
};

Service<LinesOnTheirWay>& TheLines() {
    static Platform::Immortal<Service<LinesOnTheirWay>> lines(ANetworkChecker::ReleaseInstance);
    return *lines;
}

// What a selector carries of the line, which waits among the others until it is taken.
void* KeepOnItsWay(HeapText text) {
    if (text != nullptr) {
        TheLines().With([&text](LinesOnTheirWay& onTheirWay) { onTheirWay.lines.insert(text.get()); });
    }
    return text.release();
}

HeapText TakeFromItsWay(void* text) {
    auto* const kept = static_cast<char*>(text);
    return HeapText(TheLines().WithIfMade(static_cast<char*>(nullptr), [kept](LinesOnTheirWay& onTheirWay) {
        return onTheirWay.lines.erase(kept) != 0 ? kept : nullptr;
    }));
}

template <class Result>
void Tell(void* carried, void* callback) {
    HeapText const text = TakeFromItsWay(carried);
    auto* const tell = reinterpret_cast<void (*)(Result*)>(callback);
    AArray fields;
    Result result;
    if (tell != nullptr && AString::Split(&fields, text.get(), "#") && FillFromLine(fields, result)) {
        tell(&result);
    }
}

}  // namespace

INetworkChecker& INetworkChecker::GetInstance() {
    return ANetworkChecker::GetInstance();
}

ANetworkChecker& ANetworkChecker::TheObject() {
    static Platform::Immortal<ANetworkChecker> checker([](void* room) { return new (room) ANetworkChecker; });
    return *checker;
}

ANetworkChecker& ANetworkChecker::GetInstance() {
    TheLines().Share();
    return TheObject();
}

void ANetworkChecker::ReleaseInstance() {
    // First, while what is posted still is of the checker that goes.
    RemoveSelectorsFromAllQueues(&TheObject());
    TheLines().Release();
}

ANetworkChecker::ANetworkChecker() : CTargetBase(false) {}

// Where a platform would start its tool.
void ANetworkChecker::Ping(Word, Word, Word, Word, Word) {}

void ANetworkChecker::TraceRoute(Word, Word, Word, Word) {}

void ANetworkChecker::NSLookup(Word, Word, Word) {}

void ANetworkChecker::NotifyPingFinish(char* text, PingCallback callback) {
    HeapText owned(text);
    if (callback == nullptr) {
        VC_LOG(Error, "Ubrix::ANetworkChecker::NotifyPingFinish", "pingCallback is null");
        return;
    }
    PostSelectorToUiThread(this, &ANetworkChecker::OnPingFinish, KeepOnItsWay(std::move(owned)),
                           reinterpret_cast<void*>(callback));
}

void ANetworkChecker::NotifyTraceRouteFinish(char* text, TraceRouteCallback callback) {
    HeapText owned(text);
    if (callback == nullptr) {
        VC_LOG(Error, "Ubrix::ANetworkChecker::NotifyTraceRouteFinish", "traceRouteCallback is null");
        return;
    }
    PostSelectorToUiThread(this, &ANetworkChecker::OnTraceRouteFinish, KeepOnItsWay(std::move(owned)),
                           reinterpret_cast<void*>(callback));
}

void ANetworkChecker::NotifyNSLookupFinish(char* text, NSLookupCallback callback) {
    HeapText owned(text);
    if (callback == nullptr) {
        VC_LOG(Error, "Ubrix::ANetworkChecker::NotifyNSLookupFinish", "nsLookupCallback is null");
        return;
    }
    PostSelectorToUiThread(this, &ANetworkChecker::OnNSLookupFinish, KeepOnItsWay(std::move(owned)),
                           reinterpret_cast<void*>(callback));
}

void ANetworkChecker::OnPingFinish(void* text, void* callback) {
    Tell<PingResult>(text, callback);
}

void ANetworkChecker::OnTraceRouteFinish(void* text, void* callback) {
    Tell<TraceRouteResult>(text, callback);
}

void ANetworkChecker::OnNSLookupFinish(void* text, void* callback) {
    Tell<NSLookupResult>(text, callback);
}

}  // namespace Ubrix
