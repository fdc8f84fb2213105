// Registry files to the version of the installed Excel. The input is the file.
#include <algorithm>
#include <cstdlib>
#include <string>

#include "api/excel_detection.h"
#include "fuzz/memory_file.h"
#include "platform/files.h"
#include "platform/linux/reg_file.h"
#include "platform/registry.h"

namespace {

using namespace NFuzz;
using NPlatform::FindInRegFile;

constexpr std::u16string_view kKey = u"HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\Excel.Application\\CurVer";

void Detect() {
    std::u16string displayString;
    std::u16string message;
    const NXls2Tki::VExcelVersion version = NXls2Tki::DetectExcelVersion(displayString);
    NXls2Tki::ReportExcelVersion(version, displayString, message);
    const bool isReadable = version != NXls2Tki::ExcelNotInstalled && version != NXls2Tki::ExcelAccessDenied;
    Require(isReadable || !message.empty(), "a version that reads nothing is reported");
}

bool HasHeader(std::u16string_view text) {
    constexpr std::u16string_view kBlanks = u" \t";
    std::u16string_view line = text.substr(0, text.find(u'\n'));
    line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
    line = line.substr(0, line.find_last_not_of(kBlanks) + 1);
    return line == u"Windows Registry Editor Version 5.00" || line == u"REGEDIT4";
}

// Whatever stands between the header and it, a key that is well written is found, with its value; without a
// header nothing is.
void CheckIsFoundBehind(std::u16string_view text) {
    std::u16string file(text);
    file.append(u"\n\n[").append(kKey).append(u"]\n@=\"v\"\n");
    const auto found = FindInRegFile(file, kKey);
    Require(found.has_value() == HasHeader(text), "a key that is well written is found in a registry file");
    if (!found) return;
    Require((!found->isDenied && !found->isValueDenied) || text.find(u";deny") != std::u16string_view::npos,
            "a key is denied where the file says so");
    Require(found->value && found->value->type == NPlatform::kRegistryText &&
                found->value->data.size() == 4 && found->value->data[0] == std::byte{'v'},
            "a value that is well written is found");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryFile file(Bytes(data, size));
    const std::u16string path = file.Path();
    setenv("XLS2TKI_REGISTRY", std::string(path.begin(), path.end()).c_str(), 1);
    Detect();
    NPlatform::TextBuffer text;
    NPlatform::ReadTextFile(path, NPlatform::TextEncoding::Utf8, text);
    CheckIsFoundBehind(text.View());
    return 0;
}
