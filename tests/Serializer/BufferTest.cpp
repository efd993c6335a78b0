#include <VelmorCore/Buffer.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <memory>
#include <string>

using namespace Ubrix;

namespace {

std::string Hex(AString const& bytes) {
    return bytes.Dump("").c_str();
}

template <class T>
std::string Written(T const& value) {
    CSarnetBufferWriter writer;
    writer.Write(value);
    return Hex(writer.GetBufferData());
}

// Fields of fixed width, a text, and a structure.
class Record : public _tagSarnetActionBufferBase {
public:
    Record() : _tagSarnetActionBufferBase(5) {}
    AObject* Clone() const override { return new Record(*this); }
    void WriteTo(CSarnetBufferWriter& writer) const override {
        writer.Write(small);
        writer.Write(wide);
        writer.Write(text);
        writer.Write(nested);
    }
    void ReadFrom(CSarnetBufferReader& reader) override {
        reader.Read(small);
        reader.Read(wide);
        reader.Read(text);
        reader.Read(nested);
    }

    unsigned short small = 0;
    long long wide = 0;
    AString text;
    _tagSarnetAction nested;
};

}  // namespace

TEST(Buffer, WritesExactBytes) {
    EXPECT_EQ(Written(static_cast<short>(-2)), "ff,fe");
    EXPECT_EQ(Written(258), "00,00,01,02");
    EXPECT_EQ(Written("abc"), "00,00,00,04,61,62,63,00");
    EXPECT_EQ(Written(""), "00,00,00,00");

    CSarnetBufferWriter bytes;
    unsigned char const block[] = {9, 8};
    bytes.Write(block, 2);
    bytes.Write(nullptr, 7);
    bytes.Write(block, -1);
    EXPECT_EQ(Hex(bytes.GetBufferData()), "00,00,00,02,09,08,00,00,00,07,ff,ff,ff,ff");

    // What the buffer held, also where it moves as it grows.
    std::string held;
    for (unsigned char size = 1; size < 100; ++size) {
        CSarnetBufferWriter own;
        held += static_cast<char>(size);
        for (char const byte : held) {
            own.Write(static_cast<signed char>(byte));
        }
        own.Write(own.GetBufferData());
        std::string const expected = held + std::string("\0\0\0", 3) + static_cast<char>(size) + held;
        EXPECT_EQ(std::string(own.GetBufferData().c_str(), expected.size()), expected);
    }
}

TEST(Buffer, WritesObjectsByTheirKind) {
    AArray array;
    array.Add("a");
    array.Add(7);
    array.Add(ANumber(static_cast<unsigned char>(7)));
    array.Add(true);
    array.Add(-1LL);
    array.Add(2.5);
    array.Add(ANumber());
    array.Add(static_cast<AObject const&>(AData()));
    array.Add(static_cast<AObject const&>(AStringBuilder("not encoded")));
    array.Add(static_cast<AObject const&>(_tagSarnetAction()));
    EXPECT_EQ(Written(array),
              "00,00,00,0a,00,00,00,01,61,00,00,00,07,07,01,ff,ff,ff,ff,ff,ff,ff,ff,00,00,00,00");

    ADictionary dictionary;
    dictionary.Set("b", 1);
    dictionary.Set("a", static_cast<AObject const&>(AArray()));
    AObject const* object = &dictionary;
    EXPECT_EQ(Written(object), "00,00,00,02,00,00,00,01,62,00,00,00,01,00,00,00,01,61,00,00,00,00");
    EXPECT_EQ(Written(static_cast<AObject const*>(nullptr)), "");
}

