#include <VelmorCore/Http.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <thread>

#include "Platform/Event.h"
#include "Platform/Thread.h"
#include "Support/LogCapture.h"
#include "Support/ScriptedTransport.h"
#include "System/WWW/OutcomeListener.h"
#include "System/WWW/Task/DataTaskExchange.h"
#include "System/WWW/Task/DataTaskImpl.h"
#include "System/WWW/Task/UrlResponseImpl.h"

namespace {

using ::Test::Outcome;
using Ubrix::DataTask;
using Ubrix::DataTaskImpl;
using Ubrix::WWW;

char const* const kUrl = "https://a.example/x";
char const* const kBusy = "DataTask is Requesting";

class DataTaskTest : public testing::Test {
protected:
    DataTaskTest() : _server(::Test::ScriptedTransport::Install()), _task(WWW::Request(kUrl)) {
        _task->SetListener(&_listener);
    }
    ~DataTaskTest() override {
        WWW::Destroy(_task);
        EXPECT_TRUE(_server.AwaitQuiet());
    }
    // Starts a request that the server holds, and waits until it is there.
    void StartHeld() {
        _server.Hold("held");
        std::size_t const before = _server.Seen().size();
        _task->Get();
        ASSERT_TRUE(_server.AwaitRequests(before + 1));
    }
    // An outcome is told shortly before the task is idle.
    void AwaitIdle() const {
        auto const* const task = static_cast<DataTaskImpl const*>(_task);
        auto const limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (task->IsRequesting() && std::chrono::steady_clock::now() < limit) {
            std::this_thread::yield();
        }
        ASSERT_FALSE(task->IsRequesting());
    }

