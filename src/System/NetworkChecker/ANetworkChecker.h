// The frame of the network diagnostics.
#pragma once

#include <VelmorCore/Target.h>

#include "System/NetworkChecker/DiagnosticResults.h"
#include "System/NetworkChecker/INetworkChecker.h"

namespace Ubrix {

// A platform's tool runs a diagnostic and hands its outcome over as a line of text; the checker reads the
// line on the thread that drives the game and tells the callback. On this platform no tool is wired in.
//
// The object is never destroyed; its state between its first use and its release is the lines on their way.
// No lock is held while a callback runs.
class ANetworkChecker : public CTargetBase, public INetworkChecker {
public:
    // Receive a result that is valid during the call only, with no lock held. They may call anything here,
    // also the release of the core.
    using PingCallback = void (*)(PingResult* result);
    using TraceRouteCallback = void (*)(TraceRouteResult* result);
    using NSLookupCallback = void (*)(NSLookupResult* result);

    // As INetworkChecker::GetInstance. Any thread.
    static ANetworkChecker& GetInstance();
    // Lines on their way are dropped. Waits for a callback that runs on another thread.
    static void ReleaseInstance();

    // Do nothing.
    void Ping(Word first, Word second, Word third, Word fourth, Word fifth) override;
    void TraceRoute(Word first, Word second, Word third, Word fourth) override;
    void NSLookup(Word first, Word second, Word third) override;

    // A diagnostic has ended. `text` comes from malloc and is the checker's from here on, whatever happens;
    // the forms of the lines are in ResultLines.h. A null callback is logged. Null, or a line with too few
    // fields, calls nothing. Any thread.
    void NotifyPingFinish(char* text, PingCallback callback);
    void NotifyTraceRouteFinish(char* text, TraceRouteCallback callback);
    void NotifyNSLookupFinish(char* text, NSLookupCallback callback);

private:
    ANetworkChecker();
    ~ANetworkChecker() override = default;

    static ANetworkChecker& TheObject();
    void OnPingFinish(void* text, void* callback);
    void OnTraceRouteFinish(void* text, void* callback);
    void OnNSLookupFinish(void* text, void* callback);
};

}  // namespace Ubrix