TEST(Buffer, RoundTripsAndSurvivesEachCut) {
    Record record;
    record.small = 0xFEDC;
    record.wide = LLONG_MIN;
    record.text = AString("x\0y", 3);
    AString encoded;
    ASSERT_TRUE(record.Encode(encoded));
    EXPECT_EQ(Hex(encoded), "00,00,00,05,fe,dc,80,00,00,00,00,00,00,00,00,00,00,03,78,00,79,00,00,00,00");

    for (int length = 0; length <= encoded.length(); ++length) {
        Record cut;
        cut.wide = 42;
        ASSERT_TRUE(cut.Decode(encoded.c_str(), length));
        EXPECT_EQ(cut.GetAction(), 5);
        EXPECT_EQ(cut.small, length < 6 ? 0 : 0xFEDC) << length;
        EXPECT_EQ(cut.wide, length < 14 ? 42 : LLONG_MIN) << length;
        EXPECT_EQ(Hex(cut.text), length < 21 ? "" : "78,00,79") << length;
    }
    EXPECT_FALSE(record.Decode(nullptr, 3));

    // One byte of the room stays free.
    std::string room(100, '#');
    int size = encoded.length();
    EXPECT_EQ(record.Encode(nullptr, size), 0);
    EXPECT_EQ(record.Encode(room.data(), size), 0);
    EXPECT_EQ(room, std::string(100, '#'));
    size = encoded.length() + 1;
    EXPECT_EQ(record.Encode(room.data(), size), 1);
    EXPECT_EQ(size, encoded.length());
    EXPECT_EQ(room, std::string(encoded.c_str(), 25) + std::string(75, '#'));
}

TEST(Buffer, ReadsNoTextOfAHostileLength) {
    // A length and "ab" after it, cut to `size` bytes: the length of the text read, and what comes next.
    struct {
        int length, size, text;
        char next;
    } const cases[] = {{0, 0, 0, '#'}, {0, 3, 0, '#'}, {1, 4, 0, '#'},  {2, 6, 2, '#'},      {3, 6, 0, 'a'},
                       {0, 6, 0, 'a'}, {1, 6, 1, 'b'}, {-1, 6, 0, 'a'}, {INT_MAX, 6, 0, 'a'}};
    for (auto const& c : cases) {
        CSarnetBufferWriter writer;
        writer.Write(c.length);
        AString const data((AString(writer.GetBufferData()) += "ab").c_str(), c.size);
        CSarnetBufferReader reader(data);
        AString text("old");
        reader.Read(text);
        EXPECT_EQ(text.length(), c.text) << Hex(data);
        unsigned char next = '#';
        reader.Read(next);
        EXPECT_EQ(next, c.next) << Hex(data);

        reader.Reset();
        char buffer[4] = "old";
        reader.Read(buffer, 3);
        EXPECT_EQ(std::strlen(buffer), data.empty() ? 3U : static_cast<size_t>(c.text)) << Hex(data);
        reader.Reset();
        reader.Read(buffer, 2);
        EXPECT_LT(std::strlen(buffer), data.empty() ? 4U : 2U) << "room for the terminator";
    }
    CSarnetBufferReader reader("\0\0\0\1\0\0\0\2\0\0\0\3", 12);
    char untouched = 'x';
    reader.Read(static_cast<char*>(nullptr), 3);
    reader.Read(&untouched, 0);
    reader.Read(&untouched, INT_MIN);
    EXPECT_EQ(untouched, 'x');
    int value = 0;
    reader.Read(value);
    EXPECT_EQ(value, 3) << "null consumes nothing, no room the length";
    EXPECT_TRUE(CSarnetBufferReader(nullptr, 4).AtEnd());
    EXPECT_TRUE(CSarnetBufferReader("abc", -4).AtEnd());
}

TEST(Buffer, RawBlocksCarryNoLength) {
    _tagSarnetBufferBuffer block;
    AString out("kept");
    int size = 10;
    char room[10];
    EXPECT_FALSE(block.Encode(out));
    EXPECT_STREQ(out.c_str(), "kept");
    EXPECT_EQ(block.Encode(room, size), 1);
    EXPECT_EQ(size, 0);
    EXPECT_FALSE(block.Decode(AString()));
    EXPECT_TRUE(block.Decode(AString("\1\0\2", 3)));
    EXPECT_FALSE(block.Decode("x", 0));
    _tagSarnetBufferBuffer copy;
    copy = block;
    EXPECT_TRUE(block.Decode(AString("\x09")));
    std::unique_ptr<AObject> const clone(copy.Clone());
    EXPECT_TRUE(static_cast<_tagSarnetBufferBuffer const&>(*clone).Encode(out));
    EXPECT_EQ(Hex(out), "01,00,02");
    for (int const space : {3, 4}) {
        size = space;
        EXPECT_EQ(copy.Encode(room, size), space - 3);
        EXPECT_EQ(size, 3);
    }
}
