#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <tuple>

#include "document/dtc_convert.h"
#include "document/import_document.h"
#include "document/xml_exception.h"
#include "document/xml_tag.h"
#include "tests/host.h"
#include "tests/rooms.h"

namespace {

using namespace VSimpleXMLCreation;
using NTest::MakeTable;
using NTest::Progress;

// What the call returns, or the message that it throws.
template <typename Call>
std::string ResultOf(Call call) {
    try {
        return call();
    } catch (const VSimpleXMLException& exception) {
        return NTest::Utf8(exception.GetMessage());
    }
}

// ---- DTC numbers ----

TEST(Document, ConvertsDtcNumbers) {
    enum Flags { kNone = 0, kHex = 1, kSae = 2, kBoth = 3 };
    // Texts and their numbers; '_' stands for a blank.
    const std::pair<Flags, const char*> rows[] = {
        {kSae,
         "P0123=291 C1234=21044 B0001=32769 P01=1 B123456=9581654 P0123__=291 P3aBf=15039 U3FFFFFFF=-1"},
        {kSae, "U00000001=-1073741823 U3F=255 p0123=0 _P0123=0 1234=1234 ___=0 =0"},
        {kBoth, "P0123=291 U3F=255 0x1A2B=6699 1A2B=6699 =0 ___=0"},
        {kHex, "B01=2817 1A2B=6699 1a2b=6699 _1A_=26 0xFFFFFFFF=-1"},
        // Other characters are digits too: x is one of 65, a blank of -16, G and @ of 16, / of -1.
        {kHex, "_0x12=16658 1_A=-246 G@=272 12/=-1"},
        {kNone,
         "0x1A2B=6699 0x1a2b_=6699 0x=0 0xFFFFFFFF=-1 0x80000000=-2147483648 0xF00000001=1 0X12=0 _0x12=0"},
        {kNone,
         "P0123=0 P01=0 =0 __+12x9=12 -5=-5 -_5=0 --5=0 abc=0 2147483647=2147483647 2147483648=2147483647"},
        {kNone, "-2147483648=-2147483648 -2147483649=-2147483648 99999999999999999999999=2147483647"},
        {kNone, "-18446744073709551617=-2147483648"},
    };
    for (const auto& [flags, cases] : rows) {
        std::istringstream items(cases);
        for (std::string item; items >> item;) {
            const std::size_t equals = item.find('=');
            const std::string text = NTest::ReplaceAll(item.substr(0, equals), "_", " ");
            const VDTCConvert converter(std::u16string(text.begin(), text.end()), (flags & kHex) != 0,
                                        (flags & kSae) != 0);
            EXPECT_EQ(NTest::Utf8(converter.ToString()), item.substr(equals + 1)) << item << ", " << flags;
            EXPECT_EQ(std::to_string(converter.GetValue()), item.substr(equals + 1));
        }
    }
}

TEST(Document, ParsesSaeCodesOfAnyLetter) {
    const auto result = [](std::u16string_view text) {
        VDTCConvert converter(u"4711", false, false);
        const std::string number = ResultOf([&] {
            converter.ParseSae(text);
            return NTest::Utf8(converter.ToString());
        });
        EXPECT_EQ(converter.GetValue() == 0, number.starts_with("Given"));
        return number;
    };
    for (const char16_t* text : {u"X0123", u"10123", u"c0123"}) EXPECT_EQ(result(text), "291");
    const std::string begin = "Given SAE DTC number ";
    const std::string end = " has invalid length, expected 3, 5, 7 or 9 characters";
    for (const char16_t* text : {u"", u"P", u"P1", u"P012", u"U0000001", u"B12345678A", u"P0123456789"}) {
        EXPECT_EQ(result(text), begin + NTest::Utf8(text) + end);
    }
    const std::string fits(51, 'P');
    EXPECT_EQ(result(std::u16string(51, u'P') + u"QRS"), begin + fits + "QR" + end);
    EXPECT_EQ(result(std::u16string(51, u'P') + u"😀R"), begin + fits + "\xF0\x9F\x98\x80" + end);
    EXPECT_EQ(result(std::u16string(52, u'P') + u"😀"), begin + fits + "P" + end);
    for (const char16_t* text : {u"P4123", u"CF1", u"U4FFFFF", u"P80000000"}) {
        EXPECT_EQ(result(text),
                  "Given SAE DTC '" + NTest::Utf8(text) + "' is invalid, top most two bits must be zero.");
    }
}

// ---- Element tree ----

std::u16string Printed(const VXmlTag& element) { return std::u16string(element.Print().View()); }

TEST(Document, PrintsAttributes) {
    VXmlTag element(u"A");
    EXPECT_EQ(Printed(element), u"<A/>\n");
    EXPECT_TRUE(element.SetAttribute(u"variant", u"1", false));
    EXPECT_EQ(Printed(element), u"<A variant=\"1\" />\n");
    EXPECT_TRUE(element.SetAttribute(u"diaginstance", u"", true));
    EXPECT_TRUE(element.SetAttribute(u"variants", u"<&lt;>\"'", true));
    EXPECT_EQ(Printed(element), u"<A diaginstance=\"\" variant=\"1\" variants=\"&lt;&amp;lt;&gt;\"'\" />\n");
    EXPECT_FALSE(element.SetAttribute(u"variants", u"<&lt;>\"'", false));
    EXPECT_FALSE(element.SetAttribute(u"variant", u"longer than before", false));
    EXPECT_FALSE(element.SetNumberAttribute(u"diaginstance", std::numeric_limits<std::int32_t>::min()));
    EXPECT_TRUE(element.SetNumberAttribute(u"Z", 7));
    EXPECT_EQ(Printed(element),
              u"<A Z=\"7\" diaginstance=\"-2147483648\" variant=\"longer than before\" "
              u"variants=\"<&lt;>\"'\" />\n");
}

TEST(Document, PrintsTextsBehindChildren) {
    VXmlTag root(u"A");
    root.SetText(u"&&<\n>\x1\xE4😀", true);
    EXPECT_EQ(Printed(root), u"<A>&amp;&amp;&lt;\n&gt;\x1\xE4😀</A>\n");
    root.SetText(u"&&<\n>", false);
    EXPECT_EQ(Printed(root), u"<A>&&<\n></A>\n");
    root.SetText(u"", true);
    EXPECT_EQ(Printed(root), u"<A/>\n");
    root.ReferToText(u"a<b");
    EXPECT_EQ(Printed(root), u"<A>a&lt;b</A>\n");
    root.ReferToText(u"text");
    VXmlTag* const child = root.AddChild(u"B");
    child->AddChild(u"C")->SetNumberAttribute(u"n", 7);
    root.AddChild(u"<B>");
    EXPECT_EQ(Printed(root), u"<A><B><C n=\"7\" />\n</B>\n<<B>/>\ntext</A>\n");
    child->SetText(u"its own", true);
    EXPECT_EQ(Printed(root), u"<A><B><C n=\"7\" />\nits own</B>\n<<B>/>\ntext</A>\n");
    EXPECT_EQ(Printed(*child), u"<B><C n=\"7\" />\nits own</B>\n");
}

// ---- From the table to the document ----

struct Built {
    std::string body;  // from the service mapping to the last DTC; the message if there is no document
    std::vector<std::u16string> messages;
};

Built Build(std::u16string_view table, std::u16string_view instance = u"",
            std::u16string_view variant = u"") {
    const Progress progress;
    VCSVReader::VLogObject log(true);
    NTest::TestHeap heap(u"", &log, MakeTable(table));
    heap.ReadData();
    NPlatform::TextBuffer result;
    result.Append(u"unchanged");
    const std::string body = ResultOf([&] {
        BuildImportDocument(*heap.GetIterator(), result, log, instance, variant, {u"V", u"VS"}, {u"S", u"VS"},
                            {u"T", u"S"});
        const std::string document = NTest::Utf8(result.View());
        const std::size_t begin = document.find("<SERVICEMAPPING");
        return document.substr(begin, document.find("</DTCCOLLECTION>") - begin);
    });
    EXPECT_EQ(result.View() == u"unchanged", body.starts_with("Given"));
    return {body, Progress::Messages()};
}

TEST(Document, NumbersItsDtcs) {
    const std::string length = " has invalid length, expected 3, 5, 7 or 9 characters";
    // Tables, and the numbers of all their DTCs: a blank behind each, only the blank where there is none.
    const std::pair<const char16_t*, std::string> rows[] = {
        {u"DTC|Text", ""},
        // One number: what some cells look like decides how all are read.
        {u"DTC|Text\nP0123|\nC1234|", "291 21044 "},
        {u"DTC|Text\np0123|\nu3f|", "291 255 "},
        {u"DTC|Text\n1234|\n-5|\n|\n \xA0\t\x2003 12|\nx|", "1234 -5 0 12 0 "},
        {u"DTC|Text\n1234|\n1A2B|", "4660 6699 "},
        {u"DTC|Text\n10|\n0X1a2b|", "16 6699 "},
        {u"DTC|Text\n10|\n0x12|\n0X12|", "10 18 18 "},
        {u"DTC|Text\nU3F|\n10|", "7743 16 "},
        {u"DTC|Text\nB012345|\n10|", "8463173 16 "},
        {u"DTC|Text\n0xFFFFFFFF|\n0x80000000|", "-1 -2147483648 "},
        {u"DTC|Text\nP0123|\nP01234|", "Given SAE DTC number P01234" + length},
        {u"DTC|Text\nP0123|\np7fff|", "Given SAE DTC 'P7FFF' is invalid, top most two bits must be zero."},
        {u" DTC|Failure Type|x\n0x12|0x34|", "18 "},
        {u"|Text\n12|a", " "},
        // SPN and FMI
        {u"SPN|FMI|Text\n520192|31|\n1|2|\n256|0|\n65536|0|", "61695 65538 256 32 "},
        {u"spn|Fmi\n7|4", "458756 "},
        {u"SPN|FMI|Text\n524288|255|\n-1|0|\n |x|\n 1a| 3b|\n0|-1|", "255 16777184 0 65539 -1 "},
        // Base and failure type
        {u"BASEDTC|FTB|Text\n0x12|0x34|\n18|52|", "4660 4660 "},
        {u"BaseDTC|ftb|Text\n0x1f|0X1f|\n0X1f|1C|", "7967 1 "},
        {u"DTC|Failure Type|Text\n|1|\n0x800000|0x100|\n0x1000001|-1|", "1 -2147483392 -1 "},
        {u"DTC|Failure Type|Text\nP0123|0x1C|\nu01|1|\n12345|0|\n123|0|", "74524 49409 2311424 8960 "},
        {u"DTC|Failure Type|Text\nP0123|0x1C|\n|1|", "Given SAE DTC number " + length},
    };
    for (const auto& [table, expected] : rows) {
        const std::string body = Build(table).body;
        std::string numbers = body.starts_with("<") ? "" : body;
        for (std::size_t at = 0; (at = body.find("<DTC", at)) != std::string::npos; ++at) {
            constexpr std::string_view kBegin = "<DTC number=\"";
            const std::size_t begin = at + kBegin.size();
            if (body.compare(at, kBegin.size(), kBegin) == 0) {
                numbers += body.substr(begin, body.find('"', begin) - begin) + " ";
            } else if (body.compare(at, 5, "<DTC>") == 0) {
                numbers += " ";
            }
        }
        EXPECT_EQ(numbers, expected) << NTest::Utf8(table);
    }
}

TEST(Document, WritesEachRow) {
    std::u16string table = u"DTC|Text|S|T";
    std::string body = R"(<SERVICEMAPPING/>
<RECORDTEMPLATEMAPPING><ITEMMAPPING id="_1" type="A" >S</ITEMMAPPING>
<ITEMMAPPING id="_2" type="A" >T</ITEMMAPPING>
</RECORDTEMPLATEMAPPING>
<DTCS>)";
    for (std::size_t row = 1; row < 2000; ++row) {
        const bool hasFirst = row % 5 < 3;
        const bool hasSecond = row % 7 == 6;
        table +=
            u"\n7|" + std::u16string(row, u'&') + (hasFirst ? u"|s" : u"|") + (hasSecond ? u"|t<" : u"|");
        body += "<DTC number=\"7\" ><ERRORTEXT>" + NTest::ReplaceAll(std::string(row, '&'), "&", "&amp;");
        body += hasFirst || hasSecond ? "</ERRORTEXT>\n<RECORD>" : "</ERRORTEXT>\n<RECORD/>\n</DTC>\n";
        if (hasFirst) body += "<RECORDITEM itemmappingref=\"_1\" >s</RECORDITEM>\n";
        if (hasSecond) body += "<RECORDITEM itemmappingref=\"_2\" >t&lt;</RECORDITEM>\n";
        if (hasFirst || hasSecond) body += "</RECORD>\n</DTC>\n";
    }
    EXPECT_TRUE(Build(table).body == body + "</DTCS>\n");
}

