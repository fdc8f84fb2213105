// What is the system's own way of each service.
#include <gtest/gtest.h>
#include <windows.h>

#include "platform/files.h"
#include "tests/host.h"

namespace {

using namespace std::string_literals;
using NTest::TempFolder;

std::string ReadBack(std::u16string_view path) {
    const NPlatform::InputFile file(path);
    std::string bytes(file.IsOpen() ? file.Size() : 0, '\0');
    return file.IsOpen() && file.ReadAt(0, bytes.data(), bytes.size()) ? bytes : "nothing";
}

TEST(Windows, OpensFilesOfAnyName) {
    const TempFolder folder;
    const std::u16string name = u"ein langer Name \u4E2D\u6587";
    const std::u16string root = folder.Path("");
    std::u16string deep;
    while (deep.size() < 400) {
        deep += name + u"\\";
        std::filesystem::create_directory(u"\\\\?\\" + root + deep);
    }
    const NTest::WorkingFolder working(folder);
    for (const std::u16string& path : {u"\u00E4\u00F6 \u00FC.csv"s, u"\u4E2D\u6587\U0001F600.csv"s,
                                       std::u16string(200, u'x'), deep + u"file"}) {
        NPlatform::TextOutputStream(path) << "a\n";
        EXPECT_EQ(ReadBack(path), "a\r\n");
        std::u16string fullPath;
        EXPECT_TRUE(NPlatform::FindReadableFile(u"missing\\../" + path, fullPath));
        EXPECT_EQ(fullPath, root + path);
        NPlatform::RemoveFile(fullPath);
        EXPECT_FALSE(NPlatform::FindReadableFile(path, fullPath));
    }
    for (; !deep.empty(); deep.resize(deep.size() - name.size() - 1)) {
        RemoveDirectoryW(std::filesystem::path(u"\\\\?\\" + root + deep).c_str());
    }
}

TEST(Windows, FindsRegularFilesOnly) {
    const TempFolder folder;
    std::u16string fullPath = u"unchanged";
    for (const std::u16string& path : {folder.Path(""), folder.Path("missing"), u"NUL"s, u""s,
                                       folder.Put("file", "x") + u"\\file", u"\\\\.\\pipe\\none"s}) {
        EXPECT_FALSE(NPlatform::FindReadableFile(path, fullPath)) << NTest::Utf8(path);
    }
    EXPECT_EQ(fullPath, u"unchanged");
}

TEST(Windows, EmptiesAFileThatIsInUse) {
    const TempFolder folder;
    const std::u16string path = folder.Put("file", "older and longer");
    const NPlatform::InputFile reader(path);
    NPlatform::TextOutputStream(path) << "new";
    EXPECT_EQ(folder.Read("file"), "new");
}

}  // namespace
