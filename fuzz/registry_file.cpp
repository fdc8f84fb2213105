// Registry files to the version of the installed Excel. The input is the file.
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

// Whatever stands before it, a key that is well written is found, with its value.
void CheckIsFoundBehind(std::u16string_view text) {
    const std::u16string name = u"v";
    std::u16string file(text);
    file.append(u"\n\n[").append(kKey).append(u"]\n\"v\"=dword:1234abcd\n");
    const auto found = FindInRegFile(file, kKey, name);
    if (!found || found->isDenied) {
        Require(!FindInRegFile(text, u"", u"") || found, "a key that is well written is found");
        return;
    }
    Require(found->value && found->value->type == NPlatform::kRegistryNumber && !found->value->isDenied &&
                found->value->data.size() == 4 && found->value->data[0] == std::byte{0xCD},
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
