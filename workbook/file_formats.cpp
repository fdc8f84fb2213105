#include "workbook/file_formats.h"

#include <algorithm>
#include <vector>

#include "platform/library_files.h"
#include "workbook/workbook_file.h"
#include "workbook/xlsx/xlsx.h"

namespace NWorkbook {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kZip = "PK";
constexpr std::string_view kCompound = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv;

// An entry of a compound file's directory begins with its name, of 64 bytes; the size of the name, with its
// NUL, and the kind of the entry (2, a stream) follow.
constexpr std::size_t kEntrySize = 128;
constexpr std::size_t kSizeOffset = 64;
constexpr std::string_view kEncryptedName = "E\0n\0c\0r\0y\0p\0t\0e\0d\0P\0a\0c\0k\0a\0g\0e\0\0\0"sv;
constexpr std::string_view kEncryptedSize = "\x22\0\2"sv;

bool IsEncryptedEntry(std::string_view entry) {
    return entry.starts_with(kEncryptedName) && entry.substr(kSizeOffset).starts_with(kEncryptedSize);
}

// Looks at every place where an entry can be instead of following the directory, which can be damaged.
bool HasEncryptedEntry(const WorkbookFile& file) {
    constexpr std::size_t kPiece = std::size_t{1} << 16;
    std::vector<char> bytes(kPiece);
    for (std::uint64_t offset = 0; offset < file.Size(); offset += kPiece) {
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(kPiece, file.Size() - offset));
        file.Read(offset, bytes.data(), count);
        for (std::size_t at = 0; at + kEntrySize <= count; at += kEntrySize) {
            if (IsEncryptedEntry({bytes.data() + at, kEntrySize})) return true;
        }
    }
    return false;
}

// As many as it takes to distinguish the formats; none if the file is shorter.
std::string FirstBytes(const WorkbookFile& file) {
    std::string bytes(file.Size() < kCompound.size() ? 0 : kCompound.size(), '\0');
    file.Read(0, bytes.data(), bytes.size());
    return bytes;
}

}  // namespace

std::unique_ptr<Workbook> OpenWorkbook(std::u16string_view path) {
    auto file = std::make_unique<WorkbookFile>(path);
    const std::string first = FirstBytes(*file);
    if (first.starts_with(kZip)) return NXlsx::Open(std::move(file));
    if (first != kCompound) throw file->Error(u"is not a workbook.");
    if (HasEncryptedEntry(*file)) throw file->Error(u"is encrypted: a password is needed to open it.");
    throw file->Error(u"is a workbook of the older kind (.xls), which cannot be read yet. Save it as .xlsx.");
}

void SaveWorkbook(Workbook& workbook, std::u16string_view path) {
    std::u16string fullPath;
    if (!NPlatform::FindPlaceForFile(path, fullPath)) {
        throw WorkbookError(u"The workbook cannot be saved as '" + std::u16string(path) +
                            u"', which is not a file.");
    }
    if (!workbook.isOwn) {
        throw WorkbookError(
            u"The workbook cannot be saved as '" + std::u16string(path) +
            u"': another program wrote it, and it may hold more than plain cells. Save into a "
            u"new workbook.");
    }
    NXlsx::Save(workbook, path, fullPath);
    workbook.path = fullPath;
}

}  // namespace NWorkbook
