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

// The value "Value" of HKEY_LOCAL_MACHINE\Soft\Key: type and bytes, in hexadecimal, or why there is none.
std::string ReadRegistry(std::string_view file) {
    const NTest::Registry registry(file);
    NPlatform::RegistryKey key;
    NPlatform::RegistryResult result = key.Open(u"Soft\\Key");
    std::string text = result == NPlatform::RegistryResult::Done ? "" : "key ";
    std::byte bytes[6];
    std::uint32_t type = 0;
    std::size_t size = 0;
    if (text.empty()) result = key.Read(u"Value", bytes, type, size);
    if (result != NPlatform::RegistryResult::Done) {
        return text + (result == NPlatform::RegistryResult::AccessDenied ? "denied" : "failed");
    }
    text = std::to_string(type) + ":";
    for (const std::byte byte : std::span(bytes, size)) {
        char digits[4];
        std::snprintf(digits, sizeof digits, " %02x", std::to_integer<unsigned>(byte));
        text += digits;
    }
    return text;
}

TEST(Platform, ReadsTheRegistryFromAFile) {
    const std::string head = "REGEDIT4\n[HKEY_LOCAL_MACHINE\\Soft\\Key]\n";
    std::string million;
    for (int number = 1'000'000; number < 2'000'000; ++number) {
        million.append("\"").append(std::to_string(number)).append("\"=\"\"\n");
    }
    const std::pair<std::string, std::string_view> rows[] = {
        {head + R"("Value"="a")", "1: 61 00 00 00"},
        {head + million + R"("Value"="a")", "1: 61 00 00 00"},
        {head + R"(  "vALUE" = "\\\"" ; comment)", "1: 5c 00 22 00 00 00"},
        {head + R"("Value"="")", "1: 00 00"},
        {head + R"("Value"="abc")", "failed"},
        {head + R"("Value"=dword:1A2b)", "4: 2b 1a 00 00"},
        {head + R"("Value"=hex:01,fE)", "3: 01 fe"},
        {head + "\"Value\"=hex(2):61,00,\\\n  62,\\\n  00\n\"x\"=hex:00", "2: 61 00 62 00"},
        {head + R"("Value"=hex(1):)", "1:"},
        {head + "@=\"d\"\n\"Other\"=\"o\"\n; \"Value\"=\"c\"", "failed"},
        {head + "\"Value\"=\"a\"\n\"Value\"=\"b\"", "1: 62 00 00 00"},
        {head + "\"Value\"=\"a\"\n\"Value\"=-", "failed"},
        {head + "\"Value\"=\"a\"\n[-HKEY_LOCAL_MACHINE\\Soft\\Key]\n" + head.substr(9), "failed"},
        {head + "\"Value\"=\"a\"\n" + head.substr(9) + "\"Other\"=\"b\"", "1: 61 00 00 00"},
        {head + "[-HKEY_LOCAL_MACHINE\\Soft\\Key]\n\"Value\"=\"b\"", "key failed"},
        {head + "\"Value\"=\"a\"\n[-hkey_local_machine\\soft]\n\"Value\"=\"b\"", "key failed"},
        {head + "\"Value\"=\"a\"\n[HKEY_LOCAL_MACHINE\\Soft]\n\"Value\"=\"b\"", "1: 61 00 00 00"},
        {"REGEDIT4\n[HKEY_LOCAL_MACHINE\\Soft\\Key\\Sub]\n\"Value\"=\"a\"", "failed"},
        {"REGEDIT4\n[HKEY_LOCAL_MACHINE\\Soft\\Keys]\n\"Value\"=\"a\"", "key failed"},
        {head + ";deny key\n\"Value\"=\"a\"", "key denied"},
        {head + ";deny value\n\"Value\"=\"a\"", "denied"},
        {head + ";deny value\n\"Other\"=\"a\"\n\"Value\"=\"b\"", "1: 62 00 00 00"},
        {"\xEF\xBB\xBFWindows Registry Editor Version 5.00\r\n\r\n" + head.substr(9) + "\"Value\"=\"a\"\r\n",
         "1: 61 00 00 00"},
        {"", "key failed"},
        {"REGEDIT5\n" + head.substr(9) + R"("Value"="a")", "key failed"},
        {head + std::string(20'000'000, ';') + "\n\"Value\"=\"a\"", "key failed"},
    };
    for (const auto& [file, expected] : rows) EXPECT_EQ(ReadRegistry(file), expected) << file.substr(0, 200);
    for (const char* line :
         {"Value=\"a\"", "\"Value\"", "\"Value\"\"a\"", "\"Value\"=", "\"Value\"=\"a", "\"Value=\"a\"",
          "\"Value\"=\"a\\\"", "\"Value\"=\"a\"b", "\"Value\"=a", "\"Value\"=dword:", "\"Value\"=dword:x",
          "\"Value\"=dword:123456789", "\"Value\"=hex:1x", "\"Value\"=hex:111", "\"Value\"=hex:1 1",
          "\"Value\"=hex(1:00", "\"Value\"=hex():00", "\"Value\"=-a"}) {
        EXPECT_EQ(ReadRegistry(head + "\"Value\"=dword:1\n" + line), "4: 01 00 00 00") << line;
    }
}

}  // namespace
