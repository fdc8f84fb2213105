#include "cli/library.h"

#include <exception>
#include <new>
#include <string>

#include "cli/failure.h"
#include "cli/files.h"
#include "cli/progress.h"
#include "cli/text.h"

namespace NCli {

using namespace NXls2Tki;

namespace fs = std::filesystem;

namespace {

WideString ToLibraryPath(const fs::path& path) { return DecodeUtf8(ToBytes(path)).text; }

std::string LibraryMessage() { return EncodeUtf8(GetLoggedMessages()); }

// A reason without the file's name gets it.
[[noreturn]] void Fail(const fs::path& path, const std::string& reason) {
    const bool isNamed = reason.find(ToBytes(path.filename())) != std::string::npos;
    throw Failure(isNamed ? reason : NameOf(path) + ": " + reason);
}

// The message has the reason when it returns false.
bool CallConversion(const Options& options, const fs::path& input, const fs::path& output) {
    try {
        const fs::path given = options.kind == ImportTypeExcel ? ToExcelPath(input) : input;
        return Xls2TkiConvert(ToLibraryPath(given).c_str(), options.worksheet.c_str(),
                              ToLibraryPath(output).c_str(), options.kind, true,
                              options.separator.value_or(';'), options.vsgNames, options.typeANames, {},
                              options.variant.c_str(), options.diagnosticInstance.c_str(),
                              options.encoding.value_or(Encoding::EightBit) != Encoding::EightBit);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {  // from Excel
        Fail(options.input, error.what());
    }
}

[[noreturn]] void FailWithoutWorksheets(const Options& options) {
    RunConversion(options, options.input, kNoOutput);  // has the reason
    Fail(options.input, "The worksheets could not be listed.");
}

}  // namespace

void PrepareLibrary() {
    if (!XlsInitOle(true)) Note("Automation could not be prepared, without which Excel reads no workbooks.");
}

void RunConversion(const Options& options, const fs::path& input, const fs::path& output) {
    ListenToProgress(options.verbose);
    if (CallConversion(options, input, output)) return;
    if (const std::string reason = OpeningFailure(); !reason.empty()) Fail(options.input, reason);
    if (options.kind != ImportTypeODBC) FailWithLibraryMessage();
    Fail(options.input, LibraryMessage());
}

std::optional<Xls2TkiFacts> FindFacts() {
    Xls2TkiFacts facts{};
    facts.size = sizeof facts;
    if (!xls2tki_facts(&facts)) return std::nullopt;
    return facts;
}

std::vector<WideString> FindWorksheets(const Options& options) {
    std::vector<WideString> names;
    bool isListed = true;
    try {
        isListed = GetExcelWorksheets(ToLibraryPath(ToExcelPath(options.input)).c_str(), names);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {  // of the library's own class or from Excel; the list is then empty
    }
    if (isListed && names.empty()) FailWithoutWorksheets(options);
    if (!isListed && !LibraryMessage().starts_with("On using Excel 2003, ")) FailWithLibraryMessage();
    return names;
}

void FailWithLibraryMessage() {
    const std::string message = LibraryMessage();
    throw Failure(message.empty() ? "The conversion failed without a message." : message);
}

}  // namespace NCli
