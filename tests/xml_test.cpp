#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <tuple>

#include "tests/host.h"
#include "tests/rooms.h"
#include "xml/text_conv.h"
#include "xml/utf8_serializer.h"

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using namespace NTamriskUtil;
using NXml::ISerializer;
using NXml::NarrowCopyMode;
using NXml::VUTF8Serializer;

std::string Written(void (*write)(ISerializer&), NarrowCopyMode mode) {
    std::ostringstream stream;
    VUTF8Serializer serializer(stream, 15, mode);
    stream.width(4);
    write(serializer);
    return stream.str();
}

// The stream fills formatted output to a width of four; unformatted output stays as it is.
TEST(Xml, WritesEachType) {
    const std::tuple<void (*)(ISerializer&), std::string_view, std::string_view> rows[] = {
        {[](ISerializer& out) { out.Write(u"ä€"); }, "\xC3\xA4\xE2\x82\xAC", "\xC3\xA4\xE2\x82\xAC"},
        {[](ISerializer& out) { out.Write(u"😀\0z"sv); }, "\xF0\x9F\x98\x80\0z"sv, "\xF0\x9F\x98\x80\0z"sv},
        {[](ISerializer& out) { out.Write("a\0z"sv); }, " a\0z"sv, "a\0z"sv},
        {[](ISerializer& out) { out.Write(u'€'); }, "\xE2\x82\xAC", "\xE2\x82\xAC"},
        {[](ISerializer& out) { out.Write(u'\0'); }, "", ""},
        {[](ISerializer& out) { out.Write('A'); }, "   A", "   A"},
        {[](ISerializer& out) { out.Write('\x80'); }, "   \x80", "\x80"},
        {[](ISerializer& out) { out.Write('\0'); }, "   \0"sv, "\0"sv},
        {[](ISerializer& out) { out.Write(4294967295U); }, "4294967295", "4294967295"},
        {[](ISerializer& out) { out.Write(-42); }, " -42", " -42"},
        {[](ISerializer& out) { out.Write(true); }, "   1", "   1"},
        {[](ISerializer& out) { out.Write(0.1); }, " 0.1", " 0.1"},
        {[](ISerializer& out) { out.Write(-2.0 / 3); }, "-0.666666666666667", "-0.666666666666667"},
        {[](ISerializer& out) { out.Write(1e-310); }, "   0", "   0"},
        {[](ISerializer& out) { out.Write(-0.0); }, "   0", "   0"},
        {[](ISerializer& out) { out.Write(2.2250738585072014e-308); }, "2.2250738585072e-308",
         "2.2250738585072e-308"},
    };
    for (const auto& [write, formatted, copied] : rows) {
        EXPECT_EQ(Written(write, NarrowCopyMode::Formatted), formatted);
        EXPECT_EQ(Written(write, NarrowCopyMode::Copied), copied);
    }
}

TEST(Xml, TellsWhatBecameOfAConversion) {
    constexpr std::uint32_t kUtf8 = 65001;
    constexpr auto kNoBuffer = static_cast<ConversionStatus>(0x20000001);
    constexpr auto kFailed = static_cast<ConversionStatus>(0x20000014);
    const char* start = "before";
    const char* end = start;
    const auto convert = [&](std::uint32_t codePage, std::u16string_view text, std::size_t room) {
        return WideToMultiByte(codePage, text.data(), text.size(), start, room);
    };
    EXPECT_EQ(WideToUtf8(nullptr, nullptr, start, end), 0U);
    EXPECT_EQ(LastConversionStatus(), kFailed);
    EXPECT_EQ(start, nullptr);
    EXPECT_STREQ(end, "before");
    ASSERT_EQ(convert(kUtf8, u"ab€", 5), 5U);
    EXPECT_EQ(LastConversionStatus(), ConversionStatus{0});
    EXPECT_EQ(std::string(start, 5), "ab\xE2\x82\xAC");
    for (const auto& [codePage, room] : {std::pair(kUtf8, 0U), {kUtf8, 1U}, {kUtf8, 4U}, {4711U, 9U}}) {
        EXPECT_EQ(convert(codePage, u"ab€", room), 0U) << codePage << ", " << room;
        EXPECT_EQ(LastConversionStatus(), kFailed);
        EXPECT_EQ(start, nullptr);
    }
    for (const auto write :
         {+[](ISerializer& out) { out.Write(u"a"); }, +[](ISerializer& out) { out.Write("a"); }}) {
        const NTest::NoBuffers none;
        EXPECT_EQ(Written(write, NarrowCopyMode::Copied), "");
        EXPECT_EQ(LastConversionStatus(), kNoBuffer);
        EXPECT_FALSE(ReserveUtf8(1));
        convert(4711, u"", 0);  // so that the next row has to set the status itself
    }
    NBuffers::VCommonBuffers buffers;
    IBuffers* const shared = ReplaceSharedBuffers(&buffers);
    EXPECT_TRUE(ReserveUtf8(10));
    EXPECT_EQ(buffers.CharCapacity(), 30U);
    EXPECT_FALSE(ReserveUtf8(715'827'883));
    ReplaceSharedBuffers(shared);
}

