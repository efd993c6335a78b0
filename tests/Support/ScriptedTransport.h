// Carries requests nowhere: answers as a test has written down. Once in force it stays so for the process, as
// the library lets no transport be changed after the first request; so each test that uses it runs in its own
// process.
#pragma once

#include <VelmorCore/HttpTransport.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

namespace Test {

class ScriptedTransport : public Ubrix::IHttpTransport {
public:
    static constexpr std::chrono::seconds kLimit{10};

    // In force from the first call on. Never destroyed: workers may be on their way out of it.
    static ScriptedTransport& Install() {
        static ScriptedTransport& transport = *new ScriptedTransport;
        Ubrix::SetHttpTransport(&transport);
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

    int Perform(Ubrix::HttpRequest const& request, Ubrix::IHttpExchange& exchange) override {
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

private:
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
    int _released = 0;
};

}  // namespace Test
