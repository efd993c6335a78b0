// Asks servers that do everything wrong, over real TLS: once by a request task, once by the remote
// configuration. For each fault the code, the status, the body, the log line and the configuration's state
// are those told.
#include <VelmorCore/Http.h>
#include <VelmorCore/HttpTransport.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Base/Configure/ConfigureImpl.h"
#include "Platform/BuiltInTransport.h"
#include "Sanitized.h"
#include "Support/LogCapture.h"
#include "Support/RawTlsServer.h"
#include "Support/Watched.h"

namespace {

using ::Test::RawConnection;
using Conversation = ::Test::RawTlsServer::Conversation;
using Ubrix::Platform::HttpTimeouts;
using Velmor::ConfigureImpl;

constexpr char kHost[] = "game.example";
constexpr char kUrl[] = "https://game.example/x";
constexpr char kCaFile[] = "authority.pem";
constexpr int kNoLine = 0;
constexpr int kNoHead = -1;  // "Get head failed"
constexpr unsigned int kNever = 60000;
constexpr unsigned int kSoon = 100;
constexpr unsigned int kLater = 3000;  // for what has to get so far first, however busy the machine is
// The longest body, copies of it on its way, and this program's own.
constexpr long kMostMemoryKilobytes = 600L * 1024;

struct Row {
    std::string name;
    std::string outcome;  // code, status and body; of a long body its size
    int line;             // the number that is logged, or one of the two above
    Conversation conversation;
    HttpTimeouts timeouts = {kNever, kNever, kNever, kNever};
    std::size_t sends = 0;  // bytes of the request's body
};

using Rows = std::vector<Row>;

// What a server says once it has read the request.
Conversation Say(std::string const& bytes) {
    return ::Test::RawTlsServer::SayAndBreak(bytes);
}
std::string Ok(std::string const& head, std::string const& body = "") {
    return "HTTP/1.1 200 OK\r\n" + head + "\r\n" + body;
}
std::string Chunks(std::string const& rest) {
    return Ok("Transfer-Encoding: chunked\r\n", rest);
}
std::string Redirect(std::string const& place, std::string const& status = "302 Found") {
    return "HTTP/1.1 " + status + "\r\nLocation: " + place + "\r\nContent-Length: 1\r\n\r\nx";
}
Conversation Plain(std::string const& bytes) {
    return [bytes](RawConnection& connection) { connection.SendPlain(bytes); };
}
// `bytes`, and then `piece` again and again, with a pause between, until the client has enough.
Conversation Forever(std::string const& bytes, std::string const& piece, int pauseMilliseconds = 0) {
    return [=](RawConnection& connection) {
        bool goesOn = connection.Handshake();
        if (goesOn) {
            connection.ReadHead();
            goesOn = connection.Send(bytes);
        }
        while (goesOn && connection.Send(piece)) {
            std::this_thread::sleep_for(std::chrono::milliseconds(pauseMilliseconds));
        }
    };
}
Conversation Silence(std::string const& bytes) {
    return [bytes](RawConnection& connection) {
        Say(bytes)(connection);
        connection.HoldOpen();
    };
}
std::string Times(int count, std::string const& text) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

Rows ChannelFaults() {
    return {
        {"nothing in place of TLS", "1 0", 12157, [](RawConnection&) {}},
        {"plain HTTP in place of TLS", "1 0", 12157, Plain("HTTP/1.1 400 Bad\r\n\r\n")},
        {"a record of an unknown kind", "1 0", 12157, Plain(std::string("\x99\x03\x03\x00\x05hello", 10))},
        {"an alert", "1 0", 12157, Plain(std::string("\x15\x03\x03\x00\x02\x02\x28", 7))},
        {"half a record", "1 0", 12157, Plain(std::string("\x16\x03\x03\x00\x7a\x02", 6))},
        {"a record too long", "1 0", 12157, Plain("\x16\x03\x03\xff\xff" + std::string(70000, 'x'))},
        {"an end behind the request", "1 0", kNoHead, Say("")},
        {"an orderly end behind the request", "1 0", kNoHead,
         [](RawConnection& c) {
             c.Handshake();
             c.ReadHead();
             c.SendEnd();
         }},
        {"bytes below TLS in the answer", "1 0", 12031,
         [](RawConnection& c) {
             c.Handshake();
             c.ReadHead();
             c.SendPlain("HTTP/1.1 200 OK\r\n\r\n");
         }},
        {"bytes below TLS in the body", "0 200 so far", kNoLine,
         [](RawConnection& c) {
             c.Handshake();
             c.ReadHead();
             c.Send(Ok("Content-Length: 100\r\n", "so far"));
             c.SendPlain("more");
         }},
    };
}

Rows HeadFaults() {
    std::string const line90k = "A: " + std::string(90000, 'x') + "\r\n";
    std::string const line200k = "A: " + std::string(200000, 'x') + "\r\n";
    return {
        {"garbage", "1 0", kNoHead, Say("SSH-2.0-nothing like it\r\n\r\n")},
        {"the protocol without heads", "1 0", kNoHead, Say("<html>Welcome</html>")},
        {"bytes of zero", "1 0", kNoHead, Say(std::string(1000, '\0'))},
        {"a status line without a status", "1 0", kNoHead, Say("HTTP/1.1\r\n\r\n")},
        {"letters for a status", "1 0", kNoHead, Say("HTTP/1.1 abc OK\r\n\r\n")},
        {"five digits for a status", "1 0", kNoHead, Say("HTTP/1.1 20000 OK\r\n\r\n")},
        {"another version", "1 0", kNoHead, Say("HTTP/7.3 200 OK\r\n\r\n")},
        {"the second version", "0 200 ok", kNoLine, Say("HTTP/2 200\r\n\r\nok")},
        {"the old version", "0 200 ok", kNoLine, Say("HTTP/1.0 200 OK\r\n\r\nok")},
        {"no reason", "0 200 ok", kNoLine, Say("HTTP/1.1 200\r\nContent-Length: 2\r\n\r\nok")},
        {"line feeds alone", "0 200 ok", kNoLine, Say("HTTP/1.1 200 OK\nContent-Length: 2\n\nok")},
        {"half a status line", "1 0", kNoHead, Say("HTTP/1.1 20")},
        {"half a head", "1 0", kNoHead, Say("HTTP/1.1 200 OK\r\nA: b\r\n")},
        {"a line without a colon", "1 0", kNoHead, Say(Ok("no colon\r\nContent-Length: 2\r\n", "ok"))},
        {"a NUL in a line", "1 0", kNoHead, Say(Ok(std::string("A: \0b\r\n", 7)))},
        {"a folded line", "0 200 ok", kNoLine, Say(Ok("A: b\r\n c\r\nContent-Length: 2\r\n", "ok"))},
        {"a long line", "0 200 ok", kNoLine, Say(Ok(line90k + "Content-Length: 2\r\n", "ok"))},
        {"a line too long", "1 0", kNoHead, Say(Ok(line200k))},
        {"many lines", "0 200 ok", kNoLine,
         Say(Ok(Times(10000, "A: b\r\n") + "Content-Length: 2\r\n", "ok"))},
        {"too many lines", "1 0", kNoHead, Say(Ok(Times(12, line90k)))},
        {"lines without end", "1 0", kNoHead, Forever("HTTP/1.1 200 OK\r\n", Times(100, "A: b\r\n"))},
        {"a line without end", "1 0", kNoHead, Forever("HTTP/1.1 200 OK\r\nA: ", std::string(1000, 'x'))},
        {"interim answers", "0 200 ok", kNoLine,
         Say(Times(5, "HTTP/1.1 103 Hint\r\nLink: x\r\n\r\n") + Ok("Content-Length: 2\r\n", "ok"))},
        {"interim answers without end", "1 0", kNoHead, Forever("", Times(100, "HTTP/1.1 100 Go\r\n\r\n"))},
        {"an interim answer alone", "1 0", kNoHead, Say("HTTP/1.1 100 Go\r\n\r\n")},
        {"another protocol from here on", "1 0", kNoHead,
         Say("HTTP/1.1 101 Switch\r\nUpgrade: x\r\n\r\nwords of x")},
    };
}

Rows LengthFaults() {
    auto const length = [](std::string const& text, std::string const& body) {
        return Say(Ok("Content-Length: " + text + "\r\n", body));
    };
    return {
        {"a body cut", "0 200 half", kNoLine, length("8", "half")},
        {"a body too long", "0 200 whol", kNoLine, length("4", "whole and more")},
        {"a second answer behind it", "0 200 ok", kNoLine, length("2", "ok" + Ok("", "two"))},
        {"a negative length", "1 0", kNoHead, length("-5", "ok")},
        {"letters for a length", "1 0", kNoHead, length("two", "ok")},
        {"a length beyond all numbers", "0 200 ok", kNoLine, length("99999999999999999999999", "ok")},
        {"two lengths", "0 200 ok", kNoLine, length("5\r\nContent-Length: 2", "ok")},
        {"a length beside chunks", "0 200 ok", kNoLine,
         length("1\r\nTransfer-Encoding: chunked", "2\r\nok\r\n0\r\n\r\n")},
        {"no length", "0 200 to the end", kNoLine, Say(Ok("", "to the end"))},
        {"no body", "0 200 ", kNoLine, length("0", "")},
        {"NULs", std::string("0 200 a\0b", 9), kNoLine, length("3", std::string("a\0b", 3))},
        {"a body with 204", "0 204 ", kNoLine, Say("HTTP/1.1 204 None\r\nContent-Length: 2\r\n\r\nok")},
        {"a body with 304", "0 304 ", kNoLine, Say("HTTP/1.1 304 Same\r\nContent-Length: 2\r\n\r\nok")},
        {"404", "0 404 ok", kNoLine, Say("HTTP/1.1 404 No\r\nContent-Length: 2\r\n\r\nok")},
        {"503", "0 503 busy", kNoLine, Say("HTTP/1.1 503 No\r\nRetry-After: 9\r\n\r\nbusy")},
        {"a portal", "0 200 <html>Log in</html>", kNoLine,
         Say(Ok("Content-Type: text/html\r\n", "<html>Log in</html>"))},
        {"a portal's own status", "0 511 <html>", kNoLine, Say("HTTP/1.1 511 Log In\r\n\r\n<html>")},
    };
}

Rows CodingFaults() {
    std::string const packed("\x1f\x8b\x08\0\0\0\0\0\0\x03", 10);
    return {
        {"chunks", "0 200 abcde", kNoLine, Say(Chunks("3\r\nabc\r\n2;x=y\r\nde\r\n0\r\nA: b\r\n\r\n"))},
        {"a chunk cut", "0 200 abc", kNoLine, Say(Chunks("8\r\nabc"))},
        {"no last chunk", "0 200 abc", kNoLine, Say(Chunks("3\r\nabc\r\n"))},
        {"a chunk without its end", "0 200 abc", kNoLine, Say(Chunks("3\r\nabcdef\r\n0\r\n\r\n"))},
        {"letters for a chunk's length", "0 200 ", kNoLine, Say(Chunks("zz\r\nabc\r\n"))},
        {"a negative chunk", "0 200 ", kNoLine, Say(Chunks("-3\r\nabc\r\n"))},
        {"a chunk beyond all numbers", "0 200 ", kNoLine, Say(Chunks("fffffffffffffffff\r\nabc\r\n"))},
        {"a huge chunk", "0 200 abc", kNoLine, Say(Chunks("7fffffffffffffff\r\nabc"))},
        {"trailers cut", "0 200 abc", kNoLine, Say(Chunks("3\r\nabc\r\n0\r\nA: b"))},
        {"trailers without end", "0 200 abc", kNoLine,
         Forever(Chunks("3\r\nabc\r\n0\r\n"), Times(100, "A: b\r\n"))},
        {"a trailer without end", "0 200 abc", kNoLine,
         Forever(Chunks("3\r\nabc\r\n0\r\nA: "), std::string(1000, 'x'))},
        {"a redirect in the trailers", "0 200 abc", kNoLine,
         Say(Chunks("3\r\nabc\r\n0\r\nLocation: https://game.example/y\r\n\r\n"))},
        {"a packed body that nobody asked for", "0 200 " + packed, kNoLine,
         Say(Ok("Content-Encoding: gzip\r\nContent-Length: 10\r\n", packed))},
        {"a packed transfer", "1 0", kNoHead, Forever(Ok("Transfer-Encoding: gzip, chunked\r\n"), packed)},
        {"one packed in another", "1 0", kNoHead,
         Say(Ok("Transfer-Encoding: gzip\r\nTransfer-Encoding: gzip\r\n", packed))},
        {"an unknown transfer", "1 0", kNoHead, Say(Ok("Transfer-Encoding: secret\r\n", "x"))},
    };
}

Rows RedirectFaults() {
    return {
        {"to plain HTTP", "1 0", 12040, Say(Redirect("http://game.example/y"))},
        {"to a portal", "1 0", 12040, Say(Redirect("http://192.0.2.1/login?to=game.example"))},
        {"to a file", "1 0", 12040, Say(Redirect("file:///etc/passwd"))},
        {"to another protocol", "1 0", 12040, Say(Redirect("ftp://game.example/y"))},
        {"to a script", "1 0", 12156, Say(Redirect("javascript:alert(1)"))},
        {"to no place at all", "1 0", 12156, Say(Redirect("https://[::1"))},
        {"to a place with a bad port", "1 0", 12156, Say(Redirect("https://game.example:99999/y"))},
        {"to a name without a certificate", "1 0", 12038, Say(Redirect("https://other.example/"))},
        {"in a circle", "1 0", 12156, Say(Redirect("/x"))},
        {"in a circle, for good", "1 0", 12156, Say(Redirect("/x", "308 There"))},
        {"by an empty place", "0 302 x", kNoLine, Say(Redirect(""))},
        {"without a place", "0 302 ", kNoLine, Say("HTTP/1.1 302 Go\r\nContent-Length: 0\r\n\r\n")},
        {"by a choice", "0 300 x", kNoLine, Say(Redirect("/y", "300 Choose"))},
        {"by a status that is none", "0 304 ", kNoLine, Say(Redirect("/y", "304 Same"))},
        {"by an interim answer", "0 200 ok", kNoLine,
         Say("HTTP/1.1 103 Hint\r\nLocation: /y\r\n\r\n" + Ok("Content-Length: 2\r\n", "ok"))},
        {"with a body without end", "1 0", 12156,
         Forever("HTTP/1.1 302 Go\r\nLocation: /x\r\n\r\n", std::string(1000, 'x'))},
        {"with a large head each", "1 0", kNoHead, Say(Redirect("/x\r\nA: " + std::string(98000, 'x')))},
        {"cut behind its head", "1 0", 12156, Say("HTTP/1.1 301 Go\r\nLocation: /x\r\n\r\n")},
        {"cut in its head", "1 0", kNoHead, Say("HTTP/1.1 301 Go\r\nLocation: /x\r\n")},
    };
}

// Each limit alone ends its phase; the others never come.
Rows Silences() {
    HttpTimeouts const connect{kSoon, kNever, kNever, kNever};
    HttpTimeouts const send{kNever, kSoon, kNever, kNever};
    HttpTimeouts const receive{kNever, kNever, kSoon, kNever};
    HttpTimeouts const whole{kNever, kNever, kNever, kSoon};
    auto const drippingHandshake = [](RawConnection& connection) {
        connection.SendPlain(std::string("\x16\x03\x03\x00\x7a", 5));
        for (int i = 0; i < 100; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            connection.SendPlain(std::string(1, '\x02'));
        }
    };
    auto const silentHandshake = [](RawConnection& connection) { connection.HoldOpen(); };
    auto const unread = [](RawConnection& connection) {
        connection.Handshake();
        connection.HoldOpen();
    };
    return {
        {"no connection", "2 0", 12002, nullptr, connect},
        {"silence in the handshake", "2 0", 12002, silentHandshake, receive},
        {"a handshake in drops", "2 0", 12002, drippingHandshake, receive},
        {"a request that nobody reads", "2 0", 12002, unread, send, std::size_t{32} << 20U},
        {"silence before the head", "2 0", 12002, Silence(""), receive},
        {"silence in the head", "2 0", 12002, Silence("HTTP/1.1 200 OK\r\nA: b"), receive},
        {"silence behind an interim answer", "2 0", 12002, Silence("HTTP/1.1 100 Go\r\n\r\n"), receive},
        {"a head in drops", "2 0", 12002, Forever("HTTP/1.1 200 OK\r\n", "A: b\r\n", 20), whole},
        {"interim answers in drops", "2 0", 12002, Forever("", "HTTP/1.1 100 Go\r\n\r\n", 20), whole},
    };
}

// The same, where the answer counts as far as it came.
Rows LateSilences() {
    HttpTimeouts const receive{kNever, kNever, kLater, kNever};
    HttpTimeouts const whole{kNever, kNever, kNever, kLater};
    return {
        {"silence in the body", "0 200 so", kNoLine, Silence(Ok("", "so")), receive},
        {"silence in the trailers", "0 200 abc", kNoLine, Silence(Chunks("3\r\nabc\r\n0\r\nA: b")), receive},
        {"a body in drops", "0 200 ...", kNoLine, Forever(Ok(""), "x", 20), whole},
        {"trailers in drops", "0 200 abc", kNoLine, Forever(Chunks("3\r\nabc\r\n0\r\n"), "A: b\r\n", 20),
         whole},
    };
}

// What takes its time, or much of the machine.
Rows Floods() {
    std::string const piece(16000, 'x');
    return {
        {"a body without end", "0 200 67108864 bytes", kNoLine, Forever(Ok(""), piece)},
        {"a chunk without end", "0 200 67108864 bytes", kNoLine,
         Forever(Chunks("7fffffffffffffff\r\n"), piece)},
        {"a chunk's remarks without end", "0 200 ", kNoLine, Forever(Chunks("3;x="), piece)},
        {"remarks beside each byte", "0 200 ...", kNoLine,
         Forever(Ok("Transfer-Encoding: chunked\r\n"), "1;" + piece + "\r\nx\r\n")},
    };
}

class Listener final : public Ubrix::DataTask::Listener {
public:
    void OnDataTaskFinished(Ubrix::DataTask*, int errorCode, int httpStatus, char const* data,
                            std::uint64_t length) override {
        std::string const body =
            length > 1000 ? std::to_string(length) + " bytes" : std::string(data, length);
        _outcome.With([&](std::string& outcome) {
            outcome = std::to_string(errorCode) + " " + std::to_string(httpStatus) +
                      (data != nullptr ? " " + body : "");
        });
    }
    std::string Await() {
        _outcome.Await([](std::string const& outcome) { return !outcome.empty(); }, std::chrono::minutes(1));
        return _outcome.With([](std::string const& outcome) { return outcome; });
    }

private:
    ::Test::Watched<std::string> _outcome;
};

std::string Ask(std::size_t bodySize) {
    Listener listener;
    Ubrix::DataTask* const task = Ubrix::WWW::Request(kUrl);
    task->SetListener(&listener);
    std::string const body(bodySize, 'x');
    task->Post(body.data(), body.size());
    std::string outcome = listener.Await();
    Ubrix::WWW::Destroy(task);
    return outcome;
}

// The configuration's state behind a fetch of its own.
int Configure() {
    ConfigureImpl& configure = *ConfigureImpl::Instance();
    configure.SetUrl("https://game.example");
    auto const limit = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (configure.CurrentState() == ConfigureImpl::kRequesting &&
           std::chrono::steady_clock::now() < limit) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return configure.CurrentState();
}

class Matrix {
public:
    explicit Matrix(bool isFull) : _isFull(isFull), _authority("Faults") {
        _authority.WriteCertificate(kCaFile);
        Ubrix::SetHttpCaFile(kCaFile);
    }

