// What a configuration server says to one request, and the ways in which it can be made to fail.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

namespace Example {

struct ServerAnswer {
    int status = 200;
    std::string body;  // any bytes
    std::string contentType = "application/json";
    std::string location;                // where not empty, the value of a "Location" line
    std::chrono::milliseconds delay{0};  // waited before the first byte; cut short when the server stops
    std::optional<size_t> cutAfter;      // the connection ends after so many bytes of the body it announced
    bool silent = false;                 // nothing is sent; the connection stays open until the server stops
};

// The kinds that GarbageBody takes, a line each: the name and what it means.
std::string GarbageKinds();

// A body that no client may take for a configuration. Throws std::invalid_argument for an unknown kind.
std::string GarbageBody(std::string const& kind);

}  // namespace Example
