#include <VelmorCore/Http.h>
#include <VelmorCore/UploadTask.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "Platform/Event.h"
#include "Platform/Thread.h"
#include "Support/LogCapture.h"
#include "Support/OnThreads.h"
#include "Support/ScriptedTransport.h"
#include "System/WWW/OutcomeListener.h"
#include "System/WWW/Task/DataTaskImpl.h"
#include "System/WWW/Task/DownloadFileTaskImpl.h"

namespace {

using Ubrix::DataTaskImpl;
using Ubrix::WWW;
using Task = Ubrix::DataTask;

char const* const kUrl = "https://a.example/x";
char const* const kBusy = "DataTask is Requesting";

class DataTask : public testing::Test {
protected:
    DataTask() : _server(::Test::ScriptedTransport::Install()), _task(WWW::Request(kUrl)) {
        _task->SetListener(&_listener);
    }
    ~DataTask() override {
        WWW::Destroy(_task);
        EXPECT_TRUE(_server.AwaitQuiet());
    }
    // The next outcome. Setting a listener waits for the end of the call, and then the task is idle.
    std::string Next() {
        std::string outcome = _listener.Await(++_taken);
        _task->SetListener(&_listener);
        return outcome;
    }
    void StartHeld() {
        _server.Hold("held");
        _task->Get();
        ASSERT_TRUE(_server.AwaitRequests(1));
    }