    void Run(char const* kind, Rows const& rows) {
        for (Row const& row : rows) {
            Run(kind, row, _authority.Issue({kHost}));
        }
    }
    void Run(char const* kind, Row const& row, Example::ServerIdentity const& identity,
             int latest = TLS1_3_VERSION) {
        ::Test::RawTlsServer const server(identity, row.conversation, latest);
        std::string const address = row.conversation ? server.Address() : _full;
        Ubrix::SetHttpConnectAddress(address.c_str());
        Ubrix::Platform::SetHttpTimeouts(row.timeouts);
        ::Test::LogCapture const log;
        std::string const outcome = Ask(row.sends);
        bool const isLogged = HasLine(log, row.line);
        bool const isExplained = log.Count("Warning", "") == (IsCertificate(row.line) ? 1 : 0);
        int const wanted = row.outcome[0] == '0' ? ConfigureImpl::kFinished : ConfigureImpl::kFailed;
        bool const configures = row.sends == 0 && (_isFull || _count % 3 == 0);
        int const state = configures ? Configure() : wanted;
        ++_count;
        if (!IsAsTold(outcome, row.outcome) || !isLogged || !isExplained || state != wanted) {
            ++_wrong;
            std::fprintf(stderr, "%s: %s: %s, not %s; state %d\n%s\n", kind, row.name.c_str(),
                         outcome.c_str(), row.outcome.c_str(), state, log.Text().substr(0, 3000).c_str());
        }
    }
    Example::CertificateAuthority const& Authority() const { return _authority; }

