// Text files as the runtime library of the system reads them, in text mode and with "ccs=UTF-8".
#include <gtest/gtest.h>

#include <cstdio>
#include <cwchar>
#include <memory>

#include "platform/files.h"
#include "tests/host.h"

namespace {

using namespace std::string_view_literals;
using NPlatform::TextEncoding;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// Line by line, each with a line feed.
std::u16string ReadByRuntime(const std::filesystem::path& path, TextEncoding encoding) {
    const bool isUtf8 = encoding == TextEncoding::Utf8;
    const std::unique_ptr<std::FILE, CloseFile> file(
        _wfopen(path.c_str(), isUtf8 ? L"r,   ccs=UTF-8 " : L"rt"));
    std::u16string text;
    while (true) {
        const int unit = isUtf8 ? std::fgetwc(file.get()) : std::fgetc(file.get());
        if (unit == (isUtf8 ? WEOF : EOF)) break;
        text.push_back(static_cast<char16_t>(unit));
    }
    if (!text.empty() && text.back() != u'\n') text.push_back(u'\n');
    return text;
}

TEST(Windows, ReadsTextsAsTheRuntimeDoes) {
    std::string every;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != 0x1A) every.push_back(static_cast<char>(byte));
    }
    const std::pair<TextEncoding, std::string> rows[] = {
        {TextEncoding::EightBit, ""},
        {TextEncoding::EightBit, "a;b\r\nc\r\r\n\rd\n\n"},
        {TextEncoding::EightBit, every},
        {TextEncoding::EightBit, "\xEF\xBB\xBFx"},
        {TextEncoding::Utf8, ""},
        {TextEncoding::Utf8, "a;b\r\nc\r\r\n\rd\n\n"},
        {TextEncoding::Utf8, "\xC3\xA4\xE2\x82\xAC\r\n\xE4\xB8\xAD"},
        {TextEncoding::Utf8, "\xEF\xBB\xBF\xC3\xA4\n"},
        {TextEncoding::Utf8, "\xF0\x9F\x98\x80"},
    };
    const NTest::TempFolder folder;
    for (const auto& [encoding, bytes] : rows) {
        const std::u16string path = folder.Put("file", bytes);
        NPlatform::TextBuffer text;
        NPlatform::ReadTextFile(path, encoding, text);
        EXPECT_EQ(std::u16string(text.View()), ReadByRuntime(path, encoding))
            << testing::PrintToString(bytes);
    }
}

// Where the runtime ends a text or stumbles, the library goes on.
TEST(Windows, LosesNothingThatTheRuntimeLoses) {
    const NTest::TempFolder folder;
    NPlatform::TextBuffer text;
    const std::u16string path = folder.Put("file", "a\x1A\0z"sv);
    NPlatform::ReadTextFile(path, TextEncoding::EightBit, text);
    EXPECT_EQ(std::u16string(text.View()), u"a\x1A\0z\n"sv);
    EXPECT_EQ(ReadByRuntime(path, TextEncoding::EightBit), u"a\n");
}

}  // namespace
