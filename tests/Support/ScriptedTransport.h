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
    static constexpr std::chrono::seconds kLimit{10};

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
        std::unique_lock<std::mutex> lock(_mutex);
        return _changed.wait_for(lock, kLimit, [&] { return _seen.size() >= count; });
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
    // Waits until no request is under way. False after ten seconds.
    bool AwaitQuiet() {
        std::unique_lock<std::mutex> lock(_mutex);
        return _changed.wait_for(lock, kLimit, [&] { return _underWay == 0; });
    }

    int Perform(Ubrix::HttpRequest const& request, Ubrix::IHttpExchange& exchange) override {
        Note(request);
        int const result = Follow(request, exchange);
        std::lock_guard<std::mutex> lock(_mutex);
        --_underWay;
        _changed.notify_all();
        return result;
    }

private:
    void Note(Ubrix::HttpRequest const& request) {
        std::lock_guard<std::mutex> lock(_mutex);
        ++_underWay;
        _latest = std::string(request.method) + " " + request.host + ":" + std::to_string(request.port) +
                  request.path;
        for (std::size_t i = 0; i < request.headerCount; ++i) {
            _latest += std::string("\n") + request.headers[i];
        }
        _latest += "\n" + std::string(static_cast<char const*>(request.body), request.bodyLength);
    }
    int Follow(Ubrix::HttpRequest const& request, Ubrix::IHttpExchange& exchange) {
        Step const step = Take(std::string(request.host) + request.path);
        if (step.held && !AwaitRelease(exchange)) {
            return Ubrix::HttpErrorCancelled;
        }
        if (step.error == 0) {
            exchange.SetStatus(step.status);
            exchange.AppendBody(step.body.data(), step.body.size());
        }
        return step.error;
    }

    struct Step {
        int error;
        int status;
        std::string body;
        bool held;
    };

    void Push(Step step) {
        std::lock_guard<std::mutex> lock(_mutex);
        _steps.push_back(std::move(step));
    }
    Step Take(std::string const& seen) {
        std::lock_guard<std::mutex> lock(_mutex);
        _seen.push_back(seen);
        _changed.notify_all();
        if (_steps.empty()) {
            return {Ubrix::HttpErrorCannotConnect, 0, "", false};
        }
        Step step = _steps.front();
        _steps.pop_front();
        return step;
    }
    bool AwaitRelease(Ubrix::IHttpExchange& exchange) {
        std::unique_lock<std::mutex> lock(_mutex);
        auto const limit = std::chrono::steady_clock::now() + kLimit;
        while (_released == 0 && std::chrono::steady_clock::now() < limit) {
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
