// What a server orders a device to send, and what such an order may cost.
#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

namespace Velmor {

// The log function's name of every line that an order causes.
constexpr char kUploadOrderFunction[] = "Velmor::FileUploader::OnConfigureRefreshed";

// Bytes of "file_path", and of "file_pattern".
constexpr std::size_t kMaxOrderText = std::size_t{64} * 1024;
constexpr std::size_t kMaxOrderPatterns = 4096;
// Names looked at, in all directories together.
constexpr std::size_t kMaxOrderNames = 100000;
// Files packed, and their bytes before they are deflated.
constexpr std::size_t kMaxOrderFiles = 1000;
constexpr long long kMaxOrderBytes = 256LL << 20U;
// From the first directory to the last pattern.
constexpr long long kMaxOrderSearchMilliseconds = 5000;

struct UploadOrder {
    std::string searchPaths;
    std::string filePatterns;
    std::string uploadId;
    int partSize = 0;
    bool isHeldBack = false;
    // For the upload: who sends, and the address of the configuration server.
    std::string comParams;
    std::string url;
};

// Raised once, by any thread; whoever works on an order looks often, and ends.
using UploadStop = std::atomic<bool>;

// The order that the configuration holds now.
UploadOrder ReadUploadOrder();
// Why the order isn't to be carried out at all; null if it may be.
char const* ObjectionTo(UploadOrder const& order);
// The pieces between bars. An empty text has one.
std::vector<std::string> SplitAtBars(std::string const& text);

}  // namespace Velmor
