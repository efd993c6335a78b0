// Files that clients send in parts.
#pragma once

#include <map>
#include <string>

#include "SeenRequest.h"

namespace Example {

// Not thread-safe. Parts wait in memory, 64 MiB an upload at most.
class UploadStore {
public:
    // Whole files go into `directory`.
    explicit UploadStore(std::string directory) : _directory(std::move(directory)) {}

    // Takes a part: number `part` of `parts`, counted from 0 and in order. The first begins anew, the last
    // writes "<id>.zip". Answers why it can't, or an empty text.
    std::string Take(SeenRequest const& request);

private:
    struct Upload {
        unsigned long next = 0;
        std::string content;
    };

    std::string Save(std::string const& id, std::string const& content) const;

    std::string const _directory;
    std::map<std::string, Upload> _uploads;
};

}  // namespace Example