TEST(Xml, RefusesBrokenInvariants) {
    const char16_t text[] = u"ab";
    const char* start = nullptr;
    const char* end = nullptr;
    const auto brokenBy = [](auto call) -> std::string {
        try {
            call();
        } catch (const std::logic_error& error) {
            return error.what();
        }
        return "";
    };
    constexpr std::size_t kTooMany = std::size_t{INT_MAX} + 1;
    EXPECT_EQ(brokenBy([&] { WideToMultiByte(65001, nullptr, 1, start, 3); }), "pWideString");
    EXPECT_EQ(brokenBy([&] { WideToMultiByte(65001, text, kTooMany, start, 3); }), "nWords <= INT_MAX");
    EXPECT_EQ(brokenBy([&] { WideToMultiByte(65001, text, 1, start, kTooMany); }), "nChars <= INT_MAX");
    EXPECT_EQ(brokenBy([&] { WideToUtf8(text + 1, text, start, end); }), "pWideString <= pWideStringEnd");
}

TEST(Xml, GrowsItsBuffers) {
    NBuffers::VCommonBuffers buffers;
    buffers.GetCharBuffer(10)[9] = 'x';
    buffers.GetWideBuffer(10)[9] = u'€';
    const std::pair<std::size_t, std::size_t> rows[] = {
        {5, 10}, {10, 10}, {11, 20}, {5, 20}, {41, 41}, {5'000'000, 5'000'000}, {5'000'001, 10'000'000}};
    for (const auto& [wanted, capacity] : rows) {
        char* const bytes = buffers.GetCharBuffer(wanted);
        char16_t* const units = buffers.GetWideBuffer(wanted);
        EXPECT_EQ(buffers.CharCapacity(), capacity);
        EXPECT_EQ(buffers.WideCapacity(), capacity);
        EXPECT_TRUE(bytes[9] == 'x' && units[9] == u'€') << wanted;
        bytes[capacity - 1] = 'x';
        units[capacity - 1] = u'€';
    }
    EXPECT_EQ(buffers.GetCharBuffer(std::numeric_limits<std::size_t>::max() / 4), nullptr);
    EXPECT_EQ(buffers.GetWideBuffer(std::numeric_limits<std::size_t>::max() / 2 + 6), nullptr);
    EXPECT_EQ(buffers.GetCharBuffer(5)[9], 'x');
}

// Runs of ASCII characters are converted many at a time: everything else has to be seen wherever it stands.
TEST(Xml, ConvertsToUtf8) {
    const std::pair<std::u16string, std::string> rows[] = {
        {u"\0"s, "\0"s},
        {u"\x7F\x80", "\x7F\xC2\x80"},
        {std::u16string(64, u'\x80'), NTest::ReplaceAll(std::string(64, '-'), "-", "\xC2\x80")},
        {u"\x800", "\xE0\xA0\x80"},
        {u"\xD7FF\xE000", "\xED\x9F\xBF\xEE\x80\x80"},
        {u"\xFFFF", "\xEF\xBF\xBF"},
        {u"\U00010000\U0010FFFF", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
        {u"\xD800", "\xEF\xBF\xBD"},
        {u"\xDE00\xDE00\xD83D", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
        {u"\xD83D\xD83D\xDE00", "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
    };
    for (const auto& [units, bytes] : rows) {
        for (std::size_t before = 0; before < 70; ++before) {
            for (std::size_t after = 0; after < 70; after += 3) {
                const std::u16string text =
                    std::u16string(before, u'b') + units + std::u16string(after, u'a');
                const std::string expected = std::string(before, 'b') + bytes + std::string(after, 'a');
                const char* start = nullptr;
                const char* end = nullptr;
                ASSERT_EQ(WideToUtf8(text.data(), text.data() + text.size(), start, end), expected.size());
                ASSERT_EQ(std::string(start, end), expected);
            }
        }
    }
}

}  // namespace
