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

namespace Ubrix {

// The first code that isn't 0.
template <class... Steps>
int FirstFailure(Steps... steps) {
    int result = 0;
    ((result = result == 0 ? steps() : result), ...);
    return result;
}

// A field as an element or as an attribute of the open tag; `write` puts the value.
template <class Write>
int WriteField(WyrXmlWriter& writer, char const* name, Write write) {
    bool const asAttribute = writer.style() == WYR_XML_ATTRIBUTES;
    return FirstFailure([&] { return asAttribute ? writer.printf(" %s=\"", name) : writer.beginField(name); },
                        write, [&] { return asAttribute ? writer.printf("\"") : writer.endField(name); });
}

// The value of a field to be parsed; an empty text for one that is missing.
inline std::string FieldText(WyrXmlReader& reader, char const* name) {
    char const* const text = reader.value(name);
    return text == nullptr ? std::string() : text;
}

class SamplePlace : public IWyrObject {
public:
    int pack(WyrBuf& buf, int) const override {
        return FirstFailure([&] { return buf.writeBytes(&ip, sizeof ip); },
                            [&] { return WyrPack::writeWideString(buf, label, 8); });
    }
    int unpack(WyrBuf& buf, int) override {
        return FirstFailure([&] { return buf.readBytes(&ip, sizeof ip); },
                            [&] { return WyrPack::readWideString(buf, label, 8); });
    }
    int visualize(WyrBuf& buf, int indent, char separator) const override {
        return FirstFailure(
            [&] { return WyrBufUtil::printIp(buf, indent, separator, "ip", ip); },
            [&] { return WyrBufUtil::printWideString(buf, indent, separator, "label", label); });
    }
    int toXml(WyrXmlWriter& writer, char const* name, int) const override {
        return FirstFailure(
            [&] { return writer.beginRecord(name); },
            [&] { return WriteField(writer, "ip", [&] { return writer.writeIp(ip, false); }); },
            [&] { return writer.endRecord(name); });
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
    static constexpr unsigned kScores = 4;

    int currentVersion() const override { return 2; }
    char const* identity() const override { return "sample.Record"; }

    int pack(WyrBuf& buf, int cutVersion) const override {
        int version = 0;
        return FirstFailure(
            [&] { return WyrPack::chooseVersion(cutVersion, baseVersion(), currentVersion(), &version); },
            [&] { return WyrPack::checkRefer(scoreCount, kScores); },
            [&] { return WyrPack::writeInteger(buf, static_cast<std::uint8_t>(version)); },
            [&] { return WyrPack::writeInteger(buf, static_cast<std::uint16_t>(level)); },
            [&] { return WyrPack::writeString(buf, name, sizeof name); },
            [&] { return WyrPack::writeInteger(buf, date); },
            [&] { return WyrPack::writeInteger(buf, time); }, [&] { return place.pack(buf, version); },
            [&] { return version < 2 ? 0 : packScores(buf); });
    }
    int unpack(WyrBuf& buf, int) override {
        std::uint8_t version = 0;
        std::uint16_t bits = 0;
        int const result = FirstFailure(
            [&] { return WyrPack::readInteger(buf, &version); },
            [&] { return WyrPack::checkVersionFromNet(version, baseVersion(), currentVersion()); },
            [&] { return WyrPack::readInteger(buf, &bits); },
            [&] { return WyrPack::readString(buf, name, sizeof name); },
            [&] { return WyrPack::readInteger(buf, &date); },
            [&] { return WyrPack::readInteger(buf, &time); }, [&] { return place.unpack(buf, version); },
            [&] { return version < 2 ? 0 : unpackScores(buf); });
        level = static_cast<short>(bits);
        return result;
    }
    int visualize(WyrBuf& buf, int indent, char separator) const override {
        return FirstFailure(
            [&] { return WyrBufUtil::printValue(buf, indent, separator, "level", "%d", level); },
            [&] { return WyrBufUtil::printString(buf, indent, separator, "name", name); },
            [&] { return WyrBufUtil::printDate(buf, indent, separator, "date", date); },
            [&] { return WyrBufUtil::printTime(buf, indent, separator, "time", time); },
            [&] { return WyrBufUtil::printName(buf, indent, separator, "place", true); },
            [&] { return place.visualize(buf, indent + 1, separator); },
            [&] {
                return WyrBufUtil::printArrayName(buf, indent, "scores", static_cast<size_t>(scoreCount));
            },
            [&] { return buf.writeCharWithNull(separator); },
            [&] { return printScores(buf, indent, separator); });
    }
    int visualizeFile(std::FILE* file, int indent, char separator) const override {
        char memory[512];
        WyrBuf buf(memory, sizeof memory);
        WyrOutput output(file);
        int const result = visualize(buf, indent, separator);
        return result == 0 ? output.write(memory, buf.position) : result;
    }
    int toXml(WyrXmlWriter& writer, char const* element, int cutVersion) const override {
        return FirstFailure(
            [&] { return writer.beginRecord(element); },
            [&] { return WriteField(writer, "level", [&] { return writer.printf("%d", level); }); },
            [&] { return WriteField(writer, "name", [&] { return writer.writeText(name, false); }); },
            [&] { return WriteField(writer, "date", [&] { return writer.writeDate(date, false); }); },
            [&] { return WriteField(writer, "time", [&] { return writer.writeTime(time, false); }); },
            [&] { return WriteField(writer, "scores", [&] { return writeScores(writer); }); },
            [&] { return place.toXml(writer, "place", cutVersion); },
            [&] { return writer.endRecord(element); });
    }
    int toXmlMemory(char* memory, size_t size, size_t* usedSize, int style, int cutVersion) const override {
        WyrXmlWriter writer(memory, size, style);
        int const result = toXml(writer, "record", cutVersion);
        *usedSize = writer.used();
        return result;
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
        int const result = FirstFailure(
            [&] {
                return WyrParse::parseInt16(&level, FieldText(reader, "level").data(), nullptr, 1, nullptr,
                                            nullptr);
            },
            [&] { return WyrParse::parseDate(&date, FieldText(reader, "date").data(), nullptr, nullptr); },
            [&] { return WyrParse::parseTime(&time, FieldText(reader, "time").data(), nullptr, nullptr); },
            [&] {
                return WyrParse::parseInt32Array(scores, kScores, FieldText(reader, "scores").data(), &found,
                                                 0, nullptr, nullptr);
            },
            [&] { return place.fromXml(reader, "place", cutVersion); });
        scoreCount = static_cast<int>(found);
        reader.leave(element);
        return result;
    }

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
        int result = FirstFailure([&] { return WyrPack::readInteger(buf, &bits); },
                                  [&] { return WyrPack::checkRefer(static_cast<int>(bits), kScores); });
        scoreCount = result == 0 ? static_cast<int>(bits) : 0;
        for (int i = 0; i < scoreCount && result == 0; ++i) {
            result = WyrPack::readInteger(buf, &bits);
            scores[i] = static_cast<int>(bits);
        }
        return result;
    }
    int printScores(WyrBuf& buf, int indent, char separator) const {
        int result = 0;
        for (int i = 0; i < scoreCount && result == 0; ++i) {
            result = WyrBufUtil::printValue(buf, indent + 1, separator, "scores", static_cast<unsigned>(i),
                                            "%d", scores[i]);
        }
        return result;
    }
    int writeScores(WyrXmlWriter& writer) const {
        int result = 0;
        for (int i = 0; i < scoreCount && result == 0; ++i) {
            result = writer.writeText(std::to_string(scores[i]).c_str(), true);
        }
        return result;
    }
};

}  // namespace Ubrix
