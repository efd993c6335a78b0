// Reads any bytes as a row of values whose kinds the first bytes choose; what was read must fit what was
// there.
#include <VelmorCore/Buffer.h>

#include <cstdint>
#include <cstdlib>

namespace {

template <class T>
void ReadOne(Ubrix::CSarnetBufferReader& reader) {
    T value{};
    reader.Read(value);
}

void ReadText(Ubrix::CSarnetBufferReader& reader) {
    char text[16];
    reader.Read(text, static_cast<int>(sizeof text));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    using Read = void (*)(Ubrix::CSarnetBufferReader&);
    static Read const kReads[] = {ReadOne<bool>,      ReadOne<short>,          ReadOne<int>,
                                  ReadOne<long long>, ReadOne<Ubrix::AString>, ReadText};
    constexpr size_t kCount = sizeof kReads / sizeof kReads[0];
    size_t const choices = size / 2;
    Ubrix::CSarnetBufferReader reader(reinterpret_cast<char const*>(data) + choices,
                                      static_cast<int>(size - choices));
    for (size_t i = 0; i < choices; ++i) {
        kReads[data[i] % kCount](reader);
    }
    // To the end it's never further than the bytes there were.
    size_t left = 0;
    for (; !reader.AtEnd(); ++left) {
        ReadOne<unsigned char>(reader);
    }
    if (left > size - choices) {
        std::abort();
    }
    return 0;
}
