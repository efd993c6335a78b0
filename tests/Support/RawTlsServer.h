// A server for what no well-behaved one does: it hands each connection to the test, byte by byte.
#pragma once

#include <openssl/ssl.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "ConfigServer/CertificateAuthority.h"

namespace Test {

// One accepted connection. Reads and writes give up after ten seconds. When the conversation returns, the
// connection ends without a word of TLS.
class RawConnection {
public:
    RawConnection(int socket, SSL_CTX* context);
    RawConnection(RawConnection const&) = delete;
    RawConnection& operator=(RawConnection const&) = delete;

    bool Handshake();

    // The request's head through its empty line, over TLS. Shorter if the client ends first.
    std::string ReadHead();
    bool Send(std::string const& bytes);

    // The same below TLS: what stands on the wire.
    std::string ReadPlain(size_t atMost);
    bool SendPlain(std::string const& bytes);

    // Ends the TLS session in due form.
    void Finish();

    // From here on the connection ends with a reset.
    void Reset();

    // Waits until the client goes away or the server stops.
    void HoldOpen();

private:
    int _socket;
    std::unique_ptr<SSL, void (*)(SSL*)> _session;
};

class RawTlsServer {
public:
    using Conversation = std::function<void(RawConnection&)>;

    // Listens on a free port of 127.0.0.1 and runs `conversation` for each connection, one after the other,
    // on a thread of its own. Throws std::runtime_error if it can't.
    RawTlsServer(Example::ServerIdentity const& identity, Conversation conversation);
    ~RawTlsServer();
    RawTlsServer(RawTlsServer const&) = delete;
    RawTlsServer& operator=(RawTlsServer const&) = delete;

    std::string Address() const;

    // Connections accepted so far.
    int Accepted() const { return _accepted; }

    // Reads one request, sends `bytes` whatever they are, and breaks the connection.
    static Conversation SayAndBreak(std::string bytes);

    // A port of 127.0.0.1 at which nobody listens.
    static int ClosedPort();

private:
    void Serve();

    std::unique_ptr<SSL_CTX, void (*)(SSL_CTX*)> _context;
    Conversation _conversation;
    int _listener = -1;
    int _port = 0;
    std::atomic<int> _accepted{0};
    std::mutex _mutex;  // guards _current and _stopping
    int _current = -1;
    bool _stopping = false;
    std::thread _thread;
};

}  // namespace Test
