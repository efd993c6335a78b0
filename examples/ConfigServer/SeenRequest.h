// A request as the server saw it.
#pragma once

#include <map>
#include <string>

namespace Example {

struct SeenRequest {
    std::string method;
    std::string target;  // path and query as they were on the wire
    std::string path;
    std::multimap<std::string, std::string> headers;
    std::string body;

    // The query's three values, URL-decoded; empty where one is missing.
    std::string comParams;
    std::string bizParams;
    std::string r;

    // The same of an upload's part.
    std::string uploadId;
    std::string part;
    std::string parts;

    // Why the server can't serve this as a request for a configuration; empty if it can.
    std::string Complaint() const;

    // One line for people, without its line end: the decoded values as compact JSON. Bytes of the request
    // that could end the line or steer a terminal are shown as \xHH.
    std::string Description() const;
};

}  // namespace Example