    ::Test::OutcomeListener _listener;
    ::Test::ScriptedTransport& _server;
    Task* _task;
    ::Test::LogCapture _log;

private:
    std::size_t _taken = 0;
};

TEST_F(DataTask, TheFactoryTakesNullAndTheRegistryKnowsWhoLives) {
    EXPECT_EQ(WWW::Request(nullptr), nullptr);
    WWW::Destroy(static_cast<Task*>(nullptr));
    Ubrix::WWWTaskBase* const base = static_cast<DataTaskImpl*>(_task);
    EXPECT_FALSE(Ubrix::WWWTaskBase::IsObjectRelease(base));
    _task->SetUrl(nullptr);
    EXPECT_STREQ(_task->GetUrl(), kUrl);
    WWW::Destroy(_task);
    _task = nullptr;
    EXPECT_TRUE(_log.Has("Info", "~DataTaskImpl"));
    EXPECT_TRUE(Ubrix::WWWTaskBase::IsObjectRelease(base));
}

TEST_F(DataTask, DownloadsAndUploadsKeepWhatTheyAreGivenAndSendNothing) {
    EXPECT_EQ(WWW::DownloadFile(nullptr, "path"), nullptr);
    EXPECT_EQ(WWW::DownloadFile(kUrl, nullptr), nullptr);
    Ubrix::DownloadFileTask* const task = WWW::DownloadFile(kUrl, "file\xB9");
    auto* const impl = static_cast<Ubrix::DownloadFileTaskImpl*>(task);
    // Only the address of a listener is looked at.
    task->SetListener(reinterpret_cast<Ubrix::DownloadFileTask::Listener*>(impl));
    EXPECT_NE(impl->GetListener(), nullptr);
    task->Start();
    EXPECT_STREQ(task->GetFilePath(), "file\xB9");
    EXPECT_STREQ(task->GetUrl(), kUrl);
    task->RemoveListener(nullptr);
    EXPECT_EQ(impl->GetListener(), nullptr);
    WWW::Destroy(task);

    std::unique_ptr<OzkCUploadTask> const upload(WWW::GetOzkUploadTask());
    upload->Upload("id", "path", 1, kUrl);
    EXPECT_STREQ(upload->GetUploadId(), "id");
    EXPECT_STREQ(upload->GetFilePath(), "path");
    EXPECT_TRUE(_server.Seen().empty());
}

TEST_F(DataTask, WhatGoesOutIsWhatWasSet) {
    _task->SetUrl("http://name@\xD6\xD0.example:8080/a b?\xB9\xFA#z");
    char const* const headers[][2] = {{"b", "first"}, {"c", ""},      {"b", "\xD6\xD0"},
                                      {"A", "1"},     {"a", nullptr}, {nullptr, "a"}};
    for (auto const& header : headers) {
        _task->SetHeader(header[0], header[1]);
    }
    std::string const head = " \xE4\xB8\xAD.example:443/a%20b?%E5%9B%BD\nA:1\nb:\xE4\xB8\xAD\nc:\n";
    std::string const body("x\0y", 3);
    _server.Answer("", 204);
    _task->Get();
    EXPECT_EQ(Next(), "0 204 ");
    EXPECT_EQ(_server.Latest(), "GET" + head);
    _task->Post(body.data(), body.size());
    Next();
    EXPECT_EQ(_server.Latest(), "POST" + head + body);
    _task->Post(nullptr, 3);
    EXPECT_TRUE(_log.Has("Info", "DataTaskImpl::Post param invalid!"));
    _task->Post("", 0);
    Next();
    EXPECT_EQ(_server.Latest(), "GET" + head);
}

TEST_F(DataTask, FailuresBecomeCodesAndLogLines) {
    std::map<int, int> const codes = {{12002, 2}, {12007, 3}, {12005, 4}, {12029, 5}, {12030, 1}, {7, 1}};
    for (auto const& [error, code] : codes) {
        _server.Fail(error);
        _task->Get();
        EXPECT_EQ(Next(), std::to_string(code) + " 0 null") << error;
        EXPECT_TRUE(_log.Has("Info", "HttpSendRequest failed " + std::to_string(error) + "\n"));
    }
    _task->SetUrl("no url");
    _task->Get();
    EXPECT_EQ(Next(), "4 0 null");
    EXPECT_TRUE(_log.Has("Info", "Error:InternetCrackUrl failed!\n"));
}

TEST_F(DataTask, HeadersCannotSmuggle) {
    char const* const rows[][2] = {{"a", "1\r\nb:2"}, {"a", "1\n"}, {"a", "\x7F"}, {"", "1"},
                                   {"a b", "1"},      {"a:b", "1"}, {"a\r", "1"},  {"\xD6\xD0", "1"}};
    for (auto const& row : rows) {
        WWW::Destroy(_task);
        _task = WWW::Request(kUrl);
        _task->SetListener(&_listener);
        _task->SetHeader(row[0], row[1]);
        _task->Get();
        EXPECT_EQ(Next(), "1 0 null") << row[0];
    }
    EXPECT_EQ(_log.Count("Info", "HttpAddRequestHeaders failed"), static_cast<int>(std::size(rows)));
    EXPECT_TRUE(_server.Seen().empty());
}

TEST_F(DataTask, OneRequestAtATimeAndTheTransportStays) {
    StartHeld();
    EXPECT_FALSE(Ubrix::SetHttpTransport(nullptr));
    _task->Get();
    _task->Post("x", 1);
    EXPECT_FALSE(DataTaskImpl::TryGet(_task));
    EXPECT_EQ(_log.Count("Info", kBusy), 3);
    _listener.inside = [](Task* task) { task->Get(); };
    _server.Release();
    EXPECT_EQ(Next(), "0 200 held");
    EXPECT_EQ(_log.Count("Info", kBusy), 4);
    EXPECT_EQ(_server.Seen().size(), 1U);
    EXPECT_EQ(_listener.Count(), 1U);
}

TEST_F(DataTask, WorkBehindTheListenerFindsTheTaskIdle) {
    _server.Answer("one");
    _server.Answer("two");
    bool started = false;
    _listener.inside = [&](Task* task) {
        _listener.inside = nullptr;
        Ubrix::DataTaskState::RunOnceIdle([&started, task] { started = DataTaskImpl::TryGet(task); });
    };
    _task->Get();
    EXPECT_EQ(_listener.Await(2), "0 200 two");
    _task->RemoveListener(nullptr);
    EXPECT_TRUE(started);
}

TEST_F(DataTask, CancelSilencesAndFreesTheTaskAtOnce) {
    StartHeld();
    _task->Cancel();
    _server.Answer("next");
    EXPECT_TRUE(DataTaskImpl::TryGet(_task));
    EXPECT_EQ(_listener.Await(), "0 200 next");
    EXPECT_TRUE(_server.AwaitQuiet());
    EXPECT_EQ(_listener.Count(), 1U);
}

TEST_F(DataTask, ItMayBeCancelledOrDestroyedByItsListener) {
    _listener.inside = [](Task* task) {
        task->Cancel();
        task->Get();
    };
    _task->Get();
    Next();
    EXPECT_EQ(_log.Count("Info", kBusy), 1);
    _listener.inside = [this](Task* task) {
        for (bool const stands : {true, false}) {
            Ubrix::DataTaskState::RunOnceIdle([] { ADD_FAILURE() << "ran behind the task's end"; });
            if (stands) {
                WWW::Destroy(task);
            }
        }
        _task = nullptr;
    };
    _task->Get();
    _listener.Await(2);
}

TEST_F(DataTask, ARemovalWaitsForARunningListener) {
    Ubrix::Platform::Event entered;
    _listener.inside = [&entered](Task*) {
        entered.Set();
        // Long enough that a removal that doesn't wait is seen.
        Ubrix::Platform::SleepFor(50);
    };
    _task->Get();
    ASSERT_TRUE(entered.WaitFor(10000));
    _task->RemoveListener(&_listener);
    EXPECT_EQ(_listener.Count(), 1U);
}

TEST_F(DataTask, StartsCancelsAndEndsMayMeet) {
    for (int round = 0; round < 50; ++round) {
        _server.Answer("");
        Task* const task = WWW::Request(kUrl);
        ::Test::OutcomeListener listener;
        task->SetListener(&listener);
        ::Test::OnThreads(2, [task](int) { task->Get(); });
        ::Test::OnThreads(2,
                          [task](int role) { role == 0 ? task->Cancel() : task->RemoveListener(nullptr); });
        WWW::Destroy(task);
        EXPECT_LE(listener.Count(), 2U);
    }
}

}  // namespace
