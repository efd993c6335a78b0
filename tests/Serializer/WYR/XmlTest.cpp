#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <utility>

#include "Serializer/WYR/WyrError.h"
#include "Serializer/WYR/WyrIO.h"
#include "Serializer/WYR/WyrTypeUtil.h"
#include "Serializer/WYR/WyrXmlDepth.h"
#include "Serializer/WYR/WyrXmlReader.h"
#include "Serializer/WYR/WyrXmlWriter.h"

using namespace Ubrix;

namespace {

std::string Repeated(std::string const& text, int count) {
    std::string all;
    while (count-- > 0) {
        all += text;
    }
    return all;
}

int StateOf(std::string const& text) {
    return WyrXmlReader(text.data(), text.size(), WYR_XML_ELEMENTS).state();
}

// A record with each kind of value and a record inside. False from the first step on that fails.
bool WriteRecord(WyrXmlWriter& writer) {
    wyr_datetime_t moment = 0;
    EXPECT_EQ(WyrTypeUtil::str2datetime(&moment, "7-3-9 -7:8:9"), 0);
    auto const date = static_cast<wyr_date_t>(moment);
    auto const time = static_cast<wyr_time_t>(moment >> 32);
    return writer.beginRecord("r") == 0 && writer.beginField("t") == 0 &&
           writer.writeText("a<b>'\"&c", false) == 0 && writer.writeText("<", true) == 0 &&
           writer.endField("t") == 0 && writer.beginRecord("p") == 0 && writer.beginField("i") == 0 &&
           writer.writeIp(0xFF00000A, false) == 0 && writer.endField("i") == 0 &&
           writer.endRecord("p") == 0 && writer.beginField("d") == 0 && writer.writeDate(date, true) == 0 &&
           writer.writeTime(time, true) == 0 && writer.writeDateTime(moment, false) == 0 &&
           writer.endField("d") == 0 && writer.endRecord("r") == 0;
}

}  // namespace

TEST(WyrXmlWriter, WritesBothStylesToFilesAndWithinItsRoom) {
    std::pair<int, std::string> const documents[] = {
        {WYR_XML_ELEMENTS,
         "\n<r>\n\t<t>\na&lt;b&gt;&apos;&quot;&amp;c&lt; \t</t>\n\n\t<p>\n\t\t<i>\n10.0.0.255\t\t</i>\n"
         "\t</p>\n\t<d>\n   7-03-09 -7:08:09    7-03-09 -7:08:09\t</d>\n</r>\n"},
        {WYR_XML_ATTRIBUTES,
         "\n<r>\n\t<ta&lt;b&gt;&apos;&quot;&amp;c&lt; />\n\n\t<p>\n\t\t<i10.0.0.255/>\n"
         "\t</p>\n\t<d   7-03-09 -7:08:09    7-03-09 -7:08:09/>\n</r>\n"}};
    for (auto const& [style, document] : documents) {
        std::FILE* const file = std::fopen("record.xml", "w");
        WyrXmlWriter toFile(file, style);
        EXPECT_TRUE(WriteRecord(toFile));
        EXPECT_EQ(std::fclose(file), 0);
        WyrInput input;
        ASSERT_EQ(input.load("record.xml"), 0);
        EXPECT_EQ(input.content(), document);
        std::string text = document + '#';
        for (size_t size = 0; size <= text.size(); ++size) {
            WyrXmlWriter writer(text.data(), size, style);
            EXPECT_EQ(WriteRecord(writer), size == text.size()) << size;
            EXPECT_EQ(writer.state(), size == text.size() ? 0 : WyrError::WYR_ERR_WRITE_SPACE) << size;
        }
        EXPECT_EQ(text.c_str(), document);
    }

    char text[8192];
    WyrXmlWriter attributes(text, sizeof text, WYR_XML_ATTRIBUTES);
    attributes.beginRecord("r");
    attributes.printf(" a=\"1\"");
    attributes.beginRecord("p");
    attributes.endRecord("p");
    attributes.endRecord("r");
    EXPECT_STREQ(text, "\n<r a=\"1\">\n\t<p/>\n</r>\n");

    WyrXmlWriter deep(text, sizeof text, WYR_XML_ELEMENTS);
    for (int i = 0; i < 40; ++i) {
        deep.beginRecord("d");
    }
    for (int i = 0; i < 40; ++i) {
        deep.endRecord("d");
    }
    std::string const tabs(32, '\t');
    EXPECT_NE(std::string(text).find(">\n" + tabs + "<d/>\n" + tabs + "</d>\n"), std::string::npos);
    EXPECT_EQ(std::string(text).find(tabs + "\t"), std::string::npos);
    EXPECT_NE(std::string(text).find("\n\t\t</d>\n\t</d>\n</d>\n"), std::string::npos);
}

