#include "cli/command.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/detection.h"
#include "cli/failure.h"
#include "cli/finding_lines.h"
#include "cli/findings.h"
#include "cli/hints.h"
#include "cli/input.h"
#include "cli/library.h"
#include "cli/output.h"
#include "cli/report.h"
#include "cli/sarif.h"
#include "cli/table_line.h"
#include "cli/text.h"

namespace NCli {

using namespace NXls2Tki;

namespace {

// The document must not take the place of its own table. A device can be both, such as the terminal.
void RefuseInputAsOutput(const Options& options) {
    if (IsRegularFile(options.input) && AreSameFile(options.input, options.output)) {
        throw WrongUsage("The output " + NameOf(options.output) + " is also the input.");
    }
}

void RefuseToReplaceOthers(const Options& options) {
    if (options.checks || options.force) return;
    if (const std::string reason = ReasonToKeep(options.output); !reason.empty()) throw WrongUsage(reason);
}

// The library puts the name among the settings for the driver manager as it is: it could be read as another
// file, and even as another driver to load.
void RefuseNameAmongSettings(const Options& options) {
    const std::string name = ToBytes(options.input);
    const std::size_t begin = std::min(name.find_first_not_of(" \t"), name.size());
    if (name.find(';') == std::string::npos && name.substr(begin, 1) != "{") return;
    throw Failure("An ODBC driver would take " + NameOf(options.input) +
                  " for something else: remove semicolons and a leading brace from its name.");
}

// Shows no more than a user reads, however many and long the names of a hostile workbook are.
[[noreturn]] void RefuseWorksheet(const Options& options, const std::vector<WideString>& names) {
    constexpr std::size_t kMostNames = 20;
    constexpr std::size_t kLongestName = 64;
    const std::string wanted = ShownName(options.worksheet, kLongestName);
    std::string sentence =
        NameOf(options.input) + " has no worksheet \"" + wanted + "\". Its worksheets are:";
    const std::size_t shown = std::min(names.size(), kMostNames);
    for (std::size_t index = 0; index < shown; ++index) {
        sentence += "\n  " + ShownName(names[index], kLongestName);
    }
    if (shown < names.size()) sentence += "\n  ... and " + std::to_string(names.size() - shown) + " more";
    throw Failure(sentence);
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
    RefuseWorksheet(options, names);
}

// Carries out what the library may refuse, with what may help against that. `input` is what the options name,
// or its copy.
template <typename Task>
void DoWithHints(const Options& options, const std::filesystem::path& input, Task task) {
    try {
        task();
    } catch (Failure& failure) {
        try {
            failure.SetHint(FindHint(options, input, failure.what()));
        } catch (const std::exception&) {  // the failure alone is what counts
        }
        throw;
    }
}

// All that the command prints.
void Print(const std::string& text, const std::string& name) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && CloseStandardOutput()) return;
    throw Failure("Could not write the " + name + ": " + SystemText(errno));
}

// Why a table that converted is refused for its findings; empty where it is not.
std::string ReasonInFindings(const Options& options) {
    if (!options.findings || !(options.strict || options.checks)) return {};
    const FindingTotals totals = CountFindings();
    const std::string counts = CountedFindings(totals.errors, totals.warnings);
    if (options.checks) return totals.errors > 0 ? "--check: " + counts + "." : std::string();
    if (totals.errors > 0) return "--strict: " + counts + ", so nothing was written.";
    if (xls2tki_findings_complete()) return {};
    return "--strict: not all of the table was checked, so nothing was written.";
}

void ConvertTable(Options& options) {
    RefuseInputAsOutput(options);
    RefuseToReplaceOthers(options);
    if (options.kind == ImportTypeODBC) RefuseNameAmongSettings(options);
    PrepareLibrary();
    DoWithHints(options, options.input, [&] { CheckWorksheet(options); });
    std::optional<Output> output;
    if (!options.checks) output.emplace(options.output, options.force);
    const Input input(options.input, options.kind);
    if (options.kind == ImportTypeCSV) ChooseReading(options, input.Path());
    try {
        DoWithHints(options, input.Path(),
                    [&] { RunConversion(options, input.Path(), output ? output->Path() : kNoOutput); });
    } catch (const Failure&) {
        ShowFindings(options, false);
        throw;
    }
    const std::string reason = ReasonInFindings(options);
    if (reason.empty() || !options.isOneOfMany) ShowFindings(options, true);
    const bool isDescribed = !options.reports && !options.isOneOfMany && options.sarif != kStandardOutput;
    if (options.checks && isDescribed) Print(DescribeTable(options), "result");
    if (!reason.empty()) throw Failure(reason);
    if (output) output->Publish(FactsOfDocument().written);
}

// Findings are wanted most where there is no document for them.
void ConvertWithFindings(Options& options) {
    if (options.sarif.empty()) return ConvertTable(options);
    SarifFile sarif(options.sarif);
    try {
        ConvertTable(options);
    } catch (const WrongUsage&) {
        throw;
    } catch (const std::exception& error) {
        try {
            sarif.Write(options, SentenceOf(error));
        } catch (const std::exception& other) {
            Tell(SentenceOf(other));
        }
        throw;
    }
    sarif.Write(options, {});
}

}  // namespace

void ListWorksheets(const Options& options) {
    PrepareLibrary();
    std::vector<WideString> names;
    DoWithHints(options, options.input, [&] {
        names = FindWorksheets(options);
        if (names.empty()) FailWithLibraryMessage();
    });
    std::string lines;
    for (const WideString& name : names) lines += ShownName(name, kWholeName) + "\n";
    Print(lines, "names");
}

int WithErrorsFound(int status) { return CountFindings().errors > 0 ? status | kErrorsFound : status; }

void Convert(const Options& given) {
    Options options = given;
    if (!options.reports) return ConvertWithFindings(options);
    KeepMessages();
    try {
        ConvertWithFindings(options);
    } catch (const std::exception& error) {
        if (const std::string_view hint = HintOf(error); !hint.empty()) KeepMessage(hint);
        Print(MakeReport(options, SentenceOf(error)), "result");
        throw;
    }
    Print(MakeReport(options, {}), "result");
}

}  // namespace NCli
