// One hop of a trace.
#pragma once

#include <VelmorCore/Buffer.h>

namespace Ubrix {

// On the wire: the fields in their order. What they tell is a matter of the tool that traces. One thread at a
// time.
class TraceRouteMessage : public _tagSarnetBufferBase {
public:
    TraceRouteMessage();
    TraceRouteMessage(TraceRouteMessage const& other);
    TraceRouteMessage& operator=(TraceRouteMessage const& other);
    ~TraceRouteMessage() override;

    // The caller deletes the copy.
    AObject* Clone() const override;
    void WriteTo(CSarnetBufferWriter& writer) const override;
    void ReadFrom(CSarnetBufferReader& reader) override;

    AString first;
    AString second;
};

}  // namespace Ubrix
