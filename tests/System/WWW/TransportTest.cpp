// The built-in transport against real TLS servers on the loopback address.
#include <VelmorCore/Http.h>
#include <VelmorCore/HttpTransport.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Platform/BuiltInTransport.h"
#include "Platform/Event.h"
#include "Support/LogCapture.h"
#include "Support/RawTlsServer.h"
#include "Support/ResolverStub.h"
#include "System/WWW/OutcomeListener.h"
#include "System/WWW/Task/DataTaskExchange.h"
#include "System/WWW/Task/TransportChoice.h"

namespace {

using ::Test::RawConnection;
using ::Test::RawTlsServer;
using Ubrix::DataTask;
using Ubrix::WWW;

char const* const kHost = "game.example";
char const* const kUrl = "https://game.example/x";
char const* const kCaFile = "authority.pem";
char const* const kClosed = "127.0.0.1:9";  // where nobody listens

class Transport : public testing::Test {
protected:
    Transport() : _authority("Test authority") {
        _authority.WriteCertificate(kCaFile);
        Ubrix::TransportChoice::Reopen(nullptr);
        Ubrix::SetHttpCaFile(kCaFile);
    }
    ~Transport() override {
        Ubrix::SetHttpCaFile(nullptr);
        Ubrix::SetHttpConnectAddress(nullptr);
        Ubrix::Platform::SetHttpTimeouts({});
    }