TEST(WyrXmlReader, WalksTheTreeByName) {
    char const text[] =
        "<?xml version='1.0'?><!DOCTYPE r [<!ENTITY x '>'>]><!-- <c> --><r><i> 1 "
        "</i><a><v>x</v></a><i>2</i><j/>"
        "<b> \n </b><i>3\t</other><a><v>y</v></a><!-- <v> "
        "--><e>&#65;&lt;&amp;</e><c><![CDATA[<q>]]></c><p><i>4</i></p></r>";
    WyrXmlReader reader(text, sizeof text - 1, WYR_XML_ELEMENTS);
    ASSERT_EQ(reader.state(), 0);
    ASSERT_EQ(reader.enter("r"), 0);
    for (char const* expected : {"1", "2", "3"}) {
        EXPECT_STREQ(reader.value("i"), expected);
    }
    EXPECT_EQ(reader.value("i"), nullptr);
    EXPECT_EQ(reader.enter("nothing"), 1);
    EXPECT_EQ(reader.value("b"), nullptr);
    EXPECT_EQ(reader.value("j"), nullptr);
    EXPECT_EQ(reader.value("c"), nullptr);
    EXPECT_STREQ(reader.value("e"), "A<&");
    for (char const* expected : {"x", "y"}) {
        ASSERT_EQ(reader.enter("a"), 0);
        EXPECT_STREQ(reader.value("v"), expected);
        reader.leave("a");
    }
    EXPECT_EQ(reader.enter("a"), 1);
    EXPECT_STREQ(reader.value("i"), "1");
    ASSERT_EQ(reader.enter("p"), 0);
    EXPECT_STREQ(reader.value("i"), "4");

    char attributes[] = "<r x=\" 1 \" y='&quot;>' z='  '/>";
    WyrXmlReader inPlace(attributes, WYR_XML_ATTRIBUTES);
    ASSERT_EQ(inPlace.enter("r"), 0);
    EXPECT_STREQ(inPlace.value("x"), "1");
    EXPECT_STREQ(inPlace.value("y"), "\">");
    EXPECT_EQ(inPlace.value("z"), nullptr);
}

TEST(WyrXmlReader, RefusesMalformedDocuments) {
    for (char const* text :
         {"<a>", "<a></a", "<a", "<", "<a b></a>", "<a b=\"></a>", "x", "<a>&#x110000;</a>", "<!--",
          "<a><![CDATA[", "<?", "<!DOCTYPE a [", "<a>&#1", "</a>"}) {
        EXPECT_EQ(StateOf(text), WyrError::WYR_ERR_XML_PARSE) << text;
    }
    for (char const* text : {"", "<a>&</a>", "<a>&am</b>", "<a b='&l'/>", "<a/><b/>"}) {
        EXPECT_EQ(StateOf(text), 0) << text;
    }
}

TEST(WyrXmlReader, BoundsTheDepthBeforeParsing) {
    // What opens a level in each form, what closes it, and whether a parser goes down a level for it.
    struct {
        char const* open;
        char const* close;
        bool nests;
    } const forms[] = {{"<a>", "</a>", true},
                       {"<a b='/>' c=\"'\">", "</a>", true},
                       {"<a\"b>", "</a>", true},
                       {"<a \"b='x'>", "</a>", true},
                       {"<a<b>", "</>", true},
                       {"<b></<!--><a>", "</a>", true},
                       {"<!--</a></a>--><a>", "</a>", true},
                       {"<![CDATA[</a></a>]]><a>", "</a>", true},
                       {"<?p ></a>?><a>", "</a>", true},
                       {"<!X</a><a>", "</a>", true},
                       {"<a b='>'/>", "", false},
                       {"<!-- <a> -->", "", false},
                       {"<a></<a>", "", false}};
    for (auto const& form : forms) {
        auto nested = [&](int depth) {
            return "<r>" + Repeated(form.open, depth - 1) + Repeated(form.close, depth - 1) + "</r>";
        };
        EXPECT_EQ(StateOf(nested(kMaxXmlDepth)), 0) << form.open;
        EXPECT_EQ(StateOf(nested(kMaxXmlDepth + 1)), form.nests ? WyrError::WYR_ERR_XML_PARSE : 0)
            << form.open;
    }
    EXPECT_EQ(StateOf(Repeated("<a>", 100000)), WyrError::WYR_ERR_XML_PARSE);
    std::string const full = Repeated("<a>", kMaxXmlDepth) + "<b/>" + Repeated("</a>", kMaxXmlDepth);
    EXPECT_EQ(StateOf(full), WyrError::WYR_ERR_XML_PARSE) << "an element that closes itself is a level too";
}
