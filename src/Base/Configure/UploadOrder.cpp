#include "Base/Configure/UploadOrder.h"

#include <VelmorCore/Configure.h>

#include <algorithm>

#include "Base/Configure/KitParameters.h"
#include "Base/Ubrix/ConfigurationKeys.h"
#include "BuildConstants.h"

namespace Velmor {

namespace Key = Ubrix::ConfigurationKey;
namespace {

constexpr std::size_t kMaxIdLength = 128;

// Up to a NUL, if the text holds one: everything that is done with it sees the same.
std::string TextOf(char const* key) {
    return Configure::GetInstance()->GetString(Key::kUploadSection, key, "").c_str();
}

bool IsControl(char c) {
    auto const byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F;
}

// The id becomes a file name in the cache directory: it must not lead anywhere else.
bool IsFileName(std::string const& id) {
    return id.size() <= kMaxIdLength && id.find_first_of("/\\") == std::string::npos &&
           id.find("..") == std::string::npos && std::none_of(id.begin(), id.end(), IsControl);
}

bool IsTooLong(UploadOrder const& order) {
    auto const bars = std::count(order.filePatterns.begin(), order.filePatterns.end(), '|');
    return order.searchPaths.size() > kMaxOrderText || order.filePatterns.size() > kMaxOrderText ||
           static_cast<std::size_t>(bars) >= kMaxOrderPatterns;
}

}  // namespace

UploadOrder ReadUploadOrder() {
    Configure& configure = *Configure::GetInstance();
    UploadOrder order;
    order.searchPaths = TextOf(Key::kUploadPaths);
    order.filePatterns = TextOf(Key::kUploadPatterns);
    order.uploadId = TextOf(Key::kUploadId);
    order.partSize = configure.GetInt(Key::kUploadSection, Key::kUploadPartSize, 0);
    order.isHeldBack = configure.GetInt(Key::kUploadSection, Key::kUploadByHand, 0) == 1;
    order.comParams = RequestText().c_str();
    order.url = configure.GetString(Key::kSection, Key::kUrl, VELMORCORE_DEFAULT_SERVER_URL).c_str();
    return order;
}

char const* ObjectionTo(UploadOrder const& order) {
    if (!IsFileName(order.uploadId)) {
        return "the upload id is no file name, order refused";
    }
    return IsTooLong(order) ? "the order is too long, refused" : nullptr;
}

std::vector<std::string> SplitAtBars(std::string const& text) {
    std::vector<std::string> pieces;
    std::size_t begin = 0;
    for (std::size_t bar = text.find('|'); bar != std::string::npos; bar = text.find('|', begin)) {
        pieces.push_back(text.substr(begin, bar - begin));
        begin = bar + 1;
    }
    pieces.push_back(text.substr(begin));
    return pieces;
}

}  // namespace Velmor
