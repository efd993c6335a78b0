// A line of a diagnostic's tool, as all three kinds: what is read from it is what is in its fields, and
// comes back from its own encoding.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "System/NetworkChecker/ResultLines.h"

namespace {

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

template <class Result>
Ubrix::AString Encoded(Result const& result) {
    Ubrix::AString bytes;
    Require(result.Encode(bytes));
    return bytes;
}

// The fields of a result that was read; false if the line has too few.
template <class Result>
bool Check(Ubrix::AArray const& fields, Result& result) {
    if (!Ubrix::FillFromLine(fields, result)) {
        Require(fields.Count() < 9);
        return false;
    }
    Require(result.host == fields.AStringAtIndex(1));
    Result again;
    Require(again.Decode(Encoded(result)) && Encoded(again) == Encoded(result));
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    std::string const line(reinterpret_cast<char const*>(data), size);
    Ubrix::AArray fields;
    if (!Ubrix::AString::Split(&fields, line.c_str(), "#")) {
        return 0;
    }
    Ubrix::PingResult ping;
    Require(Check(fields, ping) == (fields.Count() >= 9));
    Ubrix::TraceRouteResult trace;
    if (Check(fields, trace)) {
        Require(trace.hops.Count() <= (fields.Count() - 3) / 2 + 1);
        Require(trace.hops.Count() <= (trace.hopCount > 0 ? trace.hopCount : 0));
    }
    Ubrix::NSLookupResult lookup;
    if (Check(fields, lookup)) {
        Require(lookup.addresses.Count() == fields.Count() - 3);
    }
    return 0;
}
