// The documents as a foreign XML reader has them.
#include <expat.h>
#include <gtest/gtest.h>

#include "tests/host.h"
#include "tests/library.h"

namespace {

using namespace NXls2Tki;
using NTest::TempFolder;

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
    const WideString input =
        NTest::Wide(folder.Put("input",
                               "DTC;Text;<Fault & cause>;\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\n"
                               "1;\"]]></ERRORTEXT>&lt;\";\"one\ntwo\n\";\"<!-- \"\"1\"\" --> ;\"\n"));
    const WideString output = NTest::Wide(folder.Path("output"));
    ASSERT_TRUE(Xls2TkiConvert(input.c_str(), output.c_str(), ImportTypeCSV, false, u';', true));
    EXPECT_EQ(TextIn(folder.Read("output")),
              "\n<Fault & cause>\n\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\n\n"
              "]]></ERRORTEXT>&lt;\none\ntwo\n\n<!-- \"1\" --> ;\n\n\n\n\n\n");
}

}  // namespace
