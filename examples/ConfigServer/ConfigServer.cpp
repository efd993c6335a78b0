#include "ConfigServer.h"

#include <httplib.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <utility>

#include "ConfigDocument.h"
#include "UploadStore.h"

namespace Example {

namespace {

constexpr size_t kThreads = 8;
constexpr time_t kConnectionPatienceSeconds = 2;

bool UseIdentity(SSL_CTX& context, ServerIdentity const& identity) {
    return SSL_CTX_set_min_proto_version(&context, TLS1_2_VERSION) == 1 &&
           SSL_CTX_use_certificate(&context, identity.certificate.get()) == 1 &&
           SSL_CTX_use_PrivateKey(&context, identity.key.get()) == 1;
}

SeenRequest Seen(httplib::Request const& request) {
    SeenRequest seen;
    seen.method = request.method;
    seen.target = request.target;
    seen.path = request.path;
    seen.headers.insert(request.headers.begin(), request.headers.end());
    seen.body = request.body;
    seen.comParams = request.get_param_value("com_params");
    seen.bizParams = request.get_param_value("biz_params");
    seen.r = request.get_param_value("r");
    seen.uploadId = request.get_param_value("id");
    seen.part = request.get_param_value("part");
    seen.parts = request.get_param_value("parts");
    return seen;
}

void Fill(ServerAnswer const& answer, httplib::Response& response) {
    response.status = answer.status;
    if (!answer.location.empty()) {
        response.set_header("Location", answer.location);
    }
    if (!answer.cutAfter) {
        response.set_content(answer.body, answer.contentType);
        return;
    }
    // Announces the whole body, sends a part of it, and gives up.
    auto provide = [part = answer.body.substr(0, *answer.cutAfter)](size_t, size_t, httplib::DataSink& sink) {
        sink.write(part.data(), part.size());
        return false;
    };
    response.set_content_provider(answer.body.size(), answer.contentType, provide);
}

}  // namespace

struct ConfigServer::State {
    explicit State(ConfigServerOptions given)
        : options(std::move(given)),
          server([this](SSL_CTX& context) { return UseIdentity(context, options.identity); }),
          uploads(options.uploadDirectory) {}

    void Start();
    void Stop();
    void Handle(httplib::Request const& request, httplib::Response& response);
    void Pause(ServerAnswer const& answer);
    ServerAnswer Choose(SeenRequest const& seen);

    ConfigServerOptions options;
    httplib::SSLServer server;
    UploadStore uploads;
    std::thread listener;
    std::atomic<bool> ended{false};
    int port = 0;

    // Guards what follows. Never held while a client is served or a line is logged.
    mutable std::mutex mutex;
    mutable std::condition_variable changed;
    ConfigDocument document;
    std::deque<ServerAnswer> once;
    std::optional<ServerAnswer> always;
    std::vector<SeenRequest> requests;
    bool stopping = false;
};

void ConfigServer::State::Start() {
    if (!server.is_valid()) {
        throw std::runtime_error("the server's certificate or key is unfit");
    }
    document = ConfigDocument(options.configuration);
    server.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
    server.set_keep_alive_max_count(1);
    server.set_keep_alive_timeout(kConnectionPatienceSeconds);
    server.set_read_timeout(kConnectionPatienceSeconds);
    server.set_write_timeout(kConnectionPatienceSeconds);
    auto handle = [this](httplib::Request const& request, httplib::Response& response) {
        Handle(request, response);
    };
    server.Get(".*", handle).Post(".*", handle);
    if (options.port == 0) {
        port = server.bind_to_any_port("127.0.0.1");
    } else if (server.bind_to_port("127.0.0.1", options.port)) {
        port = options.port;
    }
    if (port <= 0) {
        throw std::runtime_error("cannot listen on 127.0.0.1:" + std::to_string(options.port));
    }
    listener = std::thread([this] {
        server.listen_after_bind();
        ended = true;
    });
    // A stop only counts once the server runs, so nobody may get hold of it before.
    while (!server.is_running() && !ended) {
        std::this_thread::yield();
    }
}

void ConfigServer::State::Stop() {
    {
        std::lock_guard<std::mutex> const lock(mutex);
        stopping = true;
    }
    changed.notify_all();
    server.stop();
    if (listener.joinable()) {
        listener.join();
    }
}

ServerAnswer ConfigServer::State::Choose(SeenRequest const& seen) {
    std::lock_guard<std::mutex> const lock(mutex);
    requests.push_back(seen);
    if (!once.empty()) {
        ServerAnswer answer = std::move(once.front());
        once.pop_front();
        return answer;
    }
    if (always) {
        return *always;
    }
    ServerAnswer answer;
    if (seen.method == "POST" && seen.path == kUploadPath && !options.uploadDirectory.empty()) {
        std::string const complaint = uploads.Take(seen);
        answer.status = complaint.empty() ? 200 : 400;
        answer.body = complaint.empty() ? R"({"ret":0,"err":""})" : ConfigDocument::Refusal(complaint);
        return answer;
    }
    if (seen.method != "GET" || seen.path != kPath) {
        answer.status = 404;
        answer.body = R"({"ret":404,"err":"no such thing here"})";
        return answer;
    }
    std::string const complaint = seen.Complaint();
    answer.body = complaint.empty() ? document.Answer() : ConfigDocument::Refusal(complaint);
    return answer;
}

// Waits as the answer asks, or until the server stops.
void ConfigServer::State::Pause(ServerAnswer const& answer) {
    std::unique_lock<std::mutex> lock(mutex);
    auto const stopped = [this] { return stopping; };
    if (answer.silent) {
        changed.wait(lock, stopped);
    } else {
        changed.wait_for(lock, answer.delay, stopped);
    }
}

void ConfigServer::State::Handle(httplib::Request const& request, httplib::Response& response) {
    SeenRequest const seen = Seen(request);
    if (options.log) {
        options.log(seen.Description());
    }
    ServerAnswer const answer = Choose(seen);
    changed.notify_all();
    Pause(answer);
    if (answer.silent) {
        // Without this the client would get an empty answer now, where it was to get none.
        shutdown(SSL_get_fd(request.ssl), SHUT_RDWR);
        return;
    }
    Fill(answer, response);
}

ConfigServer::ConfigServer(ConfigServerOptions options)
    : _state(std::make_unique<State>(std::move(options))) {
    _state->Start();
}

ConfigServer::~ConfigServer() {
    _state->Stop();
}

int ConfigServer::Port() const {
    return _state->port;
}

std::string ConfigServer::Address() const {
    return "127.0.0.1:" + std::to_string(_state->port);
}

void ConfigServer::SetConfiguration(std::string const& configuration) {
    ConfigDocument document(configuration);
    std::lock_guard<std::mutex> const lock(_state->mutex);
    _state->document = std::move(document);
}

void ConfigServer::AnswerNext(ServerAnswer answer) {
    std::lock_guard<std::mutex> const lock(_state->mutex);
    _state->once.push_back(std::move(answer));
}

void ConfigServer::AnswerAlways(std::optional<ServerAnswer> answer) {
    std::lock_guard<std::mutex> const lock(_state->mutex);
    _state->always = std::move(answer);
}

std::vector<SeenRequest> ConfigServer::Requests() const {
    std::lock_guard<std::mutex> const lock(_state->mutex);
    return _state->requests;
}

bool ConfigServer::WaitForRequests(size_t count, std::chrono::milliseconds limit) const {
    std::unique_lock<std::mutex> lock(_state->mutex);
    return _state->changed.wait_for(lock, limit, [&] { return _state->requests.size() >= count; });
}

}  // namespace Example
