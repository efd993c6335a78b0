#include <VelmorCore/File.h>
#include <VelmorCore/FileUploader.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <tuple>
#include <utility>

#include "Base/Configure/ConfigureImpl.h"
#include "Base/Configure/UploadPacker.h"
#include "Base/Ubrix/IBase.h"
#include "Readers/Files.h"
#include "Support/LogCapture.h"
#include "Support/ScriptedTransport.h"
#include "Support/SteppedClock.h"
#include "Support/Watched.h"
#include "System/Time/ClockSource.h"

namespace {

namespace fs = std::filesystem;
using ::Test::WriteWholeFile;
using Velmor::ConfigureImpl;

// Keeps what it is told until the test ends the upload.
struct HeldTask final : OzkCUploadTask {
    ~HeldTask() override { latest = nullptr; }
    void Upload(char const* uploadId, char const* filePath, std::int64_t partSize, char const* url) override {
        told += std::string(" ") + uploadId + " " + std::to_string(partSize) + " " + url;
        path = filePath;
    }
    char const* GetUploadId() override { return ""; }
    char const* GetFilePath() override { return path.c_str(); }
    void SetComParams(char const* params) override { told = std::string(params).substr(0, 11); }
    void SetListener(Listener* given) override { listener = given; }

    static OzkCUploadTask* Make(void*) {
        ++made;
        return latest = new HeldTask;
    }
    static inline HeldTask* latest = nullptr;
    static inline int made = 0;

    std::string told, path;
    Listener* listener = nullptr;
};

class FileUploader : public testing::Test {
protected:
    FileUploader() : _server(::Test::ScriptedTransport::Install()) {
        fs::create_directory("logs");
        HeldTask::made = 0;
        Ubrix::SetOzkUploadTaskFactory(HeldTask::Make, nullptr);
    }
    ~FileUploader() override {
        Finish(2);
        Ubrix::SetOzkUploadTaskFactory(nullptr, nullptr);
    }

    // Lets the server hand out `keys` as section "Upload".
    void Fetch(std::string const& keys) {
        _server.Answer(R"({"biz_data":{"rule_id":1,"merged_cfg":{"Upload":{)" + keys + "}}}}");
        ConfigureImpl::Instance()->SetUrl("https://config.velmor.example");
        EXPECT_TRUE(::Test::AwaitTrue(
            [] { return ConfigureImpl::Instance()->CurrentState() == ConfigureImpl::kFinished; }));
        EXPECT_TRUE(_server.AwaitQuiet());
    }
    // Gives the order that was fetched, and waits until it is through.
    void Refresh() {
        int const before = _log.Count("Debug", kDone);
        Velmor::FileUploader::GetInstance()->OnConfigureRefreshed(nullptr);
        EXPECT_TRUE(_log.Await("Debug", kDone, before + 1)) << _log.Text();
    }
    static void Finish(int result) {
        if (HeldTask::latest != nullptr) {
            HeldTask::latest->listener->OnUploadFinished(HeldTask::latest, result);
        }
    }
    static std::string Names(std::string const& archive) {
        std::string const command = "unzip -tq " + archive + " >checked && unzip -Z1 " + archive + " >names";
        EXPECT_EQ(std::system(command.c_str()), 0);
        return ::Test::ReadWholeFile("names");
    }

