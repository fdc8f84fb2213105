#include "cli/command.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>
#include <vector>

#include "cli/failure.h"
#include "cli/input.h"
#include "cli/output.h"
#include "cli/text.h"
#include "platform/logging.h"

namespace NCli {

using namespace NXls2Tki;
using NTamriskSharedUtil::Logging::VLogging;
using NTamriskSharedUtil::Logging::VLogLevel;

namespace fs = std::filesystem;

namespace {

void Note(const std::string& sentence) { Tell(("Note: " + sentence).c_str()); }

WideString ToLibraryPath(const fs::path& path) {
    const std::u8string bytes = path.u8string();
    return DecodeUtf8({reinterpret_cast<const char*>(bytes.data()), bytes.size()}).text;
}

[[noreturn]] void FailWithLibraryMessage() {
    const std::string message = EncodeUtf8(GetLoggedMessages());
    throw Failure(message.empty() ? "The conversion failed without a message." : message);
}

void PrepareLibrary() {
    if (!XlsInitOle(true)) Note("Automation could not be prepared, without which Excel reads no workbooks.");
}

void ShowMessage(VLogLevel::VSeverityLevel, std::uint32_t, const char16_t* text) {
    const std::u16string_view units(text);
    const std::string line = EncodeUtf8(WideString(units.begin(), units.end())) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void ShowMessages() {
    constexpr std::uint32_t kAllGroups = 0xFFFFFFFF;
    constexpr VLogLevel::VSeverityLevel kProgress{2};
    VLogging::GetInstance().SwitchOn(kAllGroups, kProgress, ShowMessage);
}

// The document must not take the place of its own table. A device can be both, such as the terminal.
void RefuseInputAsOutput(const Options& options) {
    std::error_code ignored;
    if (fs::is_regular_file(options.input, ignored) &&
        fs::equivalent(options.input, options.output, ignored)) {
        throw WrongUsage("The output " + NameOf(options.output) + " is the input itself.");
    }
}

void CheckWorksheet(const Options& options) {
    if (options.worksheet.empty()) return;
    if (options.kind != ImportTypeExcel) {
        Note("--worksheet is for --excel only and has no effect here.");
        return;
    }
    std::vector<WideString> names;
    // Where there is no list, the conversion has the better reason.
    if (!GetExcelWorksheets(ToLibraryPath(options.input).c_str(), names)) return;
    if (std::find(names.begin(), names.end(), options.worksheet) != names.end()) return;
    std::string sentence =
        NameOf(options.input) + " has no worksheet \"" + EncodeUtf8(options.worksheet) + "\", only:";
    for (const WideString& name : names) sentence += "\n  " + EncodeUtf8(name);
    throw Failure(sentence);
}

bool CallLibrary(const Options& options, const Input& input, const Output& output) {
    return Xls2TkiConvert(ToLibraryPath(input.Path()).c_str(), options.worksheet.c_str(),
                          ToLibraryPath(output.Path()).c_str(), options.kind, options.verbose,
                          options.separator, options.vsgNames, options.typeANames, {},
                          options.variant.c_str(), options.diagnosticInstance.c_str(), options.utf8);
}

}  // namespace

void ListWorksheets(const Options& options) {
    PrepareLibrary();
    std::vector<WideString> names;
    if (!GetExcelWorksheets(ToLibraryPath(options.input).c_str(), names)) FailWithLibraryMessage();
    std::string lines;
    for (const WideString& name : names) lines += EncodeUtf8(name) + "\n";
    if (std::fwrite(lines.data(), 1, lines.size(), stdout) != lines.size() || std::fflush(stdout) != 0) {
        throw Failure("Could not write the names: " + SystemText(errno));
    }
}

void Convert(const Options& options) {
    RefuseInputAsOutput(options);
    PrepareLibrary();
    CheckWorksheet(options);
    Output output(options.output);
    const Input input(options.input, options.kind);
    if (options.kind == ImportTypeCSV) input.RequireEncoding(options.utf8);
    if (options.verbose) ShowMessages();
    if (!CallLibrary(options, input, output)) FailWithLibraryMessage();
    output.Publish();
}

}  // namespace NCli
