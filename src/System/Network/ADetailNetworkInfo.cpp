#include <VelmorCore/Network.h>

#include <memory>

#include "Platform/MemoryWant.h"

namespace Ubrix {

_tagADetailNetworkInfo::_tagADetailNetworkInfo() = default;

_tagADetailNetworkInfo::_tagADetailNetworkInfo(_tagADetailNetworkInfo const& other) = default;

_tagADetailNetworkInfo& _tagADetailNetworkInfo::operator=(_tagADetailNetworkInfo const& other) = default;

_tagADetailNetworkInfo::~_tagADetailNetworkInfo() = default;

AObject* _tagADetailNetworkInfo::Clone() const {
    return Platform::WithoutThrow([this]() -> AObject* {
        auto clone = std::make_unique<_tagADetailNetworkInfo>();
        *clone = *this;
        return clone.release();
    });
}

void _tagADetailNetworkInfo::WriteTo(CSarnetBufferWriter& writer) const {
    writer.Write(static_cast<int>(state));
    writer.Write(detail);
    writer.Write(text1);
    writer.Write(text2);
    writer.Write(text3);
    writer.Write(text4);
}

void _tagADetailNetworkInfo::ReadFrom(CSarnetBufferReader& reader) {
    int number = state;
    reader.Read(number);
    state = static_cast<ANetworkState>(number);
    reader.Read(detail);
    reader.Read(text1);
    reader.Read(text2);
    reader.Read(text3);
    reader.Read(text4);
}

}  // namespace Ubrix