    static constexpr char kDone[] = "the order is done";
    ::Test::LogCapture _log;
    ::Test::ScriptedTransport& _server;
};

TEST_F(FileUploader, ARefreshPacksWhatIsOrderedAndUploadsIt) {
    WriteWholeFile("logs/a.log", "first");
    WriteWholeFile("logs/B.LOG", "second");
    WriteWholeFile("logs/c.txt", "third");
    WriteWholeFile("Cache/order.zip", "older");
    Velmor::FileUploader::Join();
    Fetch(R"("file_path":"gone|logs|VELMOR_CORE_LOG_DIR and more","file_pattern":"^a|\\.log$|^a",)"
          R"("part_size":4096,"upload_id":"order")");
    ASSERT_TRUE(_log.Await("Info", "|Velmor::FileUploader::OnConfigureRefreshed| _Upload zip file."));
    std::string const archive = std::string(Ubrix::CPath::GetCachePath()) + "/order.zip";
    std::string const names = Names(archive);
    EXPECT_EQ(names.substr(0, 13), "B.LOG\na.log\nV");
    EXPECT_NE(names.find("VelmorCore_20"), std::string::npos);
    EXPECT_TRUE(_log.Has("Error", "search path gone is not exit"));
    EXPECT_TRUE(_log.Has("Warning", "fileName c.txt dismatch filePattern ^a"));
    EXPECT_TRUE(_log.Has("Info", "order.zip already exist! need to delete")) << _log.Text();

    ASSERT_NE(HeldTask::latest, nullptr);
    EXPECT_EQ(HeldTask::latest->path, archive);
    EXPECT_EQ(HeldTask::latest->told, R"({"app_ver": order 4096 https://config.velmor.example)");

    ::Velmor::Configure::GetInstance()->RemoveObserver("Upload");
    Velmor::FileUploader::GetInstance()->OnConfigureRefreshed(nullptr);
    EXPECT_TRUE(_log.Has("Warning", "|Velmor::FileUploader::OnConfigureRefreshed| _isUploading..."));
    EXPECT_EQ(HeldTask::made, 1);
}

TEST_F(FileUploader, RefusesWhatItMayNotDo) {
    WriteWholeFile("logs/a.log", "x");
    WriteWholeFile("logs/\x1b[2J", "x");
    WriteWholeFile("Cache/kept.zip", "older");
    fs::create_directories("Cache/folder.zip");
    std::string const all = R"("file_path":"logs","upload_id":")";
    std::string const refused = "the upload id is no file name, order refused";
    std::string const tooLong = "the order is too long, refused";
    std::tuple<std::string, char const*, std::string> const rows[] = {
        {"", "Error", "search path  is not exit"},
        {all + R"(kept","manual_upload":1)", "Info", "manual upload"},
        {all + R"(kept","file_pattern":"nothing\u001b|(")", "Info", "total match 0 files."},
        {all + "a..\"", "Error", refused},
        {all + "a/b\"", "Error", refused},
        {all + R"(a\\kept")", "Error", refused},
        {all + R"(a\u001b[2J")", "Error", refused},
        {all + R"(a\u007f")", "Error", refused},
        {all + R"(kept","file_pattern":")" + std::string(4096, '|') + "\"", "Error", tooLong},
        {all + R"(kept","file_path":")" + std::string(65537, 'x') + "\"", "Error", tooLong},
        {all + R"(kept","file_pattern":"x|a**")", "Warning", "filePattern a** matches nothing, -2"},
        {all + R"(folder")", "Error", "Create Zip File Failed!"},
        {R"("file_path":"logs/a.log|\u001b","upload_id":"kept")", "Info", "total match 0 files."},
    };
    for (auto const& [keys, level, line] : rows) {
        int const before = _log.Count(level, line);
        Fetch(keys);
        Refresh();
        EXPECT_EQ(_log.Count(level, line), before + 1) << keys << "\n" << _log.Text();
    }
    EXPECT_EQ(HeldTask::made, 0);
    EXPECT_THAT(_log.Text(), testing::Not(testing::HasSubstr("\x1b")));
    EXPECT_EQ(::Test::ReadWholeFile("Cache/kept.zip"), "older");
    Fetch(all + std::string(128, 'i') + R"(\u0000/x")");
    Refresh();
    EXPECT_EQ(HeldTask::made, 1);
}

TEST_F(FileUploader, PacksFilesOfTheDirectoryOnceButNoKeysAndNotTheArchive) {
    WriteWholeFile("logs/f", "content");
    WriteWholeFile("logs/large", "");
    fs::resize_file("logs/large", (256U << 20U) - 6);
    fs::create_symlink("planted", "Cache/links.zip");
    WriteWholeFile("Cache/Store.ini.0.tmp", "keys");
    for (char const* directory : {"logs/sub", "logsX"}) {
        fs::create_directory(directory);
        WriteWholeFile(std::string(directory) + "/g", "elsewhere");
    }
    fs::create_symlink("../logsX/g", "logs/out");
    fs::create_symlink(fs::absolute("logs/sub/g"), "logs/in");
    fs::create_symlink("nowhere", "logs/dangling");
    ASSERT_EQ(mkfifo("logs/pipe", 0600), 0);
    fs::create_directory_symlink("logs", "link to logs");
    Fetch(R"("file_path":"link to logs|link to logs|Cache",)"
          R"("file_pattern":"^[df]|^in$|large|links|^out|pipe|sub|store","upload_id":"links")");
    fs::create_hard_link("Cache/Store.ini", "logs/store");
    Refresh();
    EXPECT_EQ(Names("Cache/links.zip"), "f\nin\n");
    EXPECT_FALSE(fs::exists("Cache/planted"));
    for (char const* line :
         {"logs/dangling can't be read", "logs/large is too large for what the archive may still take",
          "/out leads out of its directory", "/pipe can't be read", "link to logs/store holds keys",
          "/sub can't be read", "Cache/Store.ini holds keys", "Cache/Store.ini.0.tmp holds keys",
          "Cache/links.zip is the archive itself"}) {
        EXPECT_EQ(_log.Count("Warning", std::string(line) + ", left out"), 1) << line << "\n" << _log.Text();
    }
    Finish(0);
    Fetch(
        R"("file_path":"link to logs|./logs|/proc/self","file_pattern":"^f$|^pagemap$","upload_id":"once")");
    Refresh();
    EXPECT_EQ(Names("Cache/once.zip"), "f\n");
    EXPECT_TRUE(_log.Has("Warning", "./logs/f is packed already, left out"));
    EXPECT_TRUE(_log.Has("Warning", "/proc/self/pagemap is stored nowhere, left out"));
}