    // Prints the count. True if all was as told.
    bool Report() const {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        std::printf("%d of %d HTTP faults went otherwise than told; at most %ld MiB of memory\n", _wrong,
                    _count, usage.ru_maxrss / 1024);
        return _wrong == 0 && (::Stress::kIsSanitized || usage.ru_maxrss < kMostMemoryKilobytes);
    }

private:
    static bool IsCertificate(int line) { return line == 12037 || line == 12038 || line == 12045; }
    // "..." in the place of a body means any.
    static bool IsAsTold(std::string const& outcome, std::string const& told) {
        std::size_t const open = told.find("...");
        return open == std::string::npos ? outcome == told : outcome.compare(0, open, told, 0, open) == 0;
    }
    static bool HasLine(::Test::LogCapture const& log, int line) {
        int const heads = log.Count("Info", "Get head failed\n");
        int const numbers = log.Count("Info", "HttpSendRequest failed " + std::to_string(line) + "\n");
        return heads == (line == kNoHead ? 1 : 0) && numbers == (line > 0 ? 1 : 0);
    }

    bool const _isFull;
    Example::CertificateAuthority const _authority;
    std::string const _full = ::Test::RawTlsServer::FullAddress();
    int _count = 0;
    int _wrong = 0;
};

void RunCertificates(Matrix& matrix) {
    Example::CertificateAuthority const& authority = matrix.Authority();
    Example::CertificateAuthority const stranger("Stranger");
    Conversation const ok = Say(Ok("Content-Length: 2\r\n", "ok"));
    auto const run = [&](char const* name, int line, Example::ServerIdentity const& identity) {
        matrix.Run("certificate", {name, line == 0 ? "0 200 ok" : "1 0", line, ok}, identity);
    };
    run("of a stranger", 12045, stranger.Issue({kHost}));
    run("for another name", 12038, authority.Issue({"other.example"}));
    run("for part of the name", 12038, authority.Issue({"example"}));
    run("for more than the name", 12038, authority.Issue({"game.example.other.example"}));
    run("for an address", 12038, authority.Issue({"127.0.0.1"}));
    run("expired", 12037, authority.Issue({kHost}, {-30, -1}));
    run("of tomorrow", 12037, authority.Issue({kHost}, {1, 30}));
    run("for this name and others", 0, authority.Issue({"other.example", kHost}));
    run("for half the world", 12038, authority.Issue({"*.example"}));
    matrix.Run("TLS", {"1.2", "0 200 ok", kNoLine, ok}, authority.Issue({kHost}), TLS1_2_VERSION);
    matrix.Run("TLS", {"1.1", "1 0", 12157, ok}, authority.Issue({kHost}), TLS1_1_VERSION);
    for (char const* const file : {"missing.pem", ".", "empty.pem"}) {
        std::fclose(std::fopen("empty.pem", "w"));
        Ubrix::SetHttpCaFile(file);
        run(file, 12045, authority.Issue({kHost}));
    }
    Ubrix::SetHttpCaFile(kCaFile);
}

}  // namespace

int main(int argc, char** argv) {
    bool const isFull = argc == 2 && std::string(argv[1]) == "full";
    Matrix matrix(isFull);
    RunCertificates(matrix);
    matrix.Run("channel", ChannelFaults());
    matrix.Run("head", HeadFaults());
    matrix.Run("length", LengthFaults());
    matrix.Run("coding", CodingFaults());
    matrix.Run("redirect", RedirectFaults());
    matrix.Run("silence", Silences());
    if (isFull) {
        matrix.Run("late silence", LateSilences());
        matrix.Run("flood", Floods());
    }
    bool const isGood = matrix.Report();
    ConfigureImpl::ReleaseInstance();
    return isGood ? 0 : 1;
}
