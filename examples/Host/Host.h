// A game without a picture: it does with the library what a game does, and says whether that worked.
#pragma once

#include <VelmorCore/RemoteConfig.h>

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "CommandLine.h"
#include "GameLoop.h"
#include "Journal.h"
#include "KeyList.h"
#include "LogTap.h"
#include "Refreshes.h"
#include "UploadTask.h"

namespace Host {

// Belongs to the game's thread. It must live until the process ends or the core is released: the library
// keeps pointers to its observers.
class GameHost {
public:
    GameHost(CommandLine const& line, Journal& journal);

    // The first start of a game: settings come from the server.
    void PlayOnline();
    // A later start: settings come from the cache, and the server doesn't answer.
    void PlayOffline();

private:
    void Introduce();
    void Listen();
    void AskForNews();
    bool Fetch();
    void CollectKeys();
    void AwaitUploads(int count);
    void ReadThroughConfigure();
    void ReadThroughView();
    void ReadThroughFunctions();
    void TakeServersLogLevel();
    void KeepSettings();
    void WaitForTimer();
    void ReceivePostedCall();
    void UsePool();
    void CrossBridge();
    void Release();
    void StartAgain();

    void ReadCache(char const* when);
    void MeetNoServer();

    bool Wait(std::function<bool()> const& done, std::string const& what);

    CommandLine const _line;
    Journal& _journal;
    GameLoop _loop;
    LogTap _log;
    Refreshes _refreshes;
    UploadOutcome _uploads{_journal};
    std::deque<ModuleObserver> _moduleObservers;
    ViewObserver _storeObserver;
    std::unique_ptr<Velmor::RemoteConfig> _store;
    KeyList _keys;
};

}  // namespace Host
