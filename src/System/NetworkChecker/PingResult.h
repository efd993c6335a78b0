// What a ping gave.
#pragma once

#include <VelmorCore/Buffer.h>

namespace Ubrix {

// On the wire: the fields in their order. One thread at a time.
class PingResult : public _tagSarnetBufferBase {
public:
    PingResult();
    PingResult(PingResult const& other);
    PingResult& operator=(PingResult const& other);
    ~PingResult() override;

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

}  // namespace Ubrix
