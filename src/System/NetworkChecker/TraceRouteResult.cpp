#include "System/NetworkChecker/TraceRouteResult.h"

#include "System/NetworkChecker/ArrayReading.h"
#include "System/NetworkChecker/TraceRouteMessage.h"

namespace Ubrix {

TraceRouteResult::TraceRouteResult() = default;

TraceRouteResult::TraceRouteResult(TraceRouteResult const& other) = default;

TraceRouteResult& TraceRouteResult::operator=(TraceRouteResult const& other) = default;

TraceRouteResult::~TraceRouteResult() = default;

AObject* TraceRouteResult::Clone() const {
    return new TraceRouteResult(*this);
}

void TraceRouteResult::WriteTo(CSarnetBufferWriter& writer) const {
    writer.Write(code);
    writer.Write(host);
    writer.Write(hopCount);
    writer.Write(hops);
    writer.Write(last);
}

void TraceRouteResult::ReadFrom(CSarnetBufferReader& reader) {
    reader.Read(code);
    reader.Read(host);
    reader.Read(hopCount);
    ReadArray<TraceRouteMessage>(reader, hops);
    reader.Read(last);
}

}  // namespace Ubrix