TEST_F(FileUploader, EndsAtItsLimitsAndSaysSoInFewLines) {
    for (int i = 0; i < 1001; ++i) {
        WriteWholeFile("logs/" + std::to_string(i), "");
    }
    Fetch(R"("file_path":"logs","file_pattern":"x|^[0-9]","upload_id":"many")");
    Refresh();
    EXPECT_TRUE(_log.Has("Warning", "its limits, 1000 files of 1000 names, the rest is left out"));
    EXPECT_EQ(_log.Count("Warning", " dismatch filePattern x"), 10);
    EXPECT_TRUE(_log.Has("Warning", "990 more lines like these left out"));
    EXPECT_TRUE(_log.Has("Info", "990 more lines like these left out"));
    Finish(2);
    std::string paths = R"("file_pattern":"x","file_path":")";
    for (int i = 0; i < 100; ++i) {
        paths += "logs|";
    }
    Fetch(paths + '"');
    ::Test::SteppedClock::Install();
    Refresh();
    ::Test::SteppedClock::Remove();
    EXPECT_TRUE(_log.Has("Warning", "its limits, 0 files of 100000 names, the rest is left out"));
}

// Acts once on an order's thread, between the first two names.
struct ActingClock : Ubrix::ClockSource {
    explicit ActingClock(std::function<void()> what) : act(std::move(what)) { Replace(this); }
    ~ActingClock() override { Replace(nullptr); }
    long long MonotonicMilliseconds() const override {
        if (std::this_thread::get_id() != caller && looks++ == 4) {
            act();
        }
        return ClockSource::MonotonicMilliseconds() + late;
    }
    std::function<void()> const act;
    std::thread::id const caller = std::this_thread::get_id();
    mutable std::atomic<int> looks{0};
    std::atomic<long long> late{0};
};

TEST_F(FileUploader, ASearchEndsInTimeAndAReleaseStopsIt) {
    WriteWholeFile("logs/a", "");
    WriteWholeFile("logs/b", "");
    Fetch(R"("file_path":"logs","upload_id":"late")");
    {
        ActingClock clock([&clock] { clock.late = 5001; });
        Refresh();
        EXPECT_EQ(Names("Cache/late.zip"), "a\n") << _log.Text();
    }
    Finish(0);
    ActingClock const clock([] {
        // On the order's own thread: a release that waited for it would never return.
        Ubrix::IBase::RunReleaseCallbacks();
        Velmor::FileUploader::GetInstance()->OnConfigureRefreshed(nullptr);
    });
    Velmor::FileUploader::GetInstance()->OnConfigureRefreshed(nullptr);
    EXPECT_TRUE(_log.Await("Debug", "the order was stopped")) << _log.Text();
    EXPECT_TRUE(_log.Has("Warning", "_isUploading..."));
    EXPECT_FALSE(_log.Has("Info", "fileName b match "));
    EXPECT_EQ(HeldTask::made, 1);
    Velmor::UploadStop const stop{true};
    EXPECT_FALSE(Velmor::UploadPacker("Cache/late.zip", "late", stop).Pack({{"logs", "a"}}));
    EXPECT_FALSE(fs::exists("Cache/late.zip"));
}

TEST_F(FileUploader, StartsFiveUploadsOfAnId) {
    WriteWholeFile("logs/f", "content");
    // The process counts the uploads of each.
    static int ids = 0;
    std::string const id = "often" + std::to_string(++ids);
    std::string const order = R"("file_path":"logs","upload_id":")" + id;
    Fetch(order + "\"");
    Ubrix::SetOzkUploadTaskFactory([](void*) -> OzkCUploadTask* { return nullptr; }, nullptr);
    Refresh();
    EXPECT_TRUE(_log.Has("Error", "|Velmor::FileUploader::_Upload| no upload task to be had"));
    Ubrix::SetOzkUploadTaskFactory(HeldTask::Make, nullptr);
    for (int i = 0; i < 6; ++i) {
        Refresh();
        Finish(i % 3);
        EXPECT_EQ(fs::exists("Cache/" + id + ".zip"), i % 3 == 2) << i;
    }
    EXPECT_EQ(HeldTask::made, 5);
    Fetch(order + "else\"");
    Refresh();
    EXPECT_EQ(HeldTask::made, 6);
    Velmor::FileUploader::GetInstance()->OnUploadFinished(nullptr, 0);
}

}  // namespace
