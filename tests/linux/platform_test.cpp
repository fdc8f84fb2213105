// What is the system's own way of each service.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/files.h"
#include "platform/linux/paths.h"
#include "platform/registry.h"
#include "tests/host.h"
#include "tests/registry.h"

namespace {

using namespace std::string_literals;
using NTest::TempFolder;

TEST(Platform, KeepsTheBytesOfEveryPath) {
    std::string all;
    for (int byte = 1; byte < 256; ++byte) all.push_back(static_cast<char>(byte));
    for (const std::string& bytes :
         {"/a/\xC3\xA4/\xF0\x9F\x98\x80"s, "\xED\xB2\x80\xF0\x9F\xE4"s, "\xC3\xC3\xA4"s, all}) {
        EXPECT_EQ(NPlatform::PathToBytes(NPlatform::PathFromBytes(bytes)), bytes);
    }
    EXPECT_EQ(NPlatform::PathFromBytes("\xC3\xA4\xE4"), u"ä\xDCE4");
    EXPECT_EQ(NPlatform::PathToBytes(u"\xDCE4\xD83D\xDCE4\xD83Dx"), "\xE4\xF0\x9F\x93\xA4\xEF\xBF\xBDx");
}

TEST(Platform, FindsRegularFilesOnly) {
    const TempFolder folder;
    const std::u16string strange = folder.Path("") + u"\xDCE4 ä";
    NPlatform::TextOutputStream(strange) << "x";
    std::filesystem::create_directory(folder.Path("sub"));
    mkfifo(NTest::Utf8(folder.Path("pipe")).c_str(), 0600);
    std::filesystem::create_symlink("file", folder.Path("link"));
    const NTest::WorkingFolder working(folder);
    const std::pair<std::u16string, std::u16string> rows[] = {
        {folder.Put("file", "x"), folder.Path("file")},
        {u"link", folder.Path("link")},
        {strange, strange},
        {folder.Path("sub"), u""},
        {folder.Path("pipe"), u""},
        {folder.Path("missing"), u""},
        {folder.Path("file/file"), u""},
        {u"/dev/null", u""},
        {u"", u""},
    };
    for (const auto& [path, found] : rows) {
        std::u16string fullPath = u"unchanged";
        EXPECT_EQ(NPlatform::FindReadableFile(path, fullPath), !found.empty());
        EXPECT_EQ(fullPath, found.empty() ? u"unchanged" : found);
    }
}

// The default value of HKEY_LOCAL_MACHINE\Soft\Key: type and bytes, in hexadecimal, or why there is none.
std::string ReadRegistry(std::string_view file) {
    const NTest::Registry registry(file);
    std::byte bytes[6];
    std::uint32_t type = 0;
    std::size_t size = 0;
    const auto result = NPlatform::ReadRegistry(u"Soft\\Key", bytes, type, size);
    if (result == NPlatform::RegistryResult::KeyDenied) return "key denied";
    if (result == NPlatform::RegistryResult::ValueDenied) return "value denied";
    if (result == NPlatform::RegistryResult::Failed) return "failed";
    std::string text = std::to_string(type) + ":";
    for (const std::byte byte : std::span(bytes, size)) {
        char digits[4];
        std::snprintf(digits, sizeof digits, " %02x", std::to_integer<unsigned>(byte));
        text += digits;
    }
    return text;
}

TEST(Platform, ReadsTheRegistryFromAFile) {
    const std::string head = "REGEDIT4\n[HKEY_LOCAL_MACHINE\\Soft\\Key]\n";
    std::string exported = "\xFF\xFE";  // as the registry editor does, in UTF-16
    for (const char unit : "Windows Registry Editor Version 5.00\r\n\r\n" + head.substr(9) + "@=\"a\"\r\n") {
        exported.append({unit, '\0'});
    }
    const std::pair<std::string, std::string_view> rows[] = {
        {exported, "1: 61 00 00 00"},
        {head + R"(@="a")", "1: 61 00 00 00"},
        {head + "  @=\"\\\\\\\"\" \t", "1: 5c 00 22 00 00 00"},
        {head + "\"Other\"=hex:00,\\\n  00\n@=\"\"", "1: 00 00"},
        {head + R"(@="abc")", "failed"},
        {head + "@=hex(2):61,00,\\\n  62,\\\n  fE\n@x", "2: 61 00 62 fe"},
        {head + R"(@=hex(1):)", "1:"},
        {head + R"(@=hex(7):61)", "7: 61"},
        {head + "\"Other\"=\"o\"\n; @=\"c\"", "failed"},
        {head + "@=\"a\"\n[HKEY_LOCAL_MACHINE\\Soft]\n@=\"b\"\n" + head.substr(9) + "@=\"c\"",
         "1: 63 00 00 00"},
        {"REGEDIT4\n[hkey_local_machine\\SOFT\\key]\n@=\"a\"", "1: 61 00 00 00"},
        {"REGEDIT4\n[HKEY_LOCAL_MACHINE\\Soft\\Keys]\n@=\"a\"", "failed"},
        {head + ";deny key\n@=\"a\"", "key denied"},
        {head + ";deny value\n@=\"a\"", "value denied"},
        {"REGEDIT4\n[HKEY_LOCAL_MACHINE\\Soft]\n;deny key\n" + head.substr(9) + "@=\"a\"", "1: 61 00 00 00"},
        {"", "failed"},
        {"REGEDIT5\n" + head.substr(9) + "@=\"a\"", "failed"},
        {head + std::string(20'000'000, ';') + "\n@=\"a\"", "failed"},
    };
    for (const auto& [file, expected] : rows) EXPECT_EQ(ReadRegistry(file), expected) << file.substr(0, 200);
    for (const char* data :
         {"", "\"a", "\"a\\\"", "\"a\"b", "a", "-", "dword:00000001", "hex:61,00", "hex(x:61", "hex(1)61",
          "hex(1):6", "hex(1):6x", "hex(1):61 62", "hex(1):616", "hex(1:61"}) {
        EXPECT_EQ(ReadRegistry(head + "@=" + data), "failed") << data;
    }
}

}  // namespace
