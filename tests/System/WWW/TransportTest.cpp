// The built-in transport against real TLS servers on the loopback address.
#include <VelmorCore/Http.h>
#include <VelmorCore/HttpTransport.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <functional>
#include <memory>

#include "Platform/Event.h"
#include "Platform/HttpTransport.h"
#include "Support/LogCapture.h"
#include "Support/RawTlsServer.h"
#include "Support/ResolverStub.h"
#include "System/WWW/OutcomeListener.h"
#include "System/WWW/Task/DataTaskExchange.h"
#include "System/WWW/Task/TransportChoice.h"

namespace {

using ::Test::Outcome;
using ::Test::RawConnection;
using ::Test::RawTlsServer;
using Ubrix::DataTask;
using Ubrix::WWW;

char const* const kHost = "game.example";
char const* const kUrl = "https://game.example/x";
char const* const kCaFile = "authority.pem";

// Tells when the built-in transport has come back from a request.
class WatchedTransport : public Ubrix::IHttpTransport {
public:
    int Perform(Ubrix::HttpRequest const& request, Ubrix::IHttpExchange& exchange) override {
        int const result = Ubrix::Platform::BuiltInHttpTransport().Perform(request, exchange);
        done.Set();
        return result;
    }
    Ubrix::Platform::Event done;
};

class TransportTest : public testing::Test {
protected:
    TransportTest() : _authority("Test authority") {
        _authority.WriteCertificate(kCaFile);
        Ubrix::TransportChoice::Reopen(nullptr);
        Ubrix::SetHttpCaFile(kCaFile);
    }
    ~TransportTest() override {
        Ubrix::SetHttpCaFile(nullptr);
        Ubrix::SetHttpConnectAddress(nullptr);
        Ubrix::Platform::SetHttpTimeouts({});
    }

    Outcome Fetch(std::string const& url = kUrl, std::string const& body = "") {
        ::Test::OutcomeListener listener;
        DataTask* const task = WWW::Request(url.c_str());
        task->SetListener(&listener);
        task->Post(body.data(), body.size());
        Outcome outcome = listener.Await();
        WWW::Destroy(task);
        return outcome;
    }
    // The outcome of a request to a server that holds this conversation.
    Outcome Converse(RawTlsServer::Conversation const& conversation) {
        RawTlsServer server(_authority.Issue({kHost}), conversation);
        Ubrix::SetHttpConnectAddress(server.Address().c_str());
        return Fetch();
    }
    bool LoggedNumber(int number) const {
        return _log.Has("Info", "HttpSendRequest failed " + std::to_string(number) + "\n");
    }

