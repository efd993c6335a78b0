// A server for what no well-behaved one does: it hands each connection to the test, byte by byte.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include "ConfigServer/CertificateAuthority.h"

namespace Test {

// A server that can't be set up ends the test.
inline void Demand(bool holds, char const* what) {
    if (!holds) {
        throw std::runtime_error(what);
    }
}

// One accepted connection. Reads and writes give up after ten seconds. When the conversation returns, the
// connection ends without a word of TLS.
class RawConnection {
public:
    RawConnection(int socket, SSL_CTX* context) : _socket(socket), _session(SSL_new(context), SSL_free) {
        timeval const patience{10, 0};
        setsockopt(_socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        setsockopt(_socket, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
        SSL_set_fd(_session.get(), _socket);
    }

    bool Handshake() { return SSL_accept(_session.get()) == 1; }

    // The request's head through its empty line, over TLS. Shorter if the client ends first.
    std::string ReadHead() {
        std::string head;
        char byte = 0;
        while (head.find("\r\n\r\n", head.size() < 4 ? 0 : head.size() - 4) == std::string::npos &&
               SSL_read(_session.get(), &byte, 1) == 1) {
            head += byte;
        }
        return head;
    }
    // False once the client is gone.
    bool Send(std::string const& bytes) {
        size_t written = 0;
        return SSL_write_ex(_session.get(), bytes.data(), bytes.size(), &written) == 1;
    }
    // Says that nothing follows, as TLS has it.
    void SendEnd() { SSL_shutdown(_session.get()); }
    // Bytes below TLS.
    void SendPlain(std::string const& bytes) { send(_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL); }

    // Waits until the client goes away or the server stops. At most a minute.
    void HoldOpen() {
        pollfd waiting{_socket, POLLRDHUP, 0};
        poll(&waiting, 1, 60000);
    }

private:
    int _socket;
    std::unique_ptr<SSL, void (*)(SSL*)> _session;
};

// A socket bound to a free port of 127.0.0.1.
struct BoundSocket {
    BoundSocket() {
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        Demand(bind(socket, general, length) == 0, "bind");
        Demand(getsockname(socket, general, &length) == 0, "getsockname");
    }
    std::string Address() const { return "127.0.0.1:" + std::to_string(ntohs(address.sin_port)); }

    int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    sockaddr* general = reinterpret_cast<sockaddr*>(&address);
    socklen_t length = sizeof address;
};

class RawTlsServer {
public:
    using Conversation = std::function<void(RawConnection&)>;

    // Listens on a free port and runs `conversation` for each connection, one after the other, on a thread of
    // its own. `latest` is the newest version of TLS that it speaks.
    RawTlsServer(Example::ServerIdentity const& identity, Conversation conversation,
                 int latest = TLS1_3_VERSION)
        : _context(SSL_CTX_new(TLS_server_method()), SSL_CTX_free), _conversation(std::move(conversation)) {
        Demand(SSL_CTX_use_certificate(_context.get(), identity.certificate.get()) == 1, "certificate");
        Demand(SSL_CTX_use_PrivateKey(_context.get(), identity.key.get()) == 1, "key");
        Demand(SSL_CTX_set_max_proto_version(_context.get(), latest) == 1, "version");
        Demand(listen(_listener.socket, 128) == 0, "listen");
        _thread = std::thread([this] { Serve(); });
    }
    ~RawTlsServer() {
        {
            std::lock_guard<std::mutex> const lock(_mutex);
            _stopping = true;
            shutdown(_listener.socket, SHUT_RDWR);
            shutdown(_current, SHUT_RDWR);
        }
        _thread.join();
        close(_current);
        close(_listener.socket);
    }
    std::string Address() const { return _listener.Address(); }

    // Reads one request, sends `bytes` whatever they are, and breaks the connection.
    static Conversation SayAndBreak(std::string const& bytes) {
        return [bytes](RawConnection& connection) {
            if (connection.Handshake()) {
                connection.ReadHead();
                connection.Send(bytes);
            }
        };
    }
    // A port that takes no more connections until the process ends: its queue is full and nobody accepts.
    static std::string FullAddress() {
        BoundSocket const bound;
        Demand(listen(bound.socket, 0) == 0, "listen");
        for (int i = 0; i < 4; ++i) {
            int const client = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
            Demand(connect(client, bound.general, bound.length) == 0 || errno == EINPROGRESS, "connect");
        }
        return bound.Address();
    }

private:
    void Serve() {
        // A write to a connection that the client closed must not end the process.
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &set, nullptr);
        while (Accept()) {
            RawConnection connection(_current, _context.get());
            _conversation(connection);
            std::lock_guard<std::mutex> const lock(_mutex);
            close(std::exchange(_current, -1));
        }
    }
    bool Accept() {
        int const socket = accept4(_listener.socket, nullptr, nullptr, SOCK_CLOEXEC);
        std::lock_guard<std::mutex> const lock(_mutex);
        _current = socket;
        return socket >= 0 && !_stopping;
    }

    BoundSocket _listener;
    std::unique_ptr<SSL_CTX, void (*)(SSL_CTX*)> _context;
    Conversation _conversation;
    std::mutex _mutex;  // guards _current and _stopping
    int _current = -1;
    bool _stopping = false;
    std::thread _thread;
};

}  // namespace Test
