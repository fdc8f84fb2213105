// A program that plays the host: it sees the public header and the logging library alone.
#include "tests/host.h"

#include <gtest/gtest.h>

#include <tuple>

#include "tests/library.h"

namespace {

using namespace std::string_view_literals;
using namespace NXls2Tki;
using NTest::LoggedMessages;
using NTest::Progress;
using NTest::TempFolder;
using NTest::Wide;
using NTest::operator""_w;

const std::filesystem::path kData = XLS2TKI_TEST_DATA;

TEST(Host, HasNoMessagesBeforeTheFirstConversion) {
    EXPECT_EQ(LoggedMessages(), u"");
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
        ASSERT_TRUE(Xls2TkiConvert(Wide(input).c_str(), Wide(output).c_str(), ImportTypeCSV, false, separator,
                                   {u"Occurrence"_w}, {u"Status"_w}, utf8))
            << NTest::Utf8(LoggedMessages());
        EXPECT_EQ(folder.Read("output"), NTest::ReadBytes(kData / name += ".xml"));
    }
}

TEST(Host, ConvertsThroughEachOverload) {
    constexpr auto kDefaultNames =
        "<SERVICEMAPPING diaginstance=\"Emission_Related_Trouble_Codes\" variant=\"COMMON_DIAGNOSTICS\" />";
    static const WideStringSet one = {u"One"_w};
    static const WideStringSet two = {u"Two"_w};
    static const WideStringSet three = {u"Three"_w};
    using Convert = bool (*)(const WideChar* input, const WideChar* output, bool forward, bool utf8);
    const Convert overloads[] = {
        [](auto input, auto output, bool forward, bool utf8) {
            return Xls2TkiConvert(input, output, ImportTypeCSV, forward, u';', utf8);
        },
        [](auto input, auto output, bool forward, bool utf8) {
            return Xls2TkiConvert(input, output, ImportTypeCSV, forward, u';', one, two, utf8);
        },
        [](auto input, auto output, bool forward, bool utf8) {
            return Xls2TkiConvert(input, output, ImportTypeCSV, forward, u';', one, two, three,
                                  u"V"_w.c_str(), u"D"_w.c_str(), utf8);
        },
        [](auto input, auto output, bool forward, bool utf8) {
            return Xls2TkiConvert(input, u"Sheet"_w.c_str(), output, ImportTypeCSV, forward, u';', three, {},
                                  two, u""_w.c_str(), nullptr, utf8);
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
    const WideString input = Wide(folder.Put("input", "DTC;Text;One;Two;Three\n1;\xC3\xA4;;;\n"));
    const WideString output = Wide(folder.Path("output"));
    for (std::size_t index = 0; index < std::size(overloads); ++index) {
        for (const bool utf8 : {true, false}) {
            const Progress progress;
            EXPECT_TRUE(overloads[index](input.c_str(), output.c_str(), !utf8, utf8));
            EXPECT_EQ(Progress::Messages().empty(), utf8);
            EXPECT_TRUE(LoggedMessages().ends_with(u"] Writing to file completed.\n"));
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
    EXPECT_EQ(LoggedMessages(), u"Error opening inputfile:\n''");
    EXPECT_FALSE(Xls2TkiConvert(nullptr, nullptr, static_cast<VImportType>(3), false, u';', false));
    EXPECT_EQ(LoggedMessages(), u"Import type not supported");
    const TempFolder folder;
    const WideString input = Wide(folder.Put("input", "DTC;Text\n"));
    EXPECT_TRUE(Xls2TkiConvert(input.c_str(), nullptr, ImportTypeCSV, false, u';', none, none, false));
}

}  // namespace