TEST(Document, MapsColumnsToItems) {
    const Built built = Build(u"DTC||V| |S|T| VS\t|v|a&b||V|\n1|t| |a|s||||||b|", u"D", u"<V&\">");
    EXPECT_EQ(built.body, R"(<SERVICEMAPPING diaginstance="D" variant="&lt;V&amp;&quot;&gt;" />
<RECORDTEMPLATEMAPPING><ITEMMAPPING id="_1" type="VSG" >V</ITEMMAPPING>
<ITEMMAPPING id="_3" type="A" >S</ITEMMAPPING>
<ITEMMAPPING id="_4" type="A" >T</ITEMMAPPING>
<ITEMMAPPING id="_5" type="VSG" >VS</ITEMMAPPING>
<ITEMMAPPING id="_6" type="RI" >v</ITEMMAPPING>
<ITEMMAPPING id="_7" type="RI" >a&amp;b</ITEMMAPPING>
</RECORDTEMPLATEMAPPING>
<DTCS><DTC number="1" ><ERRORTEXT/>
<RECORD><RECORDITEM itemmappingref="_1" > </RECORDITEM>
<RECORDITEM itemmappingref="_3" >s</RECORDITEM>
</RECORD>
</DTC>
</DTCS>
)");
    EXPECT_EQ(built.messages, (std::vector<std::u16string>{
                                  u"Found empty column index '9'. Skipping all columns behind this column.",
                                  u"Skipping column index '1' as header is empty!",
                                  u"Skipping column index '3' as header is empty!"}));
    EXPECT_TRUE(Build(u"DTC|Text|S\n1|t|").messages.empty());
}

}  // namespace
