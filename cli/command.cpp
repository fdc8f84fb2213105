#include "cli/command.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <system_error>
#include <vector>

#include "cli/failure.h"
#include "cli/input.h"
#include "cli/output.h"
#include "cli/progress.h"
#include "cli/text.h"

namespace NCli {

using namespace NXls2Tki;

namespace fs = std::filesystem;

namespace {

void Note(const std::string& sentence) { Tell(("Note: " + sentence).c_str()); }

WideString ToLibraryPath(const fs::path& path) {
    const std::u8string bytes = path.u8string();
    return DecodeUtf8({reinterpret_cast<const char*>(bytes.data()), bytes.size()}).text;
}

// A reason without the file's name gets it.
[[noreturn]] void Fail(const fs::path& path, const std::string& reason) {
    const bool isNamed = reason.find(path.filename().string()) != std::string::npos;
    throw Failure(isNamed ? reason : NameOf(path) + ": " + reason);
}

[[noreturn]] void FailWithLibraryMessage() {
    const std::string message = EncodeUtf8(GetLoggedMessages());
    throw Failure(message.empty() ? "The conversion failed without a message." : message);
}

void PrepareLibrary() {
    if (!XlsInitOle(true)) Note("Automation could not be prepared, without which Excel reads no workbooks.");
}

// The document must not take the place of its own table. A device can be both, such as the terminal.
void RefuseInputAsOutput(const Options& options) {
    std::error_code ignored;
    if (fs::is_regular_file(options.input, ignored) &&
        fs::equivalent(options.input, options.output, ignored)) {
        throw WrongUsage("The output " + NameOf(options.output) + " is the input itself.");
    }
}

// The message text has the reason when it fails.
bool CallLibrary(const Options& options, const fs::path& input, const fs::path& output) {
    try {
        return Xls2TkiConvert(ToLibraryPath(input).c_str(), options.worksheet.c_str(),
                              ToLibraryPath(output).c_str(), options.kind, true, options.separator,
                              options.vsgNames, options.typeANames, {}, options.variant.c_str(),
                              options.diagnosticInstance.c_str(), options.utf8);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {  // from Excel
        Fail(options.input, error.what());
    }
}

void ConvertTo(const fs::path& output, const Input& input, const Options& options) {
    ListenToProgress(options.verbose);
    if (CallLibrary(options, input.Path(), output)) return;
    if (const std::string reason = OpeningFailure(); !reason.empty()) Fail(options.input, reason);
    FailWithLibraryMessage();
}

enum class Listing {
    Done,
    NoWorkbook,  // a conversion has the reason
    Refused,     // the message text has the reason
};

Listing FindWorksheets(const Options& options, std::vector<WideString>& names) {
    try {
        const bool isListed = GetExcelWorksheets(ToLibraryPath(options.input).c_str(), names);
        if (!isListed) return Listing::Refused;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {
        return Listing::NoWorkbook;
    }
    return names.empty() ? Listing::NoWorkbook : Listing::Done;
}

bool IsExcelUnableToList() { return EncodeUtf8(GetLoggedMessages()).starts_with("On using Excel 2003, "); }

void CheckWorksheet(const Options& options) {
    if (options.worksheet.empty()) return;
    if (options.kind != ImportTypeExcel) {
        Note("--worksheet is for --excel only and has no effect here.");
        return;
    }
    std::vector<WideString> names;
    const Listing listing = FindWorksheets(options, names);
    if (listing == Listing::Refused && IsExcelUnableToList()) {
        Note("--worksheet has no effect with Excel 2003, which reads the first worksheet.");
    }
    const bool isMissing = std::find(names.begin(), names.end(), options.worksheet) == names.end();
    if (listing != Listing::Done || !isMissing) return;
    std::string sentence =
        NameOf(options.input) + " has no worksheet \"" + EncodeUtf8(options.worksheet) + "\", only:";
    for (const WideString& name : names) sentence += "\n  " + EncodeUtf8(name);
    throw Failure(sentence);
}

[[noreturn]] void FailWithoutWorkbook(const Options& options) {
    ConvertTo({}, Input(options.input, options.kind), options);  // cannot write anything
    Fail(options.input, "The worksheets could not be listed.");
}

}  // namespace

void ListWorksheets(const Options& options) {
    PrepareLibrary();
    std::vector<WideString> names;
    const Listing listing = FindWorksheets(options, names);
    if (listing == Listing::NoWorkbook) FailWithoutWorkbook(options);
    if (listing == Listing::Refused) FailWithLibraryMessage();
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
    ConvertTo(output.Path(), input, options);
    output.Publish();
}

}  // namespace NCli
