// Text files as the runtime library of the system reads them, in text mode and with "ccs=UTF-8".
#include <gtest/gtest.h>

#include <cstdio>
#include <cwchar>
#include <memory>
#include <tuple>

#include "platform/files.h"
#include "tests/host.h"

namespace {

using namespace std::string_literals;
using NPlatform::TextEncoding;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// Character by character; behind the last line, too, is a line feed.
std::u16string ReadByRuntime(const std::filesystem::path& path, TextEncoding encoding) {
    const std::unique_ptr<std::FILE, CloseFile> file(
        _wfopen(path.c_str(), encoding == TextEncoding::Utf8 ? L"r,   ccs=UTF-8 " : L"rt"));
    std::u16string text;
    for (std::wint_t unit = 0; (unit = std::fgetwc(file.get())) != WEOF;) {
        text.push_back(static_cast<char16_t>(unit));
    }
    if (!text.empty() && text.back() != u'\n') text.push_back(u'\n');
    return text;
}

// Where the runtime ends a text, or leaves out a last byte that is the first of a character, the library goes
// on. (Of a sequence that would be too long, a surrogate or beyond U+10FFFF, systems differ in how many
// U+FFFD it becomes.)
TEST(Windows, ReadsTextsAsTheRuntimeDoesAndLosesNothing) {
    std::string every;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != 0x1A) every.push_back(static_cast<char>(byte));
    }
    const std::tuple<TextEncoding, std::string, std::u16string, std::u16string> rows[] = {
        // Where they differ, the text of the library and that of the runtime.
        {TextEncoding::EightBit, "a;b\r\nc\r\r\n\rd\n\n", u"", u""},
        {TextEncoding::EightBit, every, u"", u""},
        {TextEncoding::EightBit, "\xEF\xBB\xBFx", u"", u""},
        {TextEncoding::Utf8, "a;b\r\nc\r\r\n\rd\n\n", u"", u""},
        {TextEncoding::Utf8, "\xEF\xBB\xBF\xC3\xA4\n", u"", u""},
        {TextEncoding::Utf8, "\xC3\xA4\xE2\x82\xAC\r\n\xF0\x9F\x98\x80", u"", u""},
        {TextEncoding::Utf8, "\x80-\xC0\xAF-\xFE-\xFF\xC3\xA4", u"", u""},
        {TextEncoding::Utf8, "\xC3-\xC3\xC3\xA4\xE2\x82-\xF0\x9F\x98-\xC3\r\n", u"", u""},
        {TextEncoding::Utf8, "a\xE2\x82", u"", u""},
        {TextEncoding::Utf8, "\xFF\xFE\xE4\0\r\0\n\0\x3D\xD8\0\xDE"s, u"", u""},
        {TextEncoding::Utf8, "\xFE\xFF\0x"s, u"", u""},
        {TextEncoding::EightBit, "a\x1A\0z"s, u"a\x1A\0z\n"s, u"a\n"},
        {TextEncoding::Utf8, "\xFF\xFEx\0\x1A\0z\0"s, u"x\x1Az\n", u"x\n"},
        {TextEncoding::Utf8, "a\xC3", u"a\xFFFD\n", u"a\n"},
        {TextEncoding::Utf8, "\xFF\xFEx\0y"s, u"x\xFFFD\n", u"x\n"},
    };
    const NTest::TempFolder folder;
    for (const auto& [encoding, bytes, ours, ofRuntime] : rows) {
        const std::u16string path = folder.Put("file", bytes);
        const std::u16string byRuntime = ReadByRuntime(path, encoding);
        if (!ours.empty()) {
            EXPECT_EQ(byRuntime, ofRuntime) << testing::PrintToString(bytes);
        }
        NPlatform::TextBuffer text;
        NPlatform::ReadTextFile(path, encoding, text);
        EXPECT_EQ(std::u16string(text.View()), ours.empty() ? byRuntime : ours)
            << testing::PrintToString(bytes);
    }
}

}  // namespace
