// Any bytes as each record that crosses to the managed side: what was taken from them comes back from its own
// encoding, and costs no more than the bytes bear.
#include <VelmorCore/Network.h>

#include <cstdint>
#include <cstdlib>

#include "System/NetworkChecker/DiagnosticResults.h"

namespace {

template <class Record>
void Check(char const* bytes, int size) {
    Record record;
    Ubrix::AString encoded;
    Record again;
    Ubrix::AString twice;
    // What is missing stays as it was, so that a whole record may come from fewer bytes.
    bool const holds = record.Decode(bytes, size) && record.Encode(encoded) &&
                       encoded.length() <= size + 64 && again.Decode(encoded) && again.Encode(twice) &&
                       encoded == twice;
    if (!holds) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    auto const* const bytes = reinterpret_cast<char const*>(data);
    int const length = static_cast<int>(size);
    if (length == 0) {
        return 0;
    }
    Check<Ubrix::PingResult>(bytes, length);
    Check<Ubrix::TraceRouteMessage>(bytes, length);
    Check<Ubrix::TraceRouteResult>(bytes, length);
    Check<Ubrix::NSLookupResult>(bytes, length);
    Check<Ubrix::_tagADetailNetworkInfo>(bytes, length);
    return 0;
}