    Example::CertificateAuthority _authority;
    ::Test::LogCapture _log;
};

RawTlsServer::Conversation Say(std::string const& head, std::string const& body = "") {
    return RawTlsServer::SayAndBreak("HTTP/1.1 " + head + "\r\n\r\n" + body);
}

TEST_F(TransportTest, OnlyAGoodCertificateOfTheNameCounts) {
    Example::CertificateAuthority const stranger("Stranger");
    struct Row {
        Example::ServerIdentity identity;
        int number;
    };
    Row const rows[] = {
        {stranger.Issue({kHost}), Ubrix::HttpErrorCertificateAuthority},
        {_authority.Issue({"other.example"}), Ubrix::HttpErrorCertificateName},
        {_authority.Issue({"127.0.0.1"}), Ubrix::HttpErrorCertificateName},
        {_authority.Issue({kHost}, {-30, -1}), Ubrix::HttpErrorCertificateDate},
        {_authority.Issue({kHost}, {1, 30}), Ubrix::HttpErrorCertificateDate},
        {_authority.Issue({kHost}), 0},
    };
    int logged = 0;
    for (Row const& row : rows) {
        RawTlsServer server(row.identity, Say("200 OK\r\nContent-Length: 2", "ok"));
        Ubrix::SetHttpConnectAddress(server.Address().c_str());
        Outcome const expected = row.number != 0 ? Outcome{1, 0, false, ""} : Outcome{0, 200, true, "ok"};
        EXPECT_EQ(Fetch(), expected) << row.number;
        logged += LoggedNumber(row.number) ? 1 : 0;
    }
    EXPECT_EQ(logged, 5) << _log.Text();
    Ubrix::SetHttpCaFile("no such file");
    EXPECT_EQ(Converse(Say("200 OK")).errorCode, 1);
}

TEST_F(TransportTest, TheHeadIsNothingButWhatWasAskedFor) {
    for (char const* const name : {"https_proxy", "HTTPS_PROXY", "ALL_PROXY"}) {
        setenv(name, ("http://127.0.0.1:" + std::to_string(RawTlsServer::ClosedPort())).c_str(), 1);
    }
    std::string head;
    std::string body;
    RawTlsServer server(_authority.Issue({kHost}), [&](RawConnection& connection) {
        connection.Handshake();
        head = connection.ReadHead();
        body = head[0] == 'P' ? connection.ReadHead() : "";
        connection.Send("HTTP/1.1 404 No\r\nSet-Cookie: a=b\r\nContent-Length: 5\r\n\r\nsorry");
    });
    Ubrix::SetHttpConnectAddress(server.Address().c_str());
    ::Test::OutcomeListener listener;
    std::string const query(100000, 'q');
    DataTask* const task = WWW::Request(("http://game.example:8080/../a b?" + query).c_str());
    task->SetListener(&listener);
    task->SetHeader("X-Empty", "");
    task->SetHeader("A", "1");
    std::string const rest =
        "/../a%20b?" + query + " HTTP/1.1\r\nHost: game.example\r\nUser-Agent: Ubrix\r\nA:1\r\nX-Empty:\r\n";
    task->Get();
    EXPECT_EQ(listener.Await(1), (Outcome{0, 404, true, "sorry"}));
    EXPECT_EQ(head, "GET " + rest + "\r\n");
    WWW::Destroy(task);
    std::string const sent("a\0b\r\n\r\n", 7);
    EXPECT_EQ(Fetch(kUrl, sent).errorCode, 0);
    EXPECT_EQ(head,
              "POST /x HTTP/1.1\r\nHost: game.example\r\nUser-Agent: Ubrix\r\nContent-Length: 7\r\n\r\n");
    EXPECT_EQ(body, sent);
}

TEST_F(TransportTest, AnswersAreReadAsFarAsTheyGo) {
    struct Row {
        char const* what;
        RawTlsServer::Conversation conversation;
        Outcome outcome;
    };
    auto const reset = [](std::string const& said) {
        return [said](RawConnection& connection) {
            connection.Handshake();
            connection.ReadHead();
            connection.Send(said);
            connection.Reset();
        };
    };
    Outcome const failed{1, 0, false, ""};
    Row const rows[] = {
        {"cut", Say("200 OK\r\nContent-Length: 100", "first half"), {0, 200, true, "first half"}},
        {"cut chunk", Say("200 OK\r\nTransfer-Encoding: chunked", "8\r\nabc"), {0, 200, true, "abc"}},
        {"no length", Say("500 No\r\nConnection: close", "to the end"), {0, 500, true, "to the end"}},
        {"interim", Say("100 Go\r\n\r\nHTTP/1.1 200 OK\r\nContent-Length: 2", "ok"), {0, 200, true, "ok"}},
        {"no body", Say("204 None"), {0, 204, true, ""}},
        {"redirect without a place", Say("302 Gone\r\nContent-Length: 1", "x"), {0, 302, true, "x"}},
        {"nothing", RawTlsServer::SayAndBreak(""), failed},
        {"garbage", RawTlsServer::SayAndBreak("SSH-2.0-nothing like it\r\n\r\n"), failed},
        {"half a head", RawTlsServer::SayAndBreak("HTTP/1.1 200 OK\r\nA: b\r\n"), failed},
        {"reset before the head", reset(""), failed},
        {"no TLS", [](RawConnection& connection) { connection.SendPlain("HTTP/1.1 200 OK\r\n\r\n"); },
         failed},
    };
    for (Row const& row : rows) {
        EXPECT_EQ(Converse(row.conversation), row.outcome) << row.what << "\n" << _log.Text();
    }
    EXPECT_EQ(_log.Count("Info", "Get head failed\n"), 3) << _log.Text();
}

TEST_F(TransportTest, ABodyEndsAtTheLimit) {
    std::string const large(Ubrix::DataTaskExchange::kBodyLimit + 1000, 'x');
    Outcome const outcome = Converse(Say("200 OK\r\nContent-Length: " + std::to_string(large.size()), large));
    EXPECT_EQ(outcome.errorCode, 0);
    EXPECT_EQ(outcome.body.size(), Ubrix::DataTaskExchange::kBodyLimit);
}

TEST_F(TransportTest, RedirectsStayOnTlsAndEnd) {
    auto const redirect = [](std::string const& place) { return Say("302 Found\r\nLocation: " + place); };
    EXPECT_EQ(Converse(redirect("http://game.example/x")).errorCode, 1);
    EXPECT_TRUE(LoggedNumber(Ubrix::HttpErrorRedirectLeavesTls));
    EXPECT_EQ(Converse(redirect("/again")).errorCode, 1);
    EXPECT_TRUE(LoggedNumber(Ubrix::HttpErrorRedirectFailed));
    EXPECT_EQ(Converse(redirect("https://other.example/x")).errorCode, 1);
    EXPECT_TRUE(LoggedNumber(Ubrix::HttpErrorCertificateName));
    std::atomic<int> left{10};
    EXPECT_EQ(Converse([&](RawConnection& connection) {
                  bool const isLast = left-- == 0;
                  (isLast ? Say("200 OK", "end") : redirect("https://game.example/y"))(connection);
              }),
              (Outcome{0, 200, true, "end"}));
}

TEST_F(TransportTest, NoServerNoAnswer) {
    Ubrix::SetHttpConnectAddress(("127.0.0.1:" + std::to_string(RawTlsServer::ClosedPort())).c_str());
    EXPECT_EQ(Fetch(), (Outcome{5, 0, false, ""}));
    Ubrix::SetHttpConnectAddress(nullptr);
    // A name of two letters of code page 936.
    EXPECT_EQ(Fetch("https://\xD6\xD0\xB9\xFA.unresolved/"), (Outcome{3, 0, false, ""}));
    EXPECT_EQ(::Test::ResolverStub::LatestName(), "xn--fiqs8s.unresolved");
    for (char const* const bad : {"a", "a:", ":1", "a:0", "a:65536", "a:1x", "::1:443", "a b:1", "[]:1"}) {
        EXPECT_FALSE(Ubrix::SetHttpConnectAddress(bad)) << bad;
    }
    EXPECT_TRUE(Ubrix::SetHttpConnectAddress("[::1]:443"));
}

// Every place at which an exchange can wait for the other side: a time-out ends it, a cancellation ends it,
// and its task's end does.
class TransportPhases : public TransportTest {
protected:
    struct Phase {
        char const* name;
        Outcome afterTimeout;
        std::string url = kUrl;
        std::string body;
        RawTlsServer::Conversation conversation;  // sets _reached, then waits
    };

