#include "System/NetworkChecker/PingResult.h"

namespace Ubrix {

PingResult::PingResult() = default;

PingResult::PingResult(PingResult const& other) = default;

PingResult& PingResult::operator=(PingResult const& other) = default;

PingResult::~PingResult() = default;

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

}  // namespace Ubrix
