// Carries requests nowhere: answers as a test has written down.
#pragma once

#include <VelmorCore/HttpTransport.h>

#include <deque>
#include <string>
#include <vector>

#include "Support/Watched.h"
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
        _state.With([](State& state) { ++state.released; });
    }
    // Waits until `count` requests have come in all. False after ten seconds.
    bool AwaitRequests(std::size_t count) {
        return _state.Await([&](State const& state) { return state.seen.size() >= count; });
    }
    // Waits until no request is under way. False after ten seconds.
    bool AwaitQuiet() {
        return _state.Await([](State const& state) { return state.underWay == 0; });
    }
    // Host and path of each request so far.
    std::vector<std::string> Seen() {
        return _state.With([](State const& state) { return state.seen; });
    }
    // The latest request: method, host, port and path, its header lines, its body, each behind a line feed.
    std::string Latest() {
        return _state.With([](State const& state) { return state.latest; });
    }

    int Perform(Ubrix::HttpRequest const& request, Ubrix::IHttpExchange& exchange) override {
        Step const step = _state.With([&](State& state) { return Begin(state, request); });
        bool const isAnswered = !step.held || AwaitRelease(exchange);
        if (isAnswered && step.error == 0) {
            exchange.SetStatus(step.status);
            exchange.AppendBody(step.body.data(), step.body.size());
        }
        _state.With([](State& state) { --state.underWay; });
        return isAnswered ? step.error : Ubrix::HttpErrorCancelled;
    }

private:
    struct Step {
        int error;
        int status;
        std::string body;
        bool held;
    };
    struct State {
        std::deque<Step> steps;
        std::vector<std::string> seen;
        std::string latest;
        int released = 0;
        int underWay = 0;
    };

    void Push(Step const& step) {
        _state.With([&](State& state) { state.steps.push_back(step); });
    }
    // Writes the request down and takes the next answer.
    static Step Begin(State& state, Ubrix::HttpRequest const& request) {
        std::string const port = ":" + std::to_string(request.port);
        state.latest = std::string(request.method) + " " + request.host + port + request.path;
        for (std::size_t i = 0; i < request.headerCount; ++i) {
            state.latest += std::string("\n") + request.headers[i];
        }
        state.latest += "\n" + std::string(static_cast<char const*>(request.body), request.bodyLength);
        state.seen.push_back(std::string(request.host) + request.path);
        ++state.underWay;
        if (state.steps.empty()) {
            return {Ubrix::HttpErrorCannotConnect, 0, "", false};
        }
        Step const step = state.steps.front();
        state.steps.pop_front();
        return step;
    }
    // False if the request is cancelled.
    bool AwaitRelease(Ubrix::IHttpExchange& exchange) {
        auto const take = [](State& state) { return state.released > 0 && state.released-- > 0; };
        while (!exchange.IsCancelled()) {
            if (_state.Await(take, std::chrono::milliseconds(20))) {
                return true;
            }
        }
        return false;
    }

    Watched<State> _state;
};

}  // namespace Test
