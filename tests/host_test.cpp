// A program that plays the host: it sees the public header and the logging library alone.
#include "tests/host.h"

#include <expat.h>
#include <gtest/gtest.h>

#include <tuple>

#include "api/xls2tki.h"

namespace {

using namespace std::string_view_literals;
using namespace NXls2Tki;
using NTest::Progress;
using NTest::TempFolder;

const std::filesystem::path kData = XLS2TKI_TEST_DATA;

TEST(Host, HasNoMessagesBeforeTheFirstConversion) {
    EXPECT_EQ(GetLoggedMessages(), u""sv);
    EXPECT_TRUE(XlsInitOle(true));
    EXPECT_TRUE(XlsInitOle(false));
}

// The expected documents were not written by this program.
TEST(Host, WritesTheDocumentsThatItShould) {
    const std::tuple<const char*, char16_t, bool> rows[] = {
        {"example", u';', false},    {"spn_fmi", u'\t', true},    {"base_failure_type", u',', false},
        {"every_byte", u';', false}, {"header_only", u'|', true},
    };
    const TempFolder folder;
    const std::u16string output = folder.Path("output");
    for (const auto& [name, separator, utf8] : rows) {
        SCOPED_TRACE(name);
        const std::u16string input = (kData / name).u16string() + u".csv";
        ASSERT_TRUE(Xls2TkiConvert(input.c_str(), output.c_str(), ImportTypeCSV, false, separator,
                                   {u"Occurrence"}, {u"Status"}, utf8))
            << NTest::Utf8(GetLoggedMessages());
        EXPECT_EQ(folder.Read("output"), NTest::ReadBytes(kData / name += ".xml"));
    }
}

// All the text that an XML reader finds in the document; its complaint if it has one.
std::string TextIn(const std::string& document) {
    std::string all;
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetUserData(parser, &all);
    XML_SetCharacterDataHandler(parser, [](void* data, const char* text, int size) {
        static_cast<std::string*>(data)->append(text, static_cast<std::size_t>(size));
    });
    if (XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1) != XML_STATUS_OK) {
        all = XML_ErrorString(XML_GetErrorCode(parser));
    }
    XML_ParserFree(parser);
    return all;
}

TEST(Host, WritesWhatAnXmlReaderReads) {
    const TempFolder folder;
    const std::u16string input =
        folder.Put("input",
                   "DTC;Text;<Fault & cause>;\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\n"
                   "1;\"]]></ERRORTEXT>&lt;\";\"one\ntwo\n\";\"<!-- \"\"1\"\" --> ;\"\n");
    const std::u16string output = folder.Path("output");
    ASSERT_TRUE(Xls2TkiConvert(input.c_str(), output.c_str(), ImportTypeCSV, false, u';', true));
    EXPECT_EQ(TextIn(folder.Read("output")),
              "\n<Fault & cause>\n\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\n\n"
              "]]></ERRORTEXT>&lt;\none\ntwo\n\n<!-- \"1\" --> ;\n\n\n\n\n\n");
}

TEST(Host, ConvertsThroughEachOverload) {
    constexpr auto kDefaultNames =
        "<SERVICEMAPPING diaginstance=\"Emission_Related_Trouble_Codes\" variant=\"COMMON_DIAGNOSTICS\" />";
    static const WideStringSet one = {u"One"};
    static const WideStringSet two = {u"Two"};
    static const WideStringSet three = {u"Three"};
    using Convert = bool (*)(const char16_t* input, const char16_t* output, bool forward, bool utf8);
    const Convert overloads[] = {
        [](auto input, auto output, bool forward, bool utf8) {
            return Xls2TkiConvert(input, output, ImportTypeCSV, forward, u';', utf8);
        },
        [](auto input, auto output, bool forward, bool utf8) {
            return Xls2TkiConvert(input, output, ImportTypeCSV, forward, u';', one, two, utf8);
        },
        [](auto input, auto output, bool forward, bool utf8) {
            return Xls2TkiConvert(input, output, ImportTypeCSV, forward, u';', one, two, three, u"V", u"D",
                                  utf8);
        },
        [](auto input, auto output, bool forward, bool utf8) {
            return Xls2TkiConvert(input, u"Sheet", output, ImportTypeCSV, forward, u';', three, {}, two, u"",
                                  nullptr, utf8);
        },
    };
    const std::vector<std::string> fragments[] = {
        {kDefaultNames, "\"RI\" >One<", "\"RI\" >Two<", "\"RI\" >Three<"},
        {kDefaultNames, "\"VSG\" >One<", "\"A\" >Two<", "\"RI\" >Three<"},
        {"<SERVICEMAPPING diaginstance=\"D\" variant=\"V\" />", "\"VSG\" >One<", "\"A\" >Two<",
         "\"A\" >Three<"},
        {"<SERVICEMAPPING/>", "\"RI\" >One<", "\"A\" >Two<", "\"VSG\" >Three<"},
    };
    const TempFolder folder;
    const std::u16string input = folder.Put("input", "DTC;Text;One;Two;Three\n1;\xC3\xA4;;;\n");
    const std::u16string output = folder.Path("output");
    for (std::size_t index = 0; index < std::size(overloads); ++index) {
        for (const bool utf8 : {true, false}) {
            const Progress progress;
            EXPECT_TRUE(overloads[index](input.c_str(), output.c_str(), !utf8, utf8));
            EXPECT_EQ(Progress::Messages().empty(), utf8);
            EXPECT_TRUE(
                std::u16string_view(GetLoggedMessages()).ends_with(u"] Writing to file completed.\n"));
            const std::string document = folder.Read("output");
            EXPECT_NE(document.find(utf8 ? ">\xC3\xA4<" : ">\xC3\x83\xC2\xA4<"), std::string::npos);
            for (const std::string& fragment : fragments[index]) {
                EXPECT_NE(document.find(fragment), std::string::npos) << index << ": " << fragment;
            }
        }
    }
}

TEST(Host, MayPassNullStrings) {
    const WideStringSet none;
    EXPECT_FALSE(Xls2TkiConvert(nullptr, nullptr, nullptr, ImportTypeCSV, false, u';', none, none, none,
                                nullptr, nullptr, false));
    EXPECT_EQ(GetLoggedMessages(), u"Error opening inputfile:\n''"sv);
    EXPECT_FALSE(Xls2TkiConvert(nullptr, nullptr, static_cast<VImportType>(3), false, u';', false));
    EXPECT_EQ(GetLoggedMessages(), u"Import type not supported"sv);
    const TempFolder folder;
    const std::u16string input = folder.Put("input", "DTC;Text\n");
    EXPECT_TRUE(Xls2TkiConvert(input.c_str(), nullptr, ImportTypeCSV, false, u';', none, none, false));
}

TEST(Host, ListsNoWorksheetsOfWhatIsNoWorkbook) {
    const std::vector<WideString> before = {u"as it was"};
    std::vector<WideString> names = before;
    {
        const NTest::Registry excel2000(
            "REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\Excel.Application\\CurVer]\n"
            "@=\"Excel.Application.10\"");
        EXPECT_ANY_THROW(GetExcelWorksheets(u"missing.xls", names));
        EXPECT_EQ(names, before);
    }
    for (const char16_t* path : {static_cast<const char16_t*>(nullptr), u"missing.xls"}) {
        names = before;
        EXPECT_TRUE(GetExcelWorksheets(path, names));
        EXPECT_TRUE(names.empty());
    }
}

}  // namespace
