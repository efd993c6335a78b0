/// @file
/// The device's network: its state, and word of its changes.
#pragma once

#include <VelmorCore/Buffer.h>
#include <VelmorCore/Export.h>
#include <VelmorCore/Object.h>
#include <VelmorCore/Target.h>

namespace Ubrix {

namespace Platform {
class RecursiveMutex;
}

/// The state. The numbers cross to managed code. Observers take everything but 0 for a network that is up.
enum ANetworkState : int {
    /// No network.
    ANetworkStateNotReachable = 0,
    /// A network is there.
    ANetworkStateReachable = 1,
};

/// The state in detail. On the wire: two 4-byte big-endian integers, then four texts, each a 4-byte
/// big-endian length and its bytes without a terminator. One thread at a time.
class VELMORCORE_API _tagADetailNetworkInfo : public _tagSarnetBufferBase {
public:
    /// No network, 0, and four empty texts.
    _tagADetailNetworkInfo();
    /// Copies all fields.
    _tagADetailNetworkInfo(_tagADetailNetworkInfo const& other);
    /// Copies all fields.
    _tagADetailNetworkInfo& operator=(_tagADetailNetworkInfo const& other);
    ~_tagADetailNetworkInfo() override;

    /// Copies all fields into a new record; the caller deletes it.
    AObject* Clone() const override;
    /// Writes the fields, in the order of the wire.
    void WriteTo(CSarnetBufferWriter& writer) const override;
    /// Reads the fields, in the order of the wire.
    void ReadFrom(CSarnetBufferReader& reader) override;

    /// The state.
    ANetworkState state = ANetworkStateNotReachable;
    /// Without a meaning on this platform: 0.
    int detail = 0;
    /// Without a meaning on this platform: empty.
    AString text1;
    /// Without a meaning on this platform: empty.
    AString text2;
    /// Without a meaning on this platform: empty.
    AString text3;
    /// Without a meaning on this platform: empty.
    AString text4;
};

/// Hears of network changes, once it is registered with INetwork::AddObserver.
class VELMORCORE_API CNetworkObserver {
public:
    /// Makes an observer that isn't registered.
    CNetworkObserver();
    /// Ends the registration; if observers are being told on another thread, after that. An observer whose
    /// derived part can be called is to end it before that part goes, with INetwork::RemoveObserver.
    virtual ~CNetworkObserver();
    CNetworkObserver(CNetworkObserver const&) = delete;
    CNetworkObserver& operator=(CNetworkObserver const&) = delete;

    /// Called for each change, on the thread that drives the game. As it stands here, it keeps the state for
    /// PopStateFromChangedList, without limit; an observer that reacts at once overrides it. It may add,
    /// remove and destroy observers, this one included.
    virtual void OnNetworkStateChanged(ANetworkState state);

protected:
    /// Takes the oldest state that was kept; none is kept when memory runs out. False, with `state` as it
    /// was, if there is none. Any thread.
    bool PopStateFromChangedList(ANetworkState& state);
    /// How many states are kept. Any thread.
    int CountOfChangedStates();

private:
    struct VELMORCORE_HIDDEN Body;

    // The states that are kept.
    Body* _body;
    // Guards them.
    Platform::RecursiveMutex* _lock;
};

/// The network, as the library sees it. Every operation may be called on any thread.
class VELMORCORE_API INetwork {
public:
    /// Hears of a change, on the thread that drives the game.
    using Callback = void (*)(ANetworkState state);

    /// The one instance, which stands from the first call to the core's release and again from the next use
    /// on. The object is the same each time and stays valid: it may be kept and used before, during and after
    /// a release.
    static INetwork& GetInstance();

protected:
    virtual ~INetwork();

public:
    /// The present state.
    virtual ANetworkState GetNetworkState() = 0;
    /// The present state in detail.
    virtual _tagADetailNetworkInfo GetDetailNetworkInfo() = 0;
    /// Replaces the callback that hears of each change after the observers; null clears it. While observers
    /// are being told on another thread, it waits.
    virtual void SetCallback(Callback callback) = 0;
    /// Puts an observer at the end of the list, unless it stands there. It isn't told the present state. The
    /// observer stays its owner's. While observers are being told on another thread, the call waits. A
    /// release of the network or of the core forgets it.
    virtual void AddObserver(CNetworkObserver* observer) = 0;
    /// Takes an observer out; an unknown one does nothing. While observers are being told on another thread,
    /// the call waits. From inside a notification, the one that is taken out still hears of the change in
    /// hand; one that is destroyed doesn't, and after a release nobody does.
    virtual void RemoveObserver(CNetworkObserver* observer) = 0;
};

/// The implementation. On this platform no event source is wired in, and the network counts as reachable; a
/// change comes from outside, through OnNetworkStateChanged.
class VELMORCORE_API CNetwork : public CTargetBase, public INetwork {
public:
    /// As INetwork::GetInstance.
    static CNetwork& GetInstance();
    /// Lets go of the observers and the callback; changes that were not yet told are dropped. Waits for
    /// observers that are being told on another thread. From inside a notification it returns at once, and
    /// nobody else hears of the change in hand, neither an observer nor the callback.
    static void ReleaseInstance();

    /// Always reachable.
    ANetworkState GetNetworkState() override;
    /// The present state, and nothing else.
    _tagADetailNetworkInfo GetDetailNetworkInfo() override;
    void SetCallback(Callback callback) override;
    void AddObserver(CNetworkObserver* observer) override;
    void RemoveObserver(CNetworkObserver* observer) override;

    /// Reports a change. Observers and the callback hear of it later, on the thread that drives the game, in
    /// the host's next update. Any thread.
    void OnNetworkStateChanged(ANetworkState state);

private:
    CNetwork();
    ~CNetwork() override = default;

    static CNetwork& TheObject();
    void init();
    void OnNetworkStateChangedOnUIThread(void* cell);
};

}  // namespace Ubrix
