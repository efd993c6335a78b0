// One request on its way: what its worker needs, copied from the task.
#pragma once

#include <VelmorCore/HttpTransport.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "System/WWW/Task/CrackedUrl.h"
#include "System/WWW/Task/DataTaskState.h"

namespace Ubrix {

// Made by the task, then owned and used by the worker's thread alone.
class DataTaskRequest {
public:
    std::shared_ptr<DataTaskState> state;
    DataTaskState::Ticket ticket = DataTaskState::kNoTicket;
    IHttpTransport* transport = nullptr;
    std::string url;                             // code page 936
    std::map<std::string, std::string> headers;  // code page 936
    std::string body;

    // Splits the URL. False if it can't be read.
    bool Crack(CrackedUrl& cracked) const;
    // Puts the header lines, UTF-8 and in key order, into `lines`. False at the first one that isn't a proper
    // header: a key that is no token (RFC 9110, 5.6.2), or a control character in the value.
    bool BuildHeaderLines(std::vector<std::string>& lines) const;
};

}  // namespace Ubrix
