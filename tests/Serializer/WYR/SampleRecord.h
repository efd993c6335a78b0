// A record written on the interface as another module would: a scalar, texts, a date, a time, an address, a
// nested record, and an array with a refer count, which came with version 2.
#pragma once

#include <cstring>
#include <string>

#include "Serializer/WYR/IWyrObject.h"
#include "Serializer/WYR/WyrBufUtil.h"
#include "Serializer/WYR/WyrError.h"
#include "Serializer/WYR/WyrPack.h"
#include "Serializer/WYR/WyrParse.h"
#include "Serializer/WYR/WyrTypeUtil.h"

// Passes the first failure on.
#define SAMPLE_TRY(step)                      \
    if (int const code = (step); code != 0) { \
        return code;                          \
    }

namespace Ubrix {

// A field as an element or as an attribute of the open tag; `write` puts the value.
template <class Write>
int WriteField(WyrXmlWriter& writer, char const* name, Write write) {
    bool const asAttribute = writer.style() == WYR_XML_ATTRIBUTES;
    SAMPLE_TRY(asAttribute ? writer.printf(" %s=\"", name) : writer.beginField(name));
    SAMPLE_TRY(write());
    return asAttribute ? writer.printf("\"") : writer.endField(name);
}

// The value of a field to be parsed; an empty text for one that is missing.
inline std::string FieldText(WyrXmlReader& reader, char const* name) {
    char const* const text = reader.value(name);
    return text == nullptr ? std::string() : text;
}

class SamplePlace : public IWyrObject {
public:
    int pack(WyrBuf& buf, int) const override {
        SAMPLE_TRY(buf.writeBytes(&ip, sizeof ip));
        return WyrPack::writeWideString(buf, label, 8);
    }
    int unpack(WyrBuf& buf, int) override {
        SAMPLE_TRY(buf.readBytes(&ip, sizeof ip));
        return WyrPack::readWideString(buf, label, 8);
    }
    int visualize(WyrBuf& buf, int indent, char separator) const override {
        SAMPLE_TRY(WyrBufUtil::printIp(buf, indent, separator, "ip", ip));
        return WyrBufUtil::printWideString(buf, indent, separator, "label", label);
    }
    int toXml(WyrXmlWriter& writer, char const* name, int) const override {
        SAMPLE_TRY(writer.beginRecord(name));
        SAMPLE_TRY(WriteField(writer, "ip", [&] { return writer.writeIp(ip, false); }));
        return writer.endRecord(name);
    }
    int fromXml(WyrXmlReader& reader, char const* name, int) override {
        if (reader.enter(name) != 0) {
            return WyrError::WYR_ERR_XML_ROOT;
        }
        int const result = WyrParse::parseIp(&ip, FieldText(reader, "ip").data(), nullptr, nullptr);
        reader.leave(name);
        return result;
    }

    wyr_ip_t ip = 0;
    unsigned short label[8] = {};
};

class SampleRecord : public IWyrObject {
public:
    int currentVersion() const override { return 2; }

