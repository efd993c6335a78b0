#include "System/NetworkChecker/TraceRouteMessage.h"

namespace Ubrix {

TraceRouteMessage::TraceRouteMessage() = default;

TraceRouteMessage::TraceRouteMessage(TraceRouteMessage const& other) = default;

TraceRouteMessage& TraceRouteMessage::operator=(TraceRouteMessage const& other) = default;

TraceRouteMessage::~TraceRouteMessage() = default;

AObject* TraceRouteMessage::Clone() const {
    return new TraceRouteMessage(*this);
}

void TraceRouteMessage::WriteTo(CSarnetBufferWriter& writer) const {
    writer.Write(first);
    writer.Write(second);
}

void TraceRouteMessage::ReadFrom(CSarnetBufferReader& reader) {
    reader.Read(first);
    reader.Read(second);
}

}  // namespace Ubrix
