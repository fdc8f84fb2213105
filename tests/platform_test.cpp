#include <gtest/gtest.h>

#include <tuple>

#include "platform/code_page.h"
#include "platform/files.h"
#include "platform/format.h"
#include "platform/user.h"
#include "tests/host.h"

namespace {

using namespace std::string_view_literals;
using NPlatform::TextEncoding;
using NPlatform::TextFileResult;
using NTest::TempFolder;

TEST(Platform, FormatsWithinItsLimit) {
    using NPlatform::Format;
    const std::u16string name = u"ab😀c";
    const std::pair<std::u16string, const char16_t*> rows[] = {
        {Format(64, u"row %d of '%s'%c", {-7, name, u'!'}), u"row -7 of 'ab😀c'!"},
        {Format(64, u"%d", {std::numeric_limits<std::int32_t>::min()}), u"-2147483648"},
        {Format(64, u"%s", {u"100 % %d"}), u"100 % %d"},
        {Format(6, u"%sdef", {u"abc"}), u"abcde"},
        {Format(3, u"%d%s", {12345, u"x"}), u"12"},
        {Format(5, u"%s", {name}), u"ab😀"},
        {Format(4, u"%s", {name}), u"ab"},
        {Format(4, u"%s%c%c", {u"ab", u'\xD83D', u'\xDE00'}), u"ab"},
        {Format(3, u"%s", {u"a\xD83Dz"}), u"a\xD83D"},
        {Format(1, u"%s", {name}), u""},
        {Format(6, u"%s%c-bc", {u"\0"sv, u'\0'}), u"\xFFFD\xFFFD-bc"},
    };
    for (const auto& [text, expected] : rows) EXPECT_EQ(text, expected);
}

TEST(Platform, ReadsTextFiles) {
    constexpr TextEncoding kEightBit = TextEncoding::EightBit;
    constexpr TextEncoding kUtf8 = TextEncoding::Utf8;
    const std::tuple<std::string_view, TextEncoding, std::u16string_view> rows[] = {
        {"", kEightBit, u""},
        {"a", kEightBit, u"a\n"},
        {"a\r\r\nb\rc\n\r", kEightBit, u"a\r\nb\rc\n\r\n"},
        {"a\r\r\nb\rc\n\r", kUtf8, u"a\r\nb\rc\n\r\n"},
        {"\r", kEightBit, u"\r\n"},
        {"a\0\x1A\x7Fz"sv, kEightBit, u"a\0\x1A\x7Fz\n"sv},
        {"a\0\x1A\x7Fz"sv, kUtf8, u"a\0\x1A\x7Fz\n"sv},
        {"\x80\x9F\xC3\xA4\xFF", kEightBit, u"\x80\x9F\xC3\xA4\xFF\n"},
        {"\xEF\xBB\xBFx", kEightBit, u"\xEF\xBB\xBFx\n"},
        {"\xFF\xFEx\0"sv, kEightBit, u"\xFF\xFEx\0\n"sv},
        {"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", kUtf8, u"ä€😀\n"},
        {"\xEF\xBB\xBF\xEF\xBB\xBFx", kUtf8, u"\xFEFFx\n"},
        {"\xEF\xBB\xBF", kUtf8, u""},
        {"\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", kUtf8,
         u"\x80\x7FF\x800\xD7FF\xE000\xFFFF\n"},
        {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", kUtf8, u"\U00010000\U0010FFFF\n"},
        // The malformed ones as Python's bytes.decode("utf-8", "replace") has them.
        {"\x80-\xC0\xAF-\xFE-\xFF\xC3\xA4", kUtf8, u"\xFFFD-\xFFFD\xFFFD-\xFFFD-\xFFFDä\n"},
        {"\xC3-\xC3\xC3\xA4\xE2\x82-\xF0\x9F\x98-\xC3\r\n", kUtf8, u"\xFFFD-\xFFFDä\xFFFD-\xFFFD-\xFFFD\n"},
        {"\xE0\x80\xAF-\xED\xA0\x80", kUtf8, u"\xFFFD\xFFFD\xFFFD-\xFFFD\xFFFD\xFFFD\n"},
        {"\xF0\x80\x80\x80-\xF4\x90\x80\x80", kUtf8, u"\xFFFD\xFFFD\xFFFD\xFFFD-\xFFFD\xFFFD\xFFFD\xFFFD\n"},
        {"\xF8\x88\x80\x80\x80-\xF1\x80\xE2\x82\xAC", kUtf8, u"\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD-\xFFFD€\n"},
        {"\xFF\xFE"sv, kUtf8, u""},
        {"\xFF\xFE\xE4\0\r\0\r\0\n\0\x3D\xD8\0\xDE"sv, kUtf8, u"ä\r\n😀\n"},
        {"\xFF\xFEx\0y"sv, kUtf8, u"x\xFFFD\n"},
    };
    const TempFolder folder;
    for (const auto& [bytes, encoding, expected] : rows) {
        NPlatform::TextBuffer text;
        text.Append(u"what was there before");
        EXPECT_EQ(NPlatform::ReadTextFile(folder.Put("file", bytes), encoding, text), TextFileResult::Read);
        EXPECT_EQ(std::u16string(text.View()), expected) << testing::PrintToString(bytes);
    }
    for (const std::u16string& path : {folder.Path("missing"), folder.Path("")}) {
        NPlatform::TextBuffer text;
        EXPECT_EQ(NPlatform::ReadTextFile(path, TextEncoding::Utf8, text), TextFileResult::NotOpened);
        EXPECT_EQ(text.Size(), 0U);
    }
}

// A reader that takes a file in pieces has to put together what a border divides. Repeating a text of odd
// length often enough brings every place in it to some border, whatever power of two the pieces are.
TEST(Platform, ReadsAcrossTheBordersOfPieces) {
    const std::tuple<TextEncoding, std::string_view, std::string_view, std::u16string_view> rows[] = {
        {TextEncoding::EightBit, "", "a\r\nb\r\r\n\xE4\r\xE4z", u"a\nb\r\nä\räz"},
        {TextEncoding::Utf8, "", "\xC3\xA4\r\n\xE2\x82\xAC\r\r\n\xF0\x9F\x98\x80\xE2\x82\rab\xC3\r\nc",
         u"ä\n€\r\n😀\xFFFD\rab\xFFFD\nc"},
        {TextEncoding::Utf8, "\xFF\xFE", "\r\0\n\0\r\0\x3D\xD8\0\xDE"sv, u"\n\r😀"},
    };
    const TempFolder folder;
    for (const auto& [encoding, mark, part, partText] : rows) {
        for (const std::size_t longestRun : {0U, 19U}) {  // of plain characters behind each part
            std::string bytes(mark);
            std::u16string expected;
            while (bytes.size() < 6'300'000) {
                const std::size_t run = longestRun == 0 ? 0 : bytes.size() % longestRun;
                bytes.append(part);
                for (std::size_t index = 0; index < run; ++index)
                    bytes.append(mark.empty() ? "a"sv : "a\0"sv);
                expected.append(partText).append(run, u'a');
            }
            NPlatform::TextBuffer text;
            NPlatform::ReadTextFile(folder.Put("file", bytes), encoding, text);
            EXPECT_TRUE(text.View() == expected + u"\n")
                << testing::PrintToString(part) << ", " << longestRun;
        }
    }
}

TEST(Platform, WritesTextFiles) {
    const TempFolder folder;
    NPlatform::TextOutputStream(folder.Put("file", "older and longer")) << "\n\r\n\0\xE4"sv;
    EXPECT_EQ(folder.Read("file"), "\r\n\r\r\n\0\xE4"sv);
    std::string text;
    std::string bytes;
    for (int line = 0; line < 60'000; ++line) {
        text += "line " + std::to_string(line) + "\n";
        bytes += "line " + std::to_string(line) + "\r\n";
    }
    const std::string longLine(1'000'000, 'x');
    NPlatform::TextOutputStream stream(folder.Path("file"));
    stream << longLine << text;
    for (const char unit : text) stream.put(unit);
    EXPECT_TRUE(stream.flush().good());
    EXPECT_TRUE(folder.Read("file") == longLine + bytes + bytes);
}

TEST(Platform, RefusesAUserNameThatDoesNotFit) {
    std::u16string name;
    ASSERT_TRUE(NPlatform::UserName(name, 255));
    std::u16string again = u"unchanged";
    EXPECT_FALSE(NPlatform::UserName(again, name.size()));
    EXPECT_EQ(again, u"unchanged");
    EXPECT_TRUE(NPlatform::UserName(again, name.size() + 1));
    EXPECT_EQ(again, name);
}

}  // namespace
