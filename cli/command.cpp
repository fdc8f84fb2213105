#include "cli/command.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>
#include <vector>

#include "cli/failure.h"
#include "cli/input.h"
#include "cli/library.h"
#include "cli/output.h"
#include "cli/text.h"

namespace NCli {

using namespace NXls2Tki;

namespace fs = std::filesystem;

namespace {

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
    const std::vector<WideString> names = FindWorksheets(options);
    if (names.empty()) {
        Note("--worksheet has no effect with Excel 2003, which reads the first worksheet.");
        return;
    }
    if (std::find(names.begin(), names.end(), options.worksheet) != names.end()) return;
    std::string sentence =
        NameOf(options.input) + " has no worksheet \"" + EncodeUtf8(options.worksheet) + "\", only:";
    for (const WideString& name : names) sentence += "\n  " + EncodeUtf8(name);
    throw Failure(sentence);
}

}  // namespace

void ListWorksheets(const Options& options) {
    PrepareLibrary();
    const std::vector<WideString> names = FindWorksheets(options);
    if (names.empty()) FailWithLibraryMessage();
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
    RunConversion(options, input.Path(), output.Path());
    output.Publish();
}

}  // namespace NCli