    std::string Fetch(std::string const& url = kUrl, std::string const& body = "",
                      std::map<std::string, std::string> const& headers = {}) {
        ::Test::OutcomeListener listener;
        DataTask* const task = WWW::Request(url.c_str());
        task->SetListener(&listener);
        for (auto const& header : headers) {
            task->SetHeader(header.first.c_str(), header.second.c_str());
        }
        task->Post(body.data(), body.size());
        std::string outcome = listener.Await();
        WWW::Destroy(task);
        return outcome;
    }
    // The outcome of a request to a server that holds this conversation.
    std::string Converse(RawTlsServer::Conversation const& conversation) {
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

TEST_F(Transport, OnlyAGoodCertificateOfTheNameCounts) {
    Example::CertificateAuthority const stranger("Stranger");
    struct {
        Example::ServerIdentity identity;
        int number;
        char const* advice;
    } const rows[] = {
        {stranger.Issue({kHost}), Ubrix::HttpErrorCertificateAuthority,
         "; if not, somebody may be listening in."},
        {_authority.Issue({"other.example"}), Ubrix::HttpErrorCertificateName,
         ", and the server's certificate."},
        {_authority.Issue({"127.0.0.1"}), Ubrix::HttpErrorCertificateName, ", and the server's certificate."},
        {_authority.Issue({kHost}, {-30, -1}), Ubrix::HttpErrorCertificateDate,
         "(certificate has expired): check the device's clock first, then the server's certificate."},
        {_authority.Issue({kHost}, {1, 30}), Ubrix::HttpErrorCertificateDate,
         "(certificate is not yet valid): check the device's clock first, then the server's certificate."},
        {_authority.Issue({kHost}), 0, ""},
    };
    int warnings = 0;
    for (auto const& row : rows) {
        RawTlsServer server(row.identity, Say("200 OK\r\nContent-Length: 2", "ok"));
        Ubrix::SetHttpConnectAddress(server.Address().c_str());
        EXPECT_EQ(Fetch(), row.number != 0 ? "1 0 null" : "0 200 ok") << row.number;
        EXPECT_EQ(LoggedNumber(row.number), row.number != 0) << _log.Text();
        warnings += row.number != 0 ? 1 : 0;
        EXPECT_EQ(_log.Count("Warning", ""), warnings);
        EXPECT_TRUE(_log.Has("Warning", row.advice)) << _log.Text();
    }
    Ubrix::SetHttpCaFile("no\nfile");
    EXPECT_EQ(Converse(Say("200 OK")), "1 0 null");
    EXPECT_TRUE(_log.Has("Warning",
                         "No certificate authority can be read from no\\nfile, the file named with "
                         "SetHttpCaFile: nothing is sent before it is a readable PEM file."));
}

TEST_F(Transport, TheHeadIsNothingButWhatWasAskedFor) {
    std::string head;
    std::string body;
    RawTlsServer server(_authority.Issue({kHost}), [&](RawConnection& connection) {
        connection.Handshake();
        head = connection.ReadHead();
        body = head[0] == 'P' ? connection.ReadHead() : "";
        connection.Send("HTTP/1.1 404 No\r\nSet-Cookie: a=b\r\nContent-Length: 5\r\n\r\nsorry");
    });
    Ubrix::SetHttpConnectAddress(server.Address().c_str());
    std::string const query(100000, 'q');
    std::string const common = " HTTP/1.1\r\nHost: game.example\r\nUser-Agent: Ubrix\r\n";
    EXPECT_EQ(Fetch("http://game.example:8080/../a b?" + query, "", {{"X-Empty", ""}, {"A", "1"}}),
              "0 404 sorry");
    EXPECT_EQ(head, "GET /../a%20b?" + query + common + "A:1\r\nX-Empty:\r\n\r\n");
    std::string const sent("a\0b\r\n\r\n", 7);
    Fetch(kUrl, sent);
    EXPECT_EQ(head, "POST /x" + common + "Content-Length: 7\r\n\r\n");
    EXPECT_EQ(body, sent);
}

TEST_F(Transport, ABodyEndsAtTheLimit) {
    constexpr std::size_t kLimit = Ubrix::DataTaskExchange::kBodyLimit;
    std::string const large(kLimit + 1000, 'x');
    RawTlsServer::Conversation const answer =
        Say("200 OK\r\nContent-Length: " + std::to_string(large.size()), large);
    bool const isCut = Converse(answer) == "0 200 " + large.substr(0, kLimit);
    EXPECT_TRUE(isCut) << "no message that shows the two";
}

TEST_F(Transport, RedirectsStayOnTlsAndEnd) {
    auto const redirect = [](std::string const& place) { return Say("302 Found\r\nLocation: " + place); };
    std::map<std::string, int> const failures = {
        {"http://game.example/x", Ubrix::HttpErrorRedirectLeavesTls},
        {"/again", Ubrix::HttpErrorRedirectFailed},
        {"https://other.example/x", Ubrix::HttpErrorCertificateName},
    };
    for (auto const& row : failures) {
        EXPECT_EQ(Converse(redirect(row.first)), "1 0 null") << row.first;
        EXPECT_TRUE(LoggedNumber(row.second)) << row.first;
    }
    std::map<std::string, bool> const keepHeaders = {{"/y", true},
                                                     {"https://me@GAME.example:443/y", true},
                                                     {"//other.example/y", false},
                                                     {"https://game.example:444/y", false}};
    for (auto const& row : keepHeaders) {
        std::string head;
        RawTlsServer server(_authority.Issue({kHost, "other.example"}), [&](RawConnection& connection) {
            connection.Handshake();
            head = connection.ReadHead();
            bool const isThere = head.find(" /y ") != std::string::npos;
            connection.Send(isThere ? "HTTP/1.1 200 OK\r\n\r\n"
                                    : "HTTP/1.1 307 Go\r\nLocation: " + row.first + "\r\n\r\n");
        });
        Ubrix::SetHttpConnectAddress(server.Address().c_str());
        EXPECT_EQ(Fetch(kUrl, "", {{"X-Secret", "1"}}), "0 200 ") << row.first;
        EXPECT_EQ(head.find("X-Secret:1") != std::string::npos, row.second) << row.first;
        EXPECT_EQ(head.find("Authorization"), std::string::npos) << head;
    }
    std::atomic<int> left{10};
    EXPECT_EQ(Converse([&](RawConnection& connection) {
                  bool const isLast = left-- == 0;
                  (isLast ? Say("200 OK", "end") : redirect("https://game.example/y"))(connection);
              }),
              "0 200 end");
}

TEST_F(Transport, NoServerNoAnswer) {
    Ubrix::SetHttpConnectAddress(kClosed);
    EXPECT_EQ(Fetch(), "5 0 null");
    Ubrix::SetHttpConnectAddress(nullptr);
    // A name of two letters of code page 936.
    EXPECT_EQ(Fetch("https://\xD6\xD0\xB9\xFA.unresolved/"), "3 0 null");
    EXPECT_EQ(::Test::ResolverStub::LatestName(), "xn--fiqs8s.unresolved");
    for (char const* const bad : {"a", "a:", ":1", "a:0", "a:65536", "a:1x", "::1:443", "a b:1", "[]:1"}) {
        EXPECT_FALSE(Ubrix::SetHttpConnectAddress(bad)) << bad;
    }
    EXPECT_TRUE(Ubrix::SetHttpConnectAddress("[::1]:443"));
}

TEST_F(Transport, SilenceTimesOut) {
    Ubrix::Platform::SetHttpTimeouts({100});
    EXPECT_EQ(Fetch("https://game.stalled/"), "2 0 null");
    ::Test::ResolverStub::Release();
    // Time enough for a handshake, however busy the machine is.
    Ubrix::Platform::SetHttpTimeouts({60000, 60000, 2500});
    EXPECT_EQ(Converse([](RawConnection& connection) {
                  Say("200 OK", "some")(connection);
                  connection.HoldOpen();
              }),
              "0 200 some");
}

// Every place at which an exchange can wait for the other side.
class TransportPhases : public Transport, public Ubrix::IHttpTransport {
protected:
    struct Phase {
        char const* name;
        RawTlsServer::Conversation conversation;
        char const* url = kUrl;
        std::size_t bodySize = 0;
    };

    std::vector<Phase> Phases() {
        auto const holdAfter = [this](RawTlsServer::Conversation const& beginning) {
            return [this, beginning](RawConnection& connection) {
                beginning(connection);
                _reached.Set();
                connection.HoldOpen();
            };
        };
        auto const handshake = [](RawConnection& connection) { connection.Handshake(); };
        return {
            {"resolving", nullptr, "https://game.stalled/"},
            {"connecting", nullptr},
            {"handshake", holdAfter([](RawConnection&) {})},
            {"sending", holdAfter(handshake), kUrl, std::size_t{32} << 20U},
            {"waiting", holdAfter(RawTlsServer::SayAndBreak(""))},
            {"head", holdAfter(RawTlsServer::SayAndBreak("HTTP/1.1 200 OK\r\nA: b"))},
            {"body", holdAfter(Say("200 OK", "some"))},
        };
    }
    // Brings a request into the phase, and ends it there.
    void EndIn(Phase const& phase, bool destroys) {
        SCOPED_TRACE(phase.name);
        RawTlsServer const server(_authority.Issue({kHost}), phase.conversation);
        bool const isResolving = phase.url != kUrl;
        std::string const address = phase.conversation ? server.Address() : _full;
        Ubrix::SetHttpConnectAddress(isResolving ? "" : address.c_str());
        ::Test::OutcomeListener listener;
        DataTask* task = WWW::Request(phase.url);
        task->SetListener(&listener);
        task->Post(std::string(phase.bodySize, 'x').data(), phase.bodySize);
        if (isResolving) {
            EXPECT_TRUE(::Test::ResolverStub::AwaitStall());
        } else if (phase.conversation) {
            EXPECT_TRUE(_reached.WaitFor(10000));
        }
        destroys ? WWW::Destroy(std::exchange(task, nullptr)) : task->Cancel();
        EXPECT_EQ(listener.Count(), 0U);
        EXPECT_TRUE(_done.WaitFor(5000)) << "the transport goes on";
        WWW::Destroy(task);
        ::Test::ResolverStub::Release();
    }

private:
    // Tells when the built-in transport has come back from a request.
    int Perform(Ubrix::HttpRequest const& request, Ubrix::IHttpExchange& exchange) override {
        int const result = Ubrix::Platform::BuiltInHttpTransport().Perform(request, exchange);
        _done.Set();
        return result;
    }

    std::string const _full = RawTlsServer::FullAddress();
    Ubrix::Platform::Event _reached;
    Ubrix::Platform::Event _done;
};

TEST_F(TransportPhases, CancellationAndDestructionEndTheExchange) {
    Ubrix::TransportChoice::Reopen(this);
    for (Phase const& phase : Phases()) {
        EndIn(phase, false);
        EndIn(phase, true);
    }
    Ubrix::TransportChoice::Reopen(nullptr);
}

}  // namespace
