#include "Host.h"

#include <VelmorCore/ConfigFile.h>
#include <VelmorCore/Configure.h>
#include <VelmorCore/Core.h>
#include <VelmorCore/File.h>
#include <VelmorCore/FileUploader.h>
#include <VelmorCore/HttpTransport.h>
#include <VelmorCore/Log.h>
#include <VelmorCore/Network.h>
#include <VelmorCore/Operation.h>
#include <VelmorCore/Timer.h>
#include <VelmorCore/velmorcore.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>

namespace Host {

namespace {

using Velmor::Configure;

constexpr std::chrono::seconds kPatience{30};
constexpr char const* kKeyFile = "fetched-keys.txt";

// The modules of this game; the one with the empty name is what the C functions read. The store has a view of
// its own.
constexpr char const* kStoreModule = "Store";
constexpr char const* kModules[] = {"",      "Audio",     "Chat",   "Friends", "Graphics",
                                    "Guild", "Inventory", "Login",  "Match",   "Network",
                                    "Patch", "Quest",     "Replay", "Report",  "VelmorCore"};
constexpr std::size_t kModuleCount = sizeof kModules / sizeof *kModules + 1;

// What an upload order consists of. Its observer is the library's own.
constexpr char const* kOrderModule = "Upload";
constexpr char const* kOrderKeys[] = {"file_path", "file_pattern", "upload_id", "part_size", "manual_upload"};

std::string Number(long long value) {
    return std::to_string(value);
}

std::string Cached(std::string const& module, std::string const& key) {
    return Configure::GetInstance()->GetString(module.c_str(), key.c_str(), "").c_str();
}

// Tells which thread a network change is heard on.
class NetworkObserver final : public Ubrix::CNetworkObserver {
public:
    explicit NetworkObserver(Journal& journal) : _journal(journal) {
        Ubrix::INetwork::GetInstance().AddObserver(this);
    }
    void OnNetworkStateChanged(Ubrix::ANetworkState state) override {
        _journal.Say("observer: network state " + Number(state));
        _onGameThread = _onGameThread && std::this_thread::get_id() == _gameThread;
        ++_changes;
    }
    int Changes() const { return _changes; }
    bool OnGameThread() const { return _onGameThread; }

private:
    Journal& _journal;
    std::thread::id const _gameThread = std::this_thread::get_id();
    int _changes = 0;
    bool _onGameThread = true;
};

struct TimerCall {
    Journal* journal;
    std::atomic<unsigned> id{0};
};

void OnTimer(unsigned int id, void* userData) {
    auto* const call = static_cast<TimerCall*>(userData);
    call->journal->Say("timer " + Number(id) + " fires");
    call->id = id;
}

struct PoolCall {
    Journal* journal;
    std::thread::id thread{};
    bool repeats = true;
    std::atomic<int> runs{0};
};

void OnPool(Ubrix::Operation* operation, void* data) {
    auto* const call = static_cast<PoolCall*>(data);
    call->journal->Say("operation " + Number(static_cast<long long>(operation->SequenceNumber())) + " runs");
    call->thread = std::this_thread::get_id();
    call->repeats = operation->Repeats();
    ++call->runs;
}

std::atomic<int> g_sent{0};

// What a managed class would take from its native twin.
void OnSent(std::int64_t /*objectId*/, std::intptr_t /*first*/, std::intptr_t /*second*/) {
    ++g_sent;
}

}  // namespace

GameHost::GameHost(CommandLine const& line, Journal& journal)
    : _line(line),
      _journal(journal),
      _log(journal),
      _refreshes(journal),
      _storeObserver(kStoreModule, _refreshes) {
    for (char const* const module : kModules) {
        _moduleObservers.emplace_back(module, _refreshes);
    }
    ubrix_target_unity_enable_ui_update();
    Ubrix::SetOzkUploadTaskFactory(UploadTask::Make, &_uploads);
    Ubrix::SetHttpCaFile(_line.caFile.c_str());
    _journal.Check(
        Ubrix::SetHttpConnectAddress(_line.connect.c_str()),
        "transport set: " + (_line.connect.empty() ? std::string("the URL's own address") : _line.connect));
}

void GameHost::PlayOnline() {
    _journal.Begin("The game starts");
    Introduce();
    Listen();
    _journal.Begin("Settings come from " + _line.url);
    if (!Fetch()) {
        Release();
        return;
    }
    CollectKeys();
    AwaitUploads(1);
    ReadThroughConfigure();
    ReadThroughView();
    ReadThroughFunctions();
    _journal.Begin("The server's log level");
    TakeServersLogLevel();
    _journal.Begin("A file of the game's own, a timer, a call posted to the loop");
    KeepSettings();
    WaitForTimer();
    ReceivePostedCall();
    _journal.Begin("The pool, and the bridge to managed code");
    UsePool();
    CrossBridge();
    _journal.Begin("Released, and started again");
    StartAgain();
    Release();
    _journal.Say("result: keys " + Number(static_cast<long long>(_keys.Size())) + ", frames " +
                 Number(_loop.Frames()) + ", log lines heard " + Number(_log.Lines()));
}

void GameHost::PlayOffline() {
    _journal.Begin("The game starts later, without a network");
    _journal.Check(Ubrix::ACheckLogLevel(Ubrix::ALogPriorityDebug),
                   "the server's log level holds from the library's load on");
    Introduce();
    ReadCache("before any request");
    ReadThroughFunctions();
    _journal.Begin("It asks for news, and nobody answers");
    MeetNoServer();
    ReadCache("after the failed request");
    Release();
    _journal.Say("result: keys " + Number(static_cast<long long>(_keys.Size())) + ", frames " +
                 Number(_loop.Frames()) + ", log lines heard " + Number(_log.Lines()));
}

bool GameHost::Wait(std::function<bool()> const& done, std::string const& what) {
    return _journal.Check(_loop.RunUntil(done, kPatience), what);
}

void GameHost::Introduce() {
    _journal.Check(velmorcore_init() == 0,
                   std::string("core made, version ") + velmorcore_getInstance()->GetVersion());
    char device[64] = "";
    bool const known = Ubrix_system_GetUUID(device, sizeof device);
    _journal.Check(known && std::string(device).size() == 36, std::string("device id ") + device);
    _journal.Check(ubrix_network_GetNetworkState() == Ubrix::ANetworkStateReachable,
                   "network state: reachable");
}

void GameHost::Listen() {
    for (ModuleObserver& observer : _moduleObservers) {
        Configure::GetInstance()->AddObserver(observer.Module(), &observer);
    }
    _store = std::make_unique<Velmor::RemoteConfig>(kStoreModule);
    _store->AddObserver(&_storeObserver);
    Velmor::FileUploader::Join();
}

// What a game does at each start. The URL of an earlier start keeps what its cache holds.
void GameHost::AskForNews() {
    _journal.Check(velmorcore_configure_seturl(_line.url.c_str()),
                   "URL set; the fetch runs in the background");
}

bool GameHost::Fetch() {
    _store->SetUserInfo(1001, "player-7");
    AskForNews();
    return Wait([this] { return _refreshes.Modules() == kModuleCount; }, "every module heard of its keys");
}

void GameHost::CollectKeys() {
    bool allThere = true;
    for (auto const& [module, names] : _refreshes.Keys()) {
        for (std::string const& key : names) {
            _keys.Set(module, key, Cached(module, key));
            allThere = allThere && !Cached(module, key).empty();
        }
    }
    for (char const* const key : kOrderKeys) {
        _keys.Set(kOrderModule, key, Cached(kOrderModule, key));
    }
    _journal.Check(allThere && _keys.Size() > 0,
                   Number(static_cast<long long>(_keys.Size())) + " keys have a value");
    _journal.Check(_keys.Save(kKeyFile), std::string("noted in ") + kKeyFile + " for the next start");
}

// Each fetch brings the server's order to send log files. An upload must end before the game does.
void GameHost::AwaitUploads(int count) {
    Wait([this, count] { return _uploads.arrived + _uploads.failed == count; }, "an upload has ended");
    _journal.Check(_uploads.failed == 0, "the server has the log files that it ordered");
}

void GameHost::ReadThroughConfigure() {
    Configure& configure = *Configure::GetInstance();
    int const players = configure.GetInt("Match", "players_per_side", -1);
    _journal.Check(players > 0, "Configure: Match.players_per_side = " + Number(players));
    std::int64_t const end = configure.GetLong("Quest", "event_end", -1);
    _journal.Check(end > 0, "Configure: Quest.event_end = " + Number(end));
    bool const guests = configure.GetBool("Login", "guest_enabled", false);
    _journal.Check(guests, std::string("Configure: Login.guest_enabled = ") + (guests ? "true" : "false"));
    std::string const region = configure.GetString("Match", "region", "").c_str();
    _journal.Check(!region.empty(), "Configure: Match.region = " + region);
    int const absent = configure.GetInt("Match", "no_such_key", 4711);
    _journal.Check(absent == 4711, "Configure: an absent key gives the default");
}

void GameHost::ReadThroughView() {
    int const days = _store->GetInt("refund_days", -1);
    _journal.Check(days > 0, "RemoteConfig: Store.refund_days = " + Number(days));
    char text[128] = "";
    int size = sizeof text;
    bool const fits = _store->GetString("sale_text", text, &size, "");
    _journal.Check(fits && size > 0, std::string("RemoteConfig: Store.sale_text = ") + text);
}

void GameHost::ReadThroughFunctions() {
    int const players = ubrix_remoteconfig_GetInt("players_per_room", -1);
    _journal.Check(players > 0, "C functions: players_per_room = " + Number(players));
    double const rate = ubrix_remoteconfig_GetDouble("drop_rate", -1.0);
    _journal.Check(rate > 0.0, "C functions: drop_rate = " + std::to_string(rate));
    bool const open = ubrix_remoteconfig_GetBool("store_open", false);
    _journal.Check(open, std::string("C functions: store_open = ") + (open ? "true" : "false"));
    char text[128] = "";
    bool const fits = ubrix_remoteconfig_GetString("motd", text, sizeof text, "");
    _journal.Check(fits && *text != '\0', std::string("C functions: motd = ") + text);
}

void GameHost::TakeServersLogLevel() {
    bool const before = Ubrix::ACheckLogLevel(Ubrix::ALogPriorityDebug);
    int const heard = _log.DebugLines();
    _journal.Say(std::string("debug lines are ") + (before ? "on" : "off") +
                 "; the server says LogLevel = " + Cached("VelmorCore", "LogLevel"));
    velmorcore_setLogLevel(Velmor::ALogPriorityInfo);
    VelmorCore_XLog(Velmor::ALogPriorityDebug, __FILE__, __LINE__, __func__, "a debug line of the game");
    _journal.Check(_log.DebugLines() > heard,
                   "asked for Info, the level is the server's: debug lines come through the callback");
}

void GameHost::KeepSettings() {
    VelmorCoreConfigFile* file = VelmorCore_NewConfigFile("HostSettings");
    file->SetCache("Sound", "music", true);
    file->SetCache("Sound", "volume", 85);
    file->SetCache("Player", "name", "player-7");
    file->SetCache("Player", "joined", std::int64_t{1798761600000});
    _journal.Check(file->SaveCacheToFile(), "HostSettings.config written");
    VelmorCore_DeleteConfigFile(&file);

    file = VelmorCore_NewConfigFile("HostSettings");
    char name[32] = "";
    int size = sizeof name;
    bool const same =
        file->GetFromCache("Sound", "music", false) && file->GetFromCache("Sound", "volume", -1) == 85 &&
        file->GetFromCache("Player", "joined", std::int64_t{-1}) == 1798761600000 &&
        file->GetFromCache("Player", "name", name, &size, "") && std::string(name) == "player-7";
    VelmorCore_DeleteConfigFile(&file);
    _journal.Check(same && file == nullptr, "HostSettings.config read back, all four values the same");
}

void GameHost::WaitForTimer() {
    // A call that is under way when the timer is stopped may still end later.
    static TimerCall call{&_journal};
    Ubrix::CTimer timer;
    unsigned const id = timer.StartTimer(200, false, OnTimer, &call);
    Wait([id] { return call.id == id; }, "a timer of 200 ms was heard");
    timer.StopTimer(id);
}

void GameHost::ReceivePostedCall() {
    NetworkObserver observer(_journal);
    std::thread([this] {
        _journal.Say("posts two network changes");
        Ubrix::CNetwork::GetInstance().OnNetworkStateChanged(Ubrix::ANetworkStateNotReachable);
        Ubrix::CNetwork::GetInstance().OnNetworkStateChanged(Ubrix::ANetworkStateReachable);
    }).join();
    _journal.Check(observer.Changes() == 0, "nobody heard of them before the next frame");
    Wait([&observer] { return observer.Changes() == 2; }, "both were heard");
    _journal.Check(observer.OnGameThread(), "and on the game's thread");
}

void GameHost::UsePool() {
    // Static, since an operation that came too late may still run.
    static PoolCall call{&_journal};
    Ubrix::OperationQueue::GetInstance()->AddOperation(OnPool, &call, false);
    bool const ran = Wait([] { return call.runs > 0; }, "an operation ran in the pool");
    _journal.Check(ran && call.thread != std::this_thread::get_id() && !call.repeats && call.runs == 1,
                   "once, and on a thread of the pool");
}

// The library by itself knows no class; a module that is built on it brings them, and only their objects
// send.
void GameHost::CrossBridge() {
    constexpr std::int64_t kTwin = 4711;
    setSarnetSendMessageCallback(OnSent);
    setSarnetSendResultCallback(OnSent);
    _journal.Check(!addPlatformObject(kTwin, "HostTwin"),
                   "bridge: two callbacks set; an object is refused, as no module here brings its class");
    removePlatformObject(kTwin);
    setSarnetSendMessageCallback(nullptr);
    setSarnetSendResultCallback(nullptr);
    _journal.Check(g_sent == 0, "bridge: removed and cleared; nothing was sent, a game itself can't send");
}

void GameHost::Release() {
    _store.reset();
    long long const start = _journal.Milliseconds();
    velmorcore_releaseInstance();
    long long const cost = _journal.Milliseconds() - start;
    _journal.Check(cost < 1000, "core released in " + Number(cost) + " ms");
}

void GameHost::StartAgain() {
    Release();
    _refreshes.Forget();
    _journal.Check(velmorcore_init() == 0, "core made again");
    ReadCache("before any request");
    Listen();
    _store->Fetch();
    Wait([this] { return _refreshes.Heard(kStoreModule); },
         "a fetch of the second core, its URL from the cache");
    AwaitUploads(2);
}

void GameHost::ReadCache(char const* when) {
    KeyList noted;
    bool const readable = noted.Load(kKeyFile);
    std::size_t same = 0;
    for (auto const& [name, value] : noted.Values()) {
        same += Cached(name.first, name.second) == value ? 1 : 0;
    }
    _keys = noted;
    _journal.Check(readable && same > 0 && same == noted.Size(),
                   Number(static_cast<long long>(same)) + " of " +
                       Number(static_cast<long long>(noted.Size())) +
                       " keys read from the enciphered cache, " + when);
}

void GameHost::MeetNoServer() {
    Listen();
    AskForNews();
    Wait([this] { return _log.Heard("httpStatus:0, cost time"); },
         "the request failed, as the library's log says");
    _journal.Check(_refreshes.Modules() == 0, "no module was told anything");
}

}  // namespace Host
