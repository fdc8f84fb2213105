#include "api/excel_detection.h"

#include <span>

#include "platform/registry.h"
#include "sources/excel_heap.h"

namespace NXls2Tki {

using NPlatform::RegistryResult;

namespace {

constexpr struct {
    std::u16string_view registryText;
    VExcelVersion version;
    std::u16string_view displayString;
} kVersions[] = {
    {u"Excel.Application.11", ExcelVersion2003, u"Microsoft Excel 2003"},
    {u"Excel.Application.10", ExcelVersion2000, u"Microsoft Excel 2000"},
    {u"Excel.Application.12", ExcelVersion2007, u"Microsoft Excel 2007"},
    {u"Excel.Application.14", ExcelVersion2010, u"Microsoft Excel 2010"},
};

std::u16string detectionErrorText;

// `what`: the part of the registry that may not be read.
VExcelVersion DenyAccess(std::u16string_view what) {
    detectionErrorText = u"ERROR_ACCESS_DENIED: Korvalith.exe can't access registry ";
    detectionErrorText.append(what).append(
        u": 'HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\Excel.Application\\CurVer'. Please check if installation "
        u"of MS Excel is available for current user.");
    return ExcelAccessDenied;
}

VExcelVersion RecogniseVersion(std::u16string_view registryText, std::u16string& displayString) {
    for (const auto& known : kVersions) {
        if (registryText != known.registryText) continue;
        displayString = known.displayString;
        return known.version;
    }
    displayString = registryText;
    return ExcelVersionUnknown;
}

}  // namespace

VExcelVersion DetectExcelVersion(std::u16string& displayString) {
    char16_t units[2048] = {};
    std::uint32_t type = 0;
    std::size_t size = 0;  // in bytes
    const RegistryResult result =
        NPlatform::ReadRegistry(u"SOFTWARE\\Classes\\Excel.Application\\CurVer",
                                std::as_writable_bytes(std::span(units)), type, size);
    if (result == RegistryResult::KeyDenied) return DenyAccess(u"path");
    if (result == RegistryResult::ValueDenied) return DenyAccess(u"value");
    if (result != RegistryResult::Done) return ExcelNotInstalled;
    if (type != NPlatform::kRegistryText && type != NPlatform::kRegistryExpandableText) {
        return ExcelNotInstalled;
    }
    const bool isTerminated = size == 0 || (size % 2 == 0 && units[size / 2 - 1] == u'\0');
    if (!isTerminated) return ExcelNotInstalled;
    return RecogniseVersion(units, displayString);
}

void ReportExcelVersion(VExcelVersion version, std::u16string_view displayString,
                        std::u16string& messageText) {
    switch (version) {
        case ExcelVersion2000:
        case ExcelVersion2003:
        case ExcelVersion2007:
        case ExcelVersion2010:
            return;
        case ExcelVersionUnknown:
            messageText =
                u"The application MS Excel 2000 or higher is needed on this system. The currently "
                u"installed MS Excel version is unknown (";
            messageText.append(displayString).append(u"). Trying to use Excel 2010 interfaces.");
            return;
        case ExcelNotInstalled:
            messageText =
                u"The application MS Excel 2000 or higher is not installed on this system. Aborting "
                u"data transformation.";
            return;
        case ExcelAccessDenied:
            messageText = u"It is not possible to detect Excel version. (" + detectionErrorText + u")";
            return;
    }
    messageText = u"Unknown error!";
}

std::unique_ptr<VCSVReader::IExcelHeap> MakeExcelHeap(VExcelVersion version, std::u16string_view path,
                                                      VCSVReader::VLogObject& log) {
    switch (version) {
        case ExcelVersion2000:
            return std::make_unique<VCSVReader::VExcel2000Heap>(path, &log);
        case ExcelVersion2007:
            return std::make_unique<VCSVReader::VExcel2007Heap>(path, &log);
        case ExcelVersion2010:
        case ExcelVersionUnknown:
            return std::make_unique<VCSVReader::VExcel2010Heap>(path, &log);
        default:
            return nullptr;
    }
}

}  // namespace NXls2Tki
