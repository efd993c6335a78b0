#include "System/NetworkChecker/ANetworkChecker.h"

#include <cstdlib>
#include <memory>
#include <set>
#include <utility>

#include "Base/Ubrix/IBase.h"
#include "Platform/Mutex.h"
#include "Storage/Log/LogMacros.h"
#include "System/NetworkChecker/ResultLines.h"
#include "System/Thread/ATargetBase.h"

namespace Ubrix {

using Platform::ScopedLock;

namespace {

struct FreeText {
    void operator()(char* text) const { std::free(text); }
};
using HeapText = std::unique_ptr<char, FreeText>;

// The mutex takes the one of the release list inside itself. Never destroyed: tools may report while the
// process exits.
struct CheckerHolder {
    Platform::RecursiveMutex mutex;
    ANetworkChecker* instance VC_GUARDED_BY(mutex) = nullptr;
    // Lines that were posted and not yet read.
    std::set<char*> onTheirWay VC_GUARDED_BY(mutex);
};

CheckerHolder& Holder() {
    static CheckerHolder& holder = *new CheckerHolder;
    return holder;
}

// What a selector carries of the line, which waits in the holder until it is taken: a release frees it there.
void* KeepOnItsWay(HeapText text) {
    CheckerHolder& holder = Holder();
    ScopedLock const lock(holder.mutex);
    if (text != nullptr) {
        holder.onTheirWay.insert(text.get());
    }
    return text.release();
}

HeapText TakeFromItsWay(void* text) {
    CheckerHolder& holder = Holder();
    ScopedLock const lock(holder.mutex);
    auto* const kept = static_cast<char*>(text);
    return HeapText(holder.onTheirWay.erase(kept) != 0 ? kept : nullptr);
}

// Nothing of the checker is touched: the callback may release it.
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

ANetworkChecker& ANetworkChecker::GetInstance() {
    CheckerHolder& holder = Holder();
    ScopedLock const lock(holder.mutex);
    if (holder.instance == nullptr) {
        holder.instance = new ANetworkChecker;
    }
    return *holder.instance;
}

void ANetworkChecker::ReleaseInstance() {
    CheckerHolder& holder = Holder();
    ANetworkChecker* released = nullptr;
    // The lines go with their checker: those of the next one are none of this release's business.
    std::set<char*> dropped;
    {
        ScopedLock const lock(holder.mutex);
        released = std::exchange(holder.instance, nullptr);
        dropped.swap(holder.onTheirWay);
    }
    if (released != nullptr) {
        RemoveSelectorsFromAllQueues(released);
        delete released;
    }
    for (char* const text : dropped) {
        std::free(text);
    }
}

ANetworkChecker::ANetworkChecker() : CTargetBase(false) {
    IBase::AddReleaseCallback(ReleaseInstance);
}

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
