#include "System/NetworkChecker/NSLookupResult.h"

#include "System/NetworkChecker/ArrayReading.h"

namespace Ubrix {

NSLookupResult::NSLookupResult() = default;

NSLookupResult::NSLookupResult(NSLookupResult const& other) = default;

NSLookupResult& NSLookupResult::operator=(NSLookupResult const& other) = default;

NSLookupResult::~NSLookupResult() = default;

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