    ::Test::OutcomeListener _listener;
    ::Test::ScriptedTransport& _server;
    DataTask* _task;
    ::Test::LogCapture _log;
};

TEST_F(DataTaskTest, TheFactoryTakesNullAndTheRegistryKnowsWhoLives) {
    EXPECT_EQ(WWW::Request(nullptr), nullptr);
    WWW::Destroy(static_cast<DataTask*>(nullptr));
    DataTask* const task = WWW::Request("a");
    Ubrix::WWWTaskBase* const base = static_cast<DataTaskImpl*>(task);
    EXPECT_FALSE(Ubrix::WWWTaskBase::IsObjectRelease(base));
    task->SetUrl(nullptr);
    EXPECT_STREQ(task->GetUrl(), "a");
    WWW::Destroy(task);
    EXPECT_TRUE(_log.Has("Info", "~DataTaskImpl"));
    EXPECT_TRUE(Ubrix::WWWTaskBase::IsObjectRelease(base));
}

TEST_F(DataTaskTest, WhatGoesOutIsWhatWasSet) {
    _task->SetUrl("http://name@\xD6\xD0.example:8080/a b?\xB9\xFA#z");
    _task->SetHeader("b", "first");
    _task->SetHeader("c", "");
    _task->SetHeader("b", "\xD6\xD0");
    _task->SetHeader("A", "1");
    _task->SetHeader("a", nullptr);
    _task->SetHeader(nullptr, "a");
    std::string const head = " \xE4\xB8\xAD.example:443/a%20b?%E5%9B%BD\nA:1\nb:\xE4\xB8\xAD\nc:\n";
    std::string const body("x\0y", 3);
    for (int i = 0; i < 3; ++i) {
        _server.Answer("", 204);
    }
    _task->Get();
    EXPECT_EQ(_listener.Await(1), (Outcome{0, 204, true, ""}));
    EXPECT_EQ(_server.Latest(), "GET" + head);
    AwaitIdle();
    _task->Post(body.data(), body.size());
    _listener.Await(2);
    EXPECT_EQ(_server.Latest(), "POST" + head + body);
    AwaitIdle();
    _task->Post(nullptr, 3);
    EXPECT_TRUE(_log.Has("Info", "DataTaskImpl::Post param invalid!"));
    _task->Post("", 0);
    _listener.Await(3);
    EXPECT_EQ(_server.Latest(), "GET" + head);
}

TEST_F(DataTaskTest, FailuresBecomeCodesAndLogLines) {
    std::map<int, int> const codes = {{12002, 2}, {12007, 3}, {12005, 4}, {12029, 5}, {12030, 1}, {7, 1}};
    std::size_t count = 0;
    for (auto const& row : codes) {
        _server.Fail(row.first);
        _task->Get();
        EXPECT_EQ(_listener.Await(++count), (Outcome{row.second, 0, false, ""})) << row.first;
        EXPECT_TRUE(_log.Has("Info", "HttpSendRequest failed " + std::to_string(row.first) + "\n"));
        AwaitIdle();
    }
    _server.Answer("body without a head", 0);
    _task->Get();
    EXPECT_EQ(_listener.Await(++count), (Outcome{1, 0, false, ""}));
    EXPECT_TRUE(_log.Has("Info", "Get head failed\n"));
    AwaitIdle();
    _task->SetUrl("no url");
    _task->Get();
    EXPECT_EQ(_listener.Await(++count), (Outcome{4, 0, false, ""}));
    EXPECT_TRUE(_log.Has("Info", "Error:InternetCrackUrl failed!\n"));
}

TEST_F(DataTaskTest, HeadersCannotSmuggle) {
    char const* const rows[][2] = {{"a", "1\r\nb:2"}, {"a", "1\n"}, {"a", "\x7F"}, {"", "1"},
                                   {"a b", "1"},      {"a:b", "1"}, {"a\r", "1"},  {"\xD6\xD0", "1"}};
    for (auto const& row : rows) {
        ::Test::OutcomeListener listener;
        DataTask* const task = WWW::Request(kUrl);
        task->SetListener(&listener);
        task->SetHeader(row[0], row[1]);
        task->Get();
        EXPECT_EQ(listener.Await().errorCode, 1) << row[0];
        WWW::Destroy(task);
    }
    EXPECT_EQ(_log.Count("Info", "HttpAddRequestHeaders failed"), static_cast<int>(std::size(rows)));
    EXPECT_TRUE(_server.Seen().empty());
}

TEST_F(DataTaskTest, OneRequestAtATimeAndTheTransportStays) {
    StartHeld();
    EXPECT_FALSE(Ubrix::SetHttpTransport(nullptr));
    _task->Get();
    _task->Post("x", 1);
    EXPECT_FALSE(DataTaskImpl::TryGet(_task));
    EXPECT_EQ(_log.Count("Info", kBusy), 3);
    _listener.inside = [](DataTask* task) { task->Get(); };
    _server.Release();
    EXPECT_EQ(_listener.Await(), (Outcome{0, 200, true, "held"}));
    AwaitIdle();
    EXPECT_EQ(_log.Count("Info", kBusy), 4);
    EXPECT_EQ(_server.Seen().size(), 1U);
    EXPECT_EQ(_listener.Count(), 1U);
}

TEST_F(DataTaskTest, WorkBehindTheListenerFindsTheTaskIdle) {
    _server.Answer("one");
    _server.Answer("two");
    bool started = false;
    _listener.inside = [&](DataTask* task) {
        _listener.inside = nullptr;
        DataTaskImpl::RunOnceIdle(task, [&started, task] { started = DataTaskImpl::TryGet(task); });
    };
    _task->Get();
    EXPECT_EQ(_listener.Await(2).body, "two");
    _task->RemoveListener(nullptr);
    EXPECT_TRUE(started);
}

TEST_F(DataTaskTest, WithoutAListenerItBecomesIdleInSilence) {
    _task->RemoveListener(nullptr);
    _server.Answer("");
    _task->Get();
    AwaitIdle();
    EXPECT_EQ(_listener.Count(), 0U);
}

TEST_F(DataTaskTest, CancelSilencesAndFreesTheTaskAtOnce) {
    StartHeld();
    _task->Cancel();
    EXPECT_FALSE(static_cast<DataTaskImpl*>(_task)->IsRequesting());
    _server.Answer("next");
    _task->Get();
    EXPECT_EQ(_listener.Await().body, "next");
    EXPECT_TRUE(_server.AwaitQuiet());
    EXPECT_EQ(_listener.Count(), 1U);
}

TEST_F(DataTaskTest, ItMayBeCancelledOrDestroyedByItsListener) {
    _server.Answer("");
    _listener.inside = [](DataTask* task) {
        task->Cancel();
        task->Get();
    };
    _task->Get();
    _listener.Await();
    EXPECT_EQ(_log.Count("Info", kBusy), 1);
    AwaitIdle();
    _server.Answer("");
    _listener.inside = [this](DataTask* task) {
        DataTaskImpl::RunOnceIdle(task, [] { ADD_FAILURE() << "ran behind the task's end"; });
        WWW::Destroy(task);
        _task = nullptr;
    };
    _task->Get();
    _listener.Await(2);
}

TEST_F(DataTaskTest, DestructionWaitsForARunningListenerOnly) {
    StartHeld();
    WWW::Destroy(_task);
    EXPECT_TRUE(_server.AwaitQuiet());
    EXPECT_EQ(_listener.Count(), 0U);

    _task = WWW::Request(kUrl);
    ::Test::OutcomeListener inner;
    _task->SetListener(&inner);
    Ubrix::Platform::Event entered;
    inner.inside = [&entered](DataTask*) {
        entered.Set();
        // Long enough that a removal that doesn't wait is seen.
        Ubrix::Platform::SleepFor(50);
    };
    _server.Answer("");
    _task->Get();
    ASSERT_TRUE(entered.WaitFor(10000));
    _task->RemoveListener(&inner);
    EXPECT_EQ(inner.Count(), 1U);
}

TEST_F(DataTaskTest, StartsCancelsAndEndsMayMeet) {
    for (int round = 0; round < 50; ++round) {
        _server.Answer("");
        DataTask* const task = WWW::Request(kUrl);
        ::Test::OutcomeListener listener;
        task->SetListener(&listener);
        std::thread starter([task] { task->Get(); });
        task->Get();
        starter.join();
        std::thread canceller([task] { task->Cancel(); });
        task->RemoveListener(nullptr);
        canceller.join();
        WWW::Destroy(task);
        EXPECT_LE(listener.Count(), 2U);
    }
}

TEST(DataTaskExchange, TakesBodiesUpToTheLimit) {
    Ubrix::DataTaskState state(nullptr, nullptr);
    Ubrix::DataTaskExchange exchange(state, state.Begin());
    std::string const piece(Ubrix::DataTaskExchange::kBodyLimit - 1, 'x');
    EXPECT_TRUE(exchange.AppendBody(piece.data(), piece.size()));
    EXPECT_TRUE(exchange.AppendBody("y", 1));
    EXPECT_FALSE(exchange.AppendBody("z", 1));
    EXPECT_EQ(exchange.Body().size(), Ubrix::DataTaskExchange::kBodyLimit);
    EXPECT_EQ(exchange.Body().back(), 'y');
}

TEST(UrlResponse, StartsEmptyAndKeepsHeaders) {
    Ubrix::UrlResponseImpl response;
    EXPECT_STREQ(response.GetVersion(), "HTTP/1.1");
    EXPECT_EQ(response.GetStatusCode(), 0);
    EXPECT_EQ(response.GetDataLength(), 0U);
    response.SetHeader("a", "1");
    response.SetHeader("a", "2");
    response.SetHeader("a", nullptr);
    EXPECT_STREQ(response.GetHeader("a"), "2");
    EXPECT_EQ(response.GetHeader("A"), nullptr);
    EXPECT_EQ(response.GetHeader(nullptr), nullptr);
}

}  // namespace
