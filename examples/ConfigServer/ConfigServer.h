// A configuration server in this process: HTTPS on the loopback address, one JSON document served, every
// request kept, and any answer to be had on demand.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CertificateAuthority.h"
#include "SeenRequest.h"
#include "ServerAnswer.h"

namespace Example {

struct ConfigServerOptions {
    ServerIdentity identity;
    std::string configuration;    // the JSON text of the answer's biz_data: "rule_id" and "merged_cfg"
    int port = 0;                 // 0: one that is free
    std::string uploadDirectory;  // where uploads go; empty to take none
    std::function<void(std::string const&)>
        log;  // takes a line for each request, on a server thread; may be empty
};

// Serves from construction to destruction, on at most 8 threads of its own. Any thread may call; the
// destructor returns within about two seconds even while clients keep connections open.
//
// GET /cfgpush/getConfig is answered with the configuration, or with a ret of 1 and words if the request
// isn't well formed. POST /upload takes a part of a file; see UploadStore.h. Other paths and methods get
// status 404 with a JSON body. An answer that was set counts for every path.
class ConfigServer {
public:
    static constexpr char const* kPath = "/cfgpush/getConfig";
    static constexpr char const* kUploadPath = "/upload";

    // Throws std::runtime_error if the configuration is unfit or the port can't be had.
    explicit ConfigServer(ConfigServerOptions options);
    ~ConfigServer();
    ConfigServer(ConfigServer const&) = delete;
    ConfigServer& operator=(ConfigServer const&) = delete;

    int Port() const;

    // "127.0.0.1:<port>"
    std::string Address() const;

    // Replaces what is served from the next request on. Throws std::runtime_error, and keeps the old one, if
    // unfit.
    void SetConfiguration(std::string const& configuration);

    // Appends an answer that is given once, ahead of everything else and in the order of the calls.
    void AnswerNext(ServerAnswer answer);

    // Given to every request for which no AnswerNext is left, in place of the configuration; nothing ends it.
    void AnswerAlways(std::optional<ServerAnswer> answer);

    // All requests so far, oldest first. A request counts once it is read, before it is answered.
    std::vector<SeenRequest> Requests() const;

    // Waits until `count` requests have come in all. False if `limit` passes first.
    bool WaitForRequests(size_t count, std::chrono::milliseconds limit) const;

private:
    struct State;
    std::unique_ptr<State> _state;
};

}  // namespace Example
