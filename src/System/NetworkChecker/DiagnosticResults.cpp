#include "System/NetworkChecker/DiagnosticResults.h"

#include <memory>

namespace Ubrix {

namespace {

// Reads a number of elements and so many elements in place of the array's content. If the bytes end with the
// number or before, the array stays as it was; if they end among the elements, the array ends there too, so
// that a false number costs nothing. `Element` takes at least one byte.
template <class Element>
void ReadArray(CSarnetBufferReader& reader, AArray& array) {
    int count = 0;
    reader.Read(count);
    if (reader.AtEnd()) {
        return;
    }
    array.RemoveAll();
    for (int i = 0; i < count && !reader.AtEnd(); ++i) {
        auto element = std::make_unique<Element>();
        reader.Read(*element);
        array.Add(element.get(), true);
        static_cast<void>(element.release());
    }
}

}  // namespace

AObject* PingResult::Clone() const {
    return new PingResult(*this);
}

void PingResult::WriteTo(CSarnetBufferWriter& writer) const {
    writer.Write(code);
    writer.Write(host);
    writer.Write(stat1);
    writer.Write(stat2);
    writer.Write(stat3);
    writer.Write(stat4);
    writer.Write(stat5);
    writer.Write(stat6);
    writer.Write(stat7);
}

void PingResult::ReadFrom(CSarnetBufferReader& reader) {
    reader.Read(code);
    reader.Read(host);
    reader.Read(stat1);
    reader.Read(stat2);
    reader.Read(stat3);
    reader.Read(stat4);
    reader.Read(stat5);
    reader.Read(stat6);
    reader.Read(stat7);
}

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

AObject* NSLookupResult::Clone() const {
    return new NSLookupResult(*this);
}

void NSLookupResult::WriteTo(CSarnetBufferWriter& writer) const {
    writer.Write(code);
    writer.Write(host);
    writer.Write(addresses);
    writer.Write(last);
}

void NSLookupResult::ReadFrom(CSarnetBufferReader& reader) {
    reader.Read(code);
    reader.Read(host);
    ReadArray<AString>(reader, addresses);
    reader.Read(last);
}

}  // namespace Ubrix
