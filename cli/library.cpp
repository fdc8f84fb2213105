#include "cli/library.h"

#include <cstddef>
#include <new>
#include <string>
#include <vector>

#include "cli/failure.h"
#include "cli/files.h"
#include "cli/progress.h"
#include "cli/text.h"

namespace NCli {

using namespace NXls2Tki;

namespace fs = std::filesystem;

namespace {

WideString ToLibraryPath(const fs::path& path) { return DecodeUtf8(ToBytes(path)).text; }

std::string LibraryMessage() { return EncodeUtf8(xls2tki_message()); }

// A reason without the file's name gets it.
[[noreturn]] void Fail(const fs::path& path, const std::string& reason) {
    const bool isNamed = reason.find(ToBytes(path.filename())) != std::string::npos;
    throw Failure(isNamed ? reason : NameOf(path) + ": " + reason);
}

std::vector<const Xls2TkiChar*> TextsOf(const WideStringSet& names) {
    std::vector<const Xls2TkiChar*> texts;
    for (const WideString& name : names) texts.push_back(name.c_str());
    return texts;
}

bool CallConversion(const Options& options, const fs::path& input, const fs::path& output) {
    const WideString given = ToLibraryPath(options.kind == ImportTypeExcel ? ToExcelPath(input) : input);
    const WideString document = ToLibraryPath(output);
    const std::vector<const Xls2TkiChar*> vsgNames = TextsOf(options.vsgNames);
    const std::vector<const Xls2TkiChar*> typeANames = TextsOf(options.typeANames);
    const Xls2TkiConversion conversion = {
        .size = sizeof conversion,
        .inputPath = given.c_str(),
        .worksheetName = options.worksheet.c_str(),
        .outputPath = document.c_str(),
        .importType = options.kind,
        .separator = options.separator.value_or(';'),
        .forwardMessages = true,
        .utf8 = options.encoding.value_or(Encoding::EightBit) != Encoding::EightBit,
        .vsgNames = {vsgNames.data(), vsgNames.size()},
        .secondNames = {typeANames.data(), typeANames.size()},
        .thirdNames = {},
        .variant = options.variant.c_str(),
        .diagnosticInstance = options.diagnosticInstance.c_str(),
        .findings = options.findings,
        .onMessage = nullptr,
        .messageContext = nullptr};
    return xls2tki_convert(&conversion);
}

[[noreturn]] void FailWithoutWorksheets(const Options& options) {
    RunConversion(options, options.input, kNoOutput);  // has the reason
    Fail(options.input, "The worksheets could not be listed.");
}

}  // namespace

void PrepareLibrary() {
    if (!XlsInitOle(true)) Note("Automation could not be started, so Excel cannot read workbooks.");
}

void RunConversion(const Options& options, const fs::path& input, const fs::path& output) {
    ListenToProgress(options.verbose);
    if (CallConversion(options, input, output)) return;
    if (xls2tki_failure() == XLS2TKI_OUT_OF_MEMORY) throw std::bad_alloc();
    const bool isExcels = xls2tki_failure() == XLS2TKI_EXCEL_FAILED;
    const std::string reason = isExcels ? LibraryMessage() : OpeningFailure();
    if (!reason.empty()) Fail(options.input, reason);
    if (options.kind != ImportTypeODBC) FailWithLibraryMessage();
    Fail(options.input, LibraryMessage());
}

std::optional<Xls2TkiFacts> FindFacts() {
    Xls2TkiFacts facts{};
    facts.size = offsetof(Xls2TkiFacts, itemHeaders);
    if (!xls2tki_facts(&facts)) return std::nullopt;
    return facts;
}

Xls2TkiFacts FindAllFacts() {
    Xls2TkiFacts facts{};
    facts.size = sizeof facts;
    if (!xls2tki_facts(&facts)) throw std::bad_alloc();
    return facts;
}

std::vector<WideString> FindWorksheets(const Options& options) {
    std::vector<WideString> names;  // which may hold zeros: so not through the C interface
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
