#include "workbook/file_formats.h"

#include "platform/library_files.h"
#include "workbook/workbook_file.h"
#include "workbook/xls/xls.h"
#include "workbook/xlsx/xlsx.h"

namespace NWorkbook {

namespace {

constexpr std::string_view kZip = "PK";
constexpr std::size_t kFirstBytes = 8;

// As many as it takes to distinguish the formats; none if the file is shorter.
std::string FirstBytes(const WorkbookFile& file) {
    std::string bytes(file.Size() < kFirstBytes ? 0 : kFirstBytes, '\0');
    file.Read(0, bytes.data(), bytes.size());
    return bytes;
}

}  // namespace

std::unique_ptr<Workbook> OpenWorkbook(std::u16string_view path) {
    auto file = std::make_unique<WorkbookFile>(path);
    const std::string first = FirstBytes(*file);
    if (first.starts_with(kZip)) return NXlsx::Open(std::move(file));
    if (NXls::CanBe(first)) return NXls::Open(std::move(file));
    throw file->Error(u"is not a workbook.");
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
