#include "cli/command.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/detection.h"
#include "cli/failure.h"
#include "cli/findings.h"
#include "cli/hints.h"
#include "cli/input.h"
#include "cli/library.h"
#include "cli/output.h"
#include "cli/report.h"
#include "cli/sarif.h"
#include "cli/table_lines.h"
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
    if (const std::string reason = ReasonToKeep(options.output, kImportDocument); !reason.empty())
        throw WrongUsage(reason);
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

// Shows no more than a user reads, even if a malicious workbook has many long names.
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

// For the process that started this one for one of many files: where it listens.
void HandOver(const std::string& text, const Options& options) {
    std::fwrite(text.data(), 1, text.size(), options.reports ? stdout : stderr);
}

// All that the command prints.
void Print(const std::string& text, const std::string& name) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && CloseStandardOutput()) return;
    throw Failure("Could not write the " + name + ": " + SystemText(errno));
}

// Why a table that converted is refused for its findings; empty where it is not.
std::string ReasonInFindings(const Options& options) {
    if (!options.findings || !(options.strict || options.checks)) return {};
    const bool hasErrors = CountFindings().errors > 0;
    const std::string counts = CountedFindings();
    if (options.checks) return hasErrors ? "--check: " + counts + "." : std::string();
    if (hasErrors) return "--strict: " + counts + ", so nothing was written.";
    if (xls2tki_findings_complete()) return {};
    return "--strict: not all of the table was checked, so nothing was written.";
}

// What was found in the table, and for --check, what it is. Of one of many files that is refused for its
// findings, the reason counts them. A lack of memory changes nothing about a document that is in its place.
void ShowTable(const Options& options, Findings& findings, bool isDone) {
    const bool isConverted = FindFacts().has_value();
    const bool describes = options.checks && isConverted && !options.reports;
    try {
        findings = TakeFindings();
        if (describes && options.isOneOfMany) Tell(DescribeTable() + ".");
        if (isDone || !isConverted || !options.isOneOfMany) ShowFindings(options, findings);
    } catch (const std::bad_alloc&) {
        Tell("Note: There is not enough memory to show the findings.");
    }
    if (!describes || options.isOneOfMany || options.sarif == kStandardOutput) return;
    Print(ShownInput(options) + ": " + DescribeTable() + "\n", "result");
}

void ConvertInput(const Options& options, const Input& input, std::optional<Output>& output) {
    DoWithHints(options, input.Path(),
                [&] { RunConversion(options, input.Path(), output ? output->Path() : kNoOutput); });
    if (const std::string reason = ReasonInFindings(options); !reason.empty()) throw Failure(reason);
    if (output) output->Publish(FindFacts()->written);
}

// Findings help most when there is no document.
void ConvertTable(Options& options, Findings& findings) {
    RefuseInputAsOutput(options);
    RefuseToReplaceOthers(options);
    if (options.kind == ImportTypeODBC) RefuseNameAmongSettings(options);
    PrepareLibrary();
    DoWithHints(options, options.input, [&] { CheckWorksheet(options); });
    std::optional<Output> output;
    if (!options.checks) output.emplace(options.output, options.force ? nullptr : &kImportDocument);
    const Input input(options.input, options.kind);
    if (options.kind == ImportTypeCSV) ChooseReading(options, input.Path());
    try {
        ConvertInput(options, input, output);
    } catch (const std::exception&) {
        ShowTable(options, findings, false);
        throw;
    }
    ShowTable(options, findings, true);
}

// Carries out the task, and then writes what `write` makes of its failure, null where it has not failed. The
// user is told of both failures.
template <typename Task, typename Write>
void DoAndWrite(const std::string& name, Task task, Write write) {
    const Failure noMemory("Could not write " + name + ": there is not enough memory");
    const auto tryToWrite = [&](const std::exception* failure) {
        try {
            write(failure);
        } catch (const std::bad_alloc&) {
            throw Failure(noMemory);
        }
    };
    try {
        task();
    } catch (const std::exception& failure) {
        try {
            tryToWrite(&failure);
        } catch (const std::exception& other) {
            Tell(SentenceOf(other));
        }
        throw;
    }
    tryToWrite(nullptr);
}

void ConvertWithSarif(Options& options, Findings& findings) {
    if (options.sarif.empty()) return ConvertTable(options, findings);
    std::optional<SarifLog> log;  // of one of many files, it is the other process's
    if (!options.isOneOfMany) log.emplace(options);
    const auto write = [&](const std::exception* failure) {
        if (log && dynamic_cast<const WrongUsage*>(failure) != nullptr) return;
        const SarifPart part = MakeSarifPart(options, findings, SentenceOf(failure));
        if (!log) return HandOver(Wrap(part), options);
        log->Add(part);
        log->Publish();
    };
    DoAndWrite(
        NameOf(options.sarif), [&] { ConvertTable(options, findings); }, write);
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
    Findings findings;
    if (!options.reports) return ConvertWithSarif(options, findings);
    KeepMessages();
    const std::string unknown = MakeReport(options, {}, "There is not enough memory to report the result.");
    const auto write = [&](const std::exception* failure) {
        try {
            if (failure != nullptr) KeepMessage(HintOf(*failure));
            Print(MakeReport(options, findings, SentenceOf(failure)), "result");
        } catch (const std::bad_alloc&) {
            Print(unknown, "result");
            throw;
        }
    };
    DoAndWrite(
        "the result", [&] { ConvertWithSarif(options, findings); }, write);
}

}  // namespace NCli
