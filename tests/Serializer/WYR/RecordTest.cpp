#include <gtest/gtest.h>

#include "Serializer/WYR/SampleRecord.h"

using namespace Ubrix;

namespace {

// The sample record in both styles, but for the label of its place.
constexpr char const* kDocuments[] = {
    "\n<record>\n\t<level>\n-300\t</level>\n\t<name>\na&lt;&quot;&amp;b\t</name>\n\t<date>\n2024-02-29"
    "\t</date>\n\t<time>\n-7:08:09\t</time>\n\t<scores>\n70000 -1 \t</scores>\n\n\t<place>\n\t\t<ip>\n"
    "10.0.0.255\t\t</ip>\n\t</place>\n</record>\n",
    "\n<record level=\"-300\" name=\"a&lt;&quot;&amp;b\" date=\"2024-02-29\" time=\"-7:08:09\" "
    "scores=\"70000 -1 \">\n\t<place ip=\"10.0.0.255\"/>\n</record>\n"};

void Read(SampleRecord& record, int style) {
    EXPECT_EQ(record.fromXmlMemory(kDocuments[style], std::strlen(kDocuments[style]), style, 0), 0);
    record.place.label[0] = 0x4E2D;
}

std::string Visualized(SampleRecord const& record) {
    char memory[512];
    WyrBuf buf(memory, sizeof memory);
    EXPECT_EQ(record.visualize(buf, 1, '\n'), 0);
    return memory;
}

constexpr char kLines[] =
    "    level: -300\n    name: a<\"&b\n    date: 2024-02-29\n    time: -7:08:09\n"
    "    place\n        ip: 10.0.0.255\n        label:  0x4e2d 0x0000\n"
    "    scores[0 : 1]:\n        scores[0]: 70000\n        scores[1]: -1\n";

}  // namespace

TEST(WyrRecord, PacksAndUnpacksForEachVersion) {
    SampleRecord record;
    Read(record, WYR_XML_ELEMENTS);
    char memory[128];
    for (int version : {0, 1, 2, 9}) {
        WyrBuf out(memory, sizeof memory);
        ASSERT_EQ(record.pack(out, version), 0);
        SampleRecord back;
        WyrBuf in(memory, out.position);
        ASSERT_EQ(back.unpack(in, 0), 0);
        EXPECT_EQ(in.position, in.length);
        EXPECT_EQ(back.scoreCount, version == 1 ? 0 : 2);
        back.scoreCount = 2;
        std::memcpy(back.scores, record.scores, sizeof back.scores);
        EXPECT_EQ(Visualized(back), kLines);
        for (size_t size = 0; size < out.position; ++size) {
            WyrBuf shortOut(memory + 64, size);
            EXPECT_EQ(record.pack(shortOut, version), WyrError::WYR_ERR_WRITE_SPACE) << size;
            WyrBuf shortIn(memory, size);
            EXPECT_EQ(back.unpack(shortIn, 0), WyrError::WYR_ERR_READ_DATA) << size;
        }
    }
    WyrBuf out(memory, sizeof memory);
    ASSERT_EQ(record.pack(out, 0), 0);
    char text[256] = "";
    ASSERT_EQ(WyrBuf(memory, out.position).dumpHex(text, sizeof text, nullptr), 0);
    EXPECT_STREQ(
        text, "02FED400000006613C222662001D0207E80908FFF90A0000FF000000024E2D00000000000200011170FFFFFFFF");
}

TEST(WyrRecord, RefusesWhatAMessageMayNotSay) {
    SampleRecord record;
    Read(record, WYR_XML_ELEMENTS);
    char memory[128];
    WyrBuf out(memory, sizeof memory);
    EXPECT_EQ(record.pack(out, -1), WyrError::WYR_ERR_CUTVER_BELOW_BASE);
    record.scoreCount = -1;
    EXPECT_EQ(record.pack(out, 0), WyrError::WYR_ERR_REFER_NEGATIVE);
    record.scoreCount = 5;
    EXPECT_EQ(record.pack(out, 0), WyrError::WYR_ERR_REFER_TOO_BIG);
    record.scoreCount = 2;
    ASSERT_EQ(record.pack(out, 0), 0);
    // The name's count stands at 3, the name at 7; the score count is 12 bytes before the end.
    std::tuple<size_t, char, int> const faults[] = {
        {0, 3, WyrError::WYR_ERR_CUTVER_FROM_NET},
        {0, 0, WyrError::WYR_ERR_CUTVER_FROM_NET},
        {6, 0, WyrError::WYR_ERR_STRING_TOO_SHORT},
        {6, 17, WyrError::WYR_ERR_STRING_TOO_LONG},
        {6, 5, WyrError::WYR_ERR_STRING_SIZEINFO},
        {8, 0, WyrError::WYR_ERR_STRING_SIZEINFO},
        {out.position - 9, 5, WyrError::WYR_ERR_REFER_TOO_BIG},
        {out.position - 12, '\xFF', WyrError::WYR_ERR_REFER_NEGATIVE}};
    for (auto const& [at, byte, code] : faults) {
        char const whole = memory[at];
        memory[at] = byte;
        WyrBuf in(memory, out.position);
        EXPECT_EQ(SampleRecord().unpack(in, 0), code) << at;
        memory[at] = whole;
    }
}

TEST(WyrRecord, PrintsToFilesAndXmlAndComesBack) {
    SampleRecord record;
    Read(record, WYR_XML_ELEMENTS);
    std::FILE* file = std::fopen("record.txt", "w");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(record.visualizeFile(file, 1, '\n'), 0);
    EXPECT_EQ(std::fclose(file), 0);
    WyrInput input;
    ASSERT_EQ(input.load("record.txt"), 0);
    EXPECT_STREQ(input.content(), kLines);

    for (int style : {WYR_XML_ELEMENTS, WYR_XML_ATTRIBUTES}) {
        char text[512];
        size_t used = 0;
        ASSERT_EQ(record.toXmlMemory(text, sizeof text, &used, style, 0), 0);
        EXPECT_STREQ(text, kDocuments[style]);
        SampleRecord back;
        Read(back, style);
        EXPECT_EQ(Visualized(back), kLines);
        EXPECT_EQ(back.fromXmlMemory("<other/>", 8, style, 0), WyrError::WYR_ERR_XML_ROOT);
        for (size_t size = 0; size <= used; ++size) {
            EXPECT_EQ(record.toXmlMemory(text, size, &used, style, 0), WyrError::WYR_ERR_WRITE_SPACE) << size;
        }
    }
}

TEST(WyrRecord, NeverPassesForDoneWhatItDoesNotSupport) {
    struct : IWyrObject {
    } bare;
    char text[9];
    WyrBuf buf(text, sizeof text);
    for (int code : {bare.pack(buf, 0), bare.packMemory(text, 9, nullptr, 0), bare.unpack(buf, 0),
                     bare.unpackMemory(text, 9, nullptr, 0), bare.packTlv(buf, 0, 0),
                     bare.packTlvMemory(text, 9, nullptr, 0, 0), bare.unpackTlv(buf, 9, nullptr),
                     bare.unpackTlvMemory(text, 9, nullptr, nullptr), bare.visualize(buf, 0, 'x'),
                     bare.visualizeFile(nullptr, 0, 'x'), bare.toXmlMemory(text, 9, nullptr, 0, 0),
                     bare.fromXmlMemory(text, 9, 0, 0)}) {
        EXPECT_EQ(code, WyrError::WYR_ERR_NOT_IMPLEMENTED);
    }
}
