#include "RawTlsServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>
#include <utility>

namespace Test {

namespace {

constexpr int kPatienceSeconds = 10;
constexpr int kHoldMilliseconds = 60000;

struct Bound {
    int socket;
    int port;
};

Bound BindLoopback() {
    int const socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const general = reinterpret_cast<sockaddr*>(&address);
    if (socket < 0 || bind(socket, general, length) != 0 || getsockname(socket, general, &length) != 0) {
        throw std::runtime_error("no port to be had on 127.0.0.1");
    }
    return {socket, ntohs(address.sin_port)};
}

// A write to a connection that the client closed must not end the process.
void KeepBrokenPipesQuiet() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

}  // namespace

RawConnection::RawConnection(int socket, SSL_CTX* context)
    : _socket(socket), _session(SSL_new(context), SSL_free) {
    timeval const patience{kPatienceSeconds, 0};
    setsockopt(_socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    setsockopt(_socket, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    SSL_set_fd(_session.get(), _socket);
}

bool RawConnection::Handshake() {
    return SSL_accept(_session.get()) == 1;
}

std::string RawConnection::ReadHead() {
    std::string head;
    char byte = 0;
    while (head.find("\r\n\r\n", head.size() < 4 ? 0 : head.size() - 4) == std::string::npos) {
        if (SSL_read(_session.get(), &byte, 1) != 1) {
            break;
        }
        head += byte;
    }
    return head;
}

bool RawConnection::Send(std::string const& bytes) {
    size_t written = 0;
    return SSL_write_ex(_session.get(), bytes.data(), bytes.size(), &written) == 1;
}

std::string RawConnection::ReadPlain(size_t atMost) {
    std::string bytes(atMost, '\0');
    ssize_t const count = recv(_socket, bytes.data(), bytes.size(), 0);
    bytes.resize(count > 0 ? static_cast<size_t>(count) : 0);
    return bytes;
}

bool RawConnection::SendPlain(std::string const& bytes) {
    return send(_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
}

void RawConnection::Finish() {
    SSL_shutdown(_session.get());
}

void RawConnection::Reset() {
    linger const atOnce{1, 0};
    setsockopt(_socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

void RawConnection::HoldOpen() {
    pollfd waiting{_socket, POLLRDHUP, 0};
    poll(&waiting, 1, kHoldMilliseconds);
}

RawTlsServer::RawTlsServer(Example::ServerIdentity const& identity, Conversation conversation)
    : _context(SSL_CTX_new(TLS_server_method()), SSL_CTX_free), _conversation(std::move(conversation)) {
    if (SSL_CTX_use_certificate(_context.get(), identity.certificate.get()) != 1 ||
        SSL_CTX_use_PrivateKey(_context.get(), identity.key.get()) != 1) {
        throw std::runtime_error("certificate or key unfit");
    }
    Bound const bound = BindLoopback();
    _listener = bound.socket;
    _port = bound.port;
    if (listen(_listener, 16) != 0) {
        close(_listener);
        throw std::runtime_error("cannot listen");
    }
    _thread = std::thread([this] { Serve(); });
}

RawTlsServer::~RawTlsServer() {
    {
        std::lock_guard<std::mutex> const lock(_mutex);
        _stopping = true;
        shutdown(_listener, SHUT_RDWR);
        if (_current >= 0) {
            shutdown(_current, SHUT_RDWR);
        }
    }
    _thread.join();
    close(_listener);
}

std::string RawTlsServer::Address() const {
    return "127.0.0.1:" + std::to_string(_port);
}

void RawTlsServer::Serve() {
    KeepBrokenPipesQuiet();
    for (;;) {
        int const socket = accept4(_listener, nullptr, nullptr, SOCK_CLOEXEC);
        {
            std::lock_guard<std::mutex> const lock(_mutex);
            _current = socket;
            if (_stopping || socket < 0) {
                break;
            }
        }
        ++_accepted;
        RawConnection connection(socket, _context.get());
        _conversation(connection);
        std::lock_guard<std::mutex> const lock(_mutex);
        _current = -1;
        close(socket);
    }
    if (_current >= 0) {
        close(_current);
    }
}

RawTlsServer::Conversation RawTlsServer::SayAndBreak(std::string bytes) {
    return [said = std::move(bytes)](RawConnection& connection) {
        if (connection.Handshake()) {
            connection.ReadHead();
            connection.Send(said);
        }
    };
}

int RawTlsServer::ClosedPort() {
    Bound const bound = BindLoopback();
    close(bound.socket);
    return bound.port;
}

}  // namespace Test
