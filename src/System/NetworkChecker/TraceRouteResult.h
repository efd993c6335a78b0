// What a trace of a route gave.
#pragma once

#include <VelmorCore/Buffer.h>

namespace Ubrix {

// On the wire: the fields in their order, `hops` with its number of elements in front. One thread at a time.
class TraceRouteResult : public _tagSarnetBufferBase {
public:
    TraceRouteResult();
    TraceRouteResult(TraceRouteResult const& other);
    TraceRouteResult& operator=(TraceRouteResult const& other);
    ~TraceRouteResult() override;

    // The caller deletes the copy.
    AObject* Clone() const override;
    void WriteTo(CSarnetBufferWriter& writer) const override;
    void ReadFrom(CSarnetBufferReader& reader) override;

    int code = 0;
    AString host;
    // As the tool counted; `hops` may hold fewer.
    int hopCount = 0;
    // Of TraceRouteMessage.
    AArray hops;
    int last = 0;
};

}  // namespace Ubrix
