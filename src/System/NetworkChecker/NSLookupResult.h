// What a look-up of a name gave.
#pragma once

#include <VelmorCore/Buffer.h>

namespace Ubrix {

// On the wire: code, host, `addresses` with its number of elements in front, last. One thread at a time.
class NSLookupResult : public _tagSarnetBufferBase {
public:
    NSLookupResult();
    NSLookupResult(NSLookupResult const& other);
    NSLookupResult& operator=(NSLookupResult const& other);
    ~NSLookupResult() override;

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