    int pack(WyrBuf& buf, int cutVersion) const override {
        int version = 0;
        SAMPLE_TRY(WyrPack::chooseVersion(cutVersion, baseVersion(), currentVersion(), &version));
        SAMPLE_TRY(WyrPack::checkRefer(scoreCount, kScores));
        SAMPLE_TRY(WyrPack::writeInteger(buf, static_cast<std::uint8_t>(version)));
        SAMPLE_TRY(WyrPack::writeInteger(buf, static_cast<std::uint16_t>(level)));
        SAMPLE_TRY(WyrPack::writeString(buf, name, sizeof name));
        SAMPLE_TRY(WyrPack::writeInteger(buf, date));
        SAMPLE_TRY(WyrPack::writeInteger(buf, time));
        SAMPLE_TRY(place.pack(buf, version));
        return version < 2 ? 0 : packScores(buf);
    }
    int unpack(WyrBuf& buf, int) override {
        std::uint8_t version = 0;
        std::uint16_t bits = 0;
        SAMPLE_TRY(WyrPack::readInteger(buf, &version));
        SAMPLE_TRY(WyrPack::checkVersionFromNet(version, baseVersion(), currentVersion()));
        SAMPLE_TRY(WyrPack::readInteger(buf, &bits));
        SAMPLE_TRY(WyrPack::readString(buf, name, sizeof name));
        SAMPLE_TRY(WyrPack::readInteger(buf, &date));
        SAMPLE_TRY(WyrPack::readInteger(buf, &time));
        SAMPLE_TRY(place.unpack(buf, version));
        level = static_cast<short>(bits);
        return version < 2 ? 0 : unpackScores(buf);
    }
    int visualize(WyrBuf& buf, int indent, char separator) const override {
        SAMPLE_TRY(WyrBufUtil::printValue(buf, indent, separator, "level", "%d", level));
        SAMPLE_TRY(WyrBufUtil::printString(buf, indent, separator, "name", name));
        SAMPLE_TRY(WyrBufUtil::printDate(buf, indent, separator, "date", date));
        SAMPLE_TRY(WyrBufUtil::printTime(buf, indent, separator, "time", time));
        SAMPLE_TRY(WyrBufUtil::printName(buf, indent, separator, "place", true));
        SAMPLE_TRY(place.visualize(buf, indent + 1, separator));
        SAMPLE_TRY(WyrBufUtil::printArrayName(buf, indent, "scores", static_cast<size_t>(scoreCount)));
        SAMPLE_TRY(buf.writeCharWithNull(separator));
        for (unsigned i = 0; i < static_cast<unsigned>(scoreCount); ++i) {
            SAMPLE_TRY(WyrBufUtil::printValue(buf, indent + 1, separator, "scores", i, "%d", scores[i]));
        }
        return 0;
    }
    int visualizeFile(std::FILE* file, int indent, char separator) const override {
        char memory[512];
        WyrBuf buf(memory, sizeof memory);
        SAMPLE_TRY(visualize(buf, indent, separator));
        return WyrOutput(file).write(memory, buf.position);
    }
    int toXml(WyrXmlWriter& writer, char const* element, int cutVersion) const override {
        SAMPLE_TRY(writer.beginRecord(element));
        SAMPLE_TRY(WriteField(writer, "level", [&] { return writer.printf("%d", level); }));
        SAMPLE_TRY(WriteField(writer, "name", [&] { return writer.writeText(name, false); }));
        SAMPLE_TRY(WriteField(writer, "date", [&] { return writer.writeDate(date, false); }));
        SAMPLE_TRY(WriteField(writer, "time", [&] { return writer.writeTime(time, false); }));
        SAMPLE_TRY(WriteField(writer, "scores", [&] { return writeScores(writer); }));
        SAMPLE_TRY(place.toXml(writer, "place", cutVersion));
        return writer.endRecord(element);
    }
    int toXmlMemory(char* memory, size_t size, size_t* usedSize, int style, int cutVersion) const override {
        WyrXmlWriter writer(memory, size, style);
        SAMPLE_TRY(toXml(writer, "record", cutVersion));
        *usedSize = writer.used();
        return 0;
    }
    int fromXmlMemory(char const* text, size_t size, int style, int cutVersion) override {
        WyrXmlReader reader(text, size, style);
        return reader.state() != 0 ? reader.state() : fromXml(reader, "record", cutVersion);
    }
    int fromXml(WyrXmlReader& reader, char const* element, int cutVersion) override {
        if (reader.enter(element) != 0) {
            return WyrError::WYR_ERR_XML_ROOT;
        }
        std::snprintf(name, sizeof name, "%s", FieldText(reader, "name").c_str());
        unsigned found = 0;
        std::string text = FieldText(reader, "level");
        SAMPLE_TRY(WyrParse::parseInt16(&level, text.data(), nullptr, 1, nullptr, nullptr));
        SAMPLE_TRY(WyrParse::parseDate(&date, FieldText(reader, "date").data(), nullptr, nullptr));
        SAMPLE_TRY(WyrParse::parseTime(&time, FieldText(reader, "time").data(), nullptr, nullptr));
        text = FieldText(reader, "scores");
        SAMPLE_TRY(WyrParse::parseInt32Array(scores, kScores, text.data(), &found, 0, nullptr, nullptr));
        scoreCount = static_cast<int>(found);
        SAMPLE_TRY(place.fromXml(reader, "place", cutVersion));
        reader.leave(element);
        return 0;
    }

    static constexpr unsigned kScores = 4;

    short level = 0;
    char name[16] = {};
    wyr_date_t date = 0;
    wyr_time_t time = 0;
    SamplePlace place;
    int scoreCount = 0;
    int scores[kScores] = {};

private:
    int packScores(WyrBuf& buf) const {
        int result = WyrPack::writeInteger(buf, static_cast<std::uint32_t>(scoreCount));
        for (int i = 0; i < scoreCount && result == 0; ++i) {
            result = WyrPack::writeInteger(buf, static_cast<std::uint32_t>(scores[i]));
        }
        return result;
    }
    int unpackScores(WyrBuf& buf) {
        std::uint32_t bits = 0;
        SAMPLE_TRY(WyrPack::readInteger(buf, &bits));
        SAMPLE_TRY(WyrPack::checkRefer(static_cast<int>(bits), kScores));
        scoreCount = static_cast<int>(bits);
        for (int i = 0; i < scoreCount; ++i) {
            SAMPLE_TRY(WyrPack::readInteger(buf, &bits));
            scores[i] = static_cast<int>(bits);
        }
        return 0;
    }
    int writeScores(WyrXmlWriter& writer) const {
        for (int i = 0; i < scoreCount; ++i) {
            SAMPLE_TRY(writer.writeText(std::to_string(scores[i]).c_str(), true));
        }
        return 0;
    }
};

}  // namespace Ubrix