    std::vector<Phase> Phases() {
        auto const hold = [this](RawConnection& connection) {
            _reached.Set();
            connection.HoldOpen();
        };
        auto const holdAfter = [hold](std::string const& said) {
            return [hold, said](RawConnection& connection) {
                connection.Handshake();
                connection.ReadHead();
                connection.Send(said);
                hold(connection);
            };
        };
        auto const holdUnread = [hold](RawConnection& connection) {
            connection.Handshake();
            hold(connection);
        };
        Outcome const timeout{2, 0, false, ""};
        return {
            {"resolving", timeout, "https://game.stalled/", "", nullptr},
            {"connecting", timeout, kUrl, "", nullptr},
            {"handshake", timeout, kUrl, "", hold},
            {"sending", timeout, kUrl, std::string(std::size_t{32} << 20U, 'x'), holdUnread},
            {"waiting", timeout, kUrl, "", holdAfter("")},
            {"head", timeout, kUrl, "", holdAfter("HTTP/1.1 200 OK\r\nA: b")},
            {"body", {0, 200, true, "some"}, kUrl, "", holdAfter("HTTP/1.1 200 OK\r\n\r\nsome")},
        };
    }

    // A port that takes no more connections: its queue is full and nobody accepts.
    class FullPort {
    public:
        FullPort() : _listener(socket(AF_INET, SOCK_STREAM, 0)) {
            _address.sin_family = AF_INET;
            _address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            auto* const general = reinterpret_cast<sockaddr*>(&_address);
            socklen_t length = sizeof _address;
            EXPECT_EQ(bind(_listener, general, length), 0);
            EXPECT_EQ(listen(_listener, 0), 0);
            EXPECT_EQ(getsockname(_listener, general, &length), 0);
            for (int& client : _clients) {
                client = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
                EXPECT_TRUE(connect(client, general, length) == 0 || errno == EINPROGRESS);
            }
        }
        ~FullPort() {
            for (int const client : _clients) {
                close(client);
            }
            close(_listener);
        }
        FullPort(FullPort const&) = delete;
        FullPort& operator=(FullPort const&) = delete;
        std::string Address() const { return "127.0.0.1:" + std::to_string(ntohs(_address.sin_port)); }

