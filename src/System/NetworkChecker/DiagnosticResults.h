// What the network diagnostics give. Each result is a record of one thread at a time.
#pragma once

#include <VelmorCore/Buffer.h>

namespace Ubrix {

// What a ping gave. On the wire: the fields in their order.
class PingResult : public _tagSarnetBufferBase {
public:
    // The caller deletes the copy.
    AObject* Clone() const override;
    void WriteTo(CSarnetBufferWriter& writer) const override;
    void ReadFrom(CSarnetBufferReader& reader) override;

    int code = 0;
    AString host;
    // What they count is a matter of the tool that pings and of the receiver.
    int stat1 = 0;
    int stat2 = 0;
    int stat3 = 0;
    int stat4 = 0;
    int stat5 = 0;
    int stat6 = 0;
    int stat7 = 0;
};

// One hop of a trace. On the wire: the fields in their order. What they tell is a matter of the tool that
// traces.
class TraceRouteMessage : public _tagSarnetBufferBase {
public:
    // The caller deletes the copy.
    AObject* Clone() const override;
    void WriteTo(CSarnetBufferWriter& writer) const override;
    void ReadFrom(CSarnetBufferReader& reader) override;

    AString first;
    AString second;
};

// What a trace of a route gave. On the wire: the fields in their order, `hops` with its number of elements in
// front.
class TraceRouteResult : public _tagSarnetBufferBase {
public:
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

// What a look-up of a name gave. On the wire: code, host, `addresses` with its number of elements in front,
// last.
class NSLookupResult : public _tagSarnetBufferBase {
public:
    // The caller deletes the copy.
    AObject* Clone() const override;
    void WriteTo(CSarnetBufferWriter& writer) const override;
    void ReadFrom(CSarnetBufferReader& reader) override;

    int code = 0;
    AString host;
    int last = 0;
    // Of AString.
    AArray addresses;
};

}  // namespace Ubrix
