// Carries requests nowhere: answers as a test has written down.
#pragma once

#include <VelmorCore/HttpTransport.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

#include "System/WWW/Task/TransportChoice.h"

namespace Test {

class ScriptedTransport : public Ubrix::IHttpTransport {
public:
    // Puts a new one in force. Never destroyed: workers may be on their way out of it.
    static ScriptedTransport& Install() {
        static auto* const all = new std::deque<ScriptedTransport>;
        ScriptedTransport& transport = all->emplace_back();
        Ubrix::TransportChoice::Reopen(&transport);
        return transport;
    }

    // The answers to come, in order; without one left, the server can't be reached.
    void Answer(std::string const& body, int status = 200) { Push({0, status, body, false}); }
    void Fail(int error) { Push({error, 0, "", false}); }
    // Holds the request until Release, then answers.
    void Hold(std::string const& body) { Push({0, 200, body, true}); }
    void Release() {
        std::lock_guard<std::mutex> lock(_mutex);
        ++_released;
        _changed.notify_all();
    }
    // Waits until `count` requests have come in all. False after ten seconds.
    bool AwaitRequests(std::size_t count) {
        return Await([&] { return _seen.size() >= count; });
    }
    // Waits until no request is under way. False after ten seconds.
    bool AwaitQuiet() {
        return Await([&] { return _underWay == 0; });
    }
    // Host and path of each request so far.
    std::vector<std::string> Seen() {
        std::lock_guard<std::mutex> lock(_mutex);
        return _seen;
    }
    // The latest request: method, host, port and path, its header lines, its body, each behind a line feed.
    std::string Latest() {
        std::lock_guard<std::mutex> lock(_mutex);
        return _latest;
    }

    int Perform(Ubrix::HttpRequest const& request, Ubrix::IHttpExchange& exchange) override {
        Step const step = Begin(request);
        bool const isAnswered = !step.held || AwaitRelease(exchange);
        if (isAnswered && step.error == 0) {
            exchange.SetStatus(step.status);
            exchange.AppendBody(step.body.data(), step.body.size());
        }
        std::lock_guard<std::mutex> lock(_mutex);
        --_underWay;
        _changed.notify_all();
        return isAnswered ? step.error : Ubrix::HttpErrorCancelled;
    }

private:
    struct Step {
        int error;
        int status;
        std::string body;
        bool held;
    };

    void Push(Step const& step) {
        std::lock_guard<std::mutex> lock(_mutex);
        _steps.push_back(step);
    }
    template <typename Condition>
    bool Await(Condition const& condition) {
        std::unique_lock<std::mutex> lock(_mutex);
        return _changed.wait_for(lock, std::chrono::seconds(10), condition);
    }
    // Writes the request down and takes the next answer.
    Step Begin(Ubrix::HttpRequest const& request) {
        std::lock_guard<std::mutex> lock(_mutex);
        std::string const port = ":" + std::to_string(request.port);
        _latest = std::string(request.method) + " " + request.host + port + request.path;
        for (std::size_t i = 0; i < request.headerCount; ++i) {
            _latest += std::string("\n") + request.headers[i];
        }
        _latest += "\n" + std::string(static_cast<char const*>(request.body), request.bodyLength);
        _seen.push_back(std::string(request.host) + request.path);
        ++_underWay;
        _changed.notify_all();
        Step step{Ubrix::HttpErrorCannotConnect, 0, "", false};
        if (!_steps.empty()) {
            step = _steps.front();
            _steps.pop_front();
        }
        return step;
    }
    // False if the request is cancelled. A request that is held for ten seconds goes on.
    bool AwaitRelease(Ubrix::IHttpExchange& exchange) {
        std::unique_lock<std::mutex> lock(_mutex);
        for (int looks = 0; _released == 0 && looks < 500; ++looks) {
            if (exchange.IsCancelled()) {
                return false;
            }
            _changed.wait_for(lock, std::chrono::milliseconds(20));
        }
        --_released;
        return true;
    }

    std::mutex _mutex;
    std::condition_variable _changed;
    std::deque<Step> _steps;
    std::vector<std::string> _seen;
    std::string _latest;
    int _released = 0;
    int _underWay = 0;
};

}  // namespace Test