    private:
        int _listener;
        int _clients[4] = {};
        sockaddr_in _address{};
    };

    void RunAll(std::function<void(Phase const&, DataTask*&, ::Test::OutcomeListener&)> const& check) {
        Ubrix::TransportChoice::Reopen(&_transport);
        FullPort const full;
        for (Phase const& phase : Phases()) {
            SCOPED_TRACE(phase.name);
            std::unique_ptr<RawTlsServer> server;
            if (phase.conversation) {
                server = std::make_unique<RawTlsServer>(_authority.Issue({kHost}), phase.conversation);
            }
            bool const isResolving = phase.url != kUrl;
            Ubrix::SetHttpConnectAddress(
                isResolving ? "" : (server != nullptr ? server->Address() : full.Address()).c_str());
            ::Test::OutcomeListener listener;
            DataTask* task = WWW::Request(phase.url.c_str());
            task->SetListener(&listener);
            task->Post(phase.body.data(), phase.body.size());
            EXPECT_TRUE(isResolving ? ::Test::ResolverStub::AwaitStall()
                                    : server == nullptr || _reached.WaitFor(10000));
            check(phase, task, listener);
            EXPECT_TRUE(_transport.done.WaitFor(5000)) << "the transport goes on";
            WWW::Destroy(task);
            ::Test::ResolverStub::Release();
        }
        Ubrix::TransportChoice::Reopen(nullptr);
    }

    Ubrix::Platform::Event _reached;
    WatchedTransport _transport;
};

TEST_F(TransportPhases, SilenceTimesOut) {
    Ubrix::Platform::SetHttpTimeouts({800, 800, 800});
    RunAll([](Phase const& phase, DataTask*, ::Test::OutcomeListener& listener) {
        EXPECT_EQ(listener.Await(), phase.afterTimeout);
    });
    EXPECT_EQ(_log.Count("Info", "HttpSendRequest failed 12002\n"), 6);
}

TEST_F(TransportPhases, CancellationEndsTheExchange) {
    RunAll([](Phase const&, DataTask* task, ::Test::OutcomeListener& listener) {
        task->Cancel();
        EXPECT_EQ(listener.Count(), 0U);
    });
}

TEST_F(TransportPhases, DestructionWaitsForNothing) {
    RunAll([](Phase const&, DataTask*& task, ::Test::OutcomeListener& listener) {
        WWW::Destroy(task);
        task = nullptr;
        EXPECT_EQ(listener.Count(), 0U);
    });
}

}  // namespace
