#include "cli/batch.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <new>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/command.h"
#include "cli/failure.h"
#include "cli/files.h"
#include "cli/process.h"
#include "cli/report.h"
#include "cli/sarif.h"
#include "cli/system.h"
#include "cli/table_lines.h"

namespace NCli {

namespace {

struct Outcome {
    bool isKnown = false;
    bool isDone = false;
    bool hasErrors = false;  // the table has, as its findings say
    std::string line;        // for standard output
    SarifPart part;
};

// What a process said, without the marks that it was the command.
std::string JoinLines(std::string_view text) {
    constexpr std::string_view kMark = "xls2tki: ";
    std::string joined;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (!joined.empty()) joined += ' ';
        joined += line.starts_with(kMark) ? line.substr(kMark.size()) : line;
    }
    return joined;
}

std::string MakeLine(const Options& task, const char* end, std::string_view said) {
    std::string line = ShownInput(task) + ": " + end;
    if (!said.empty()) line += ": " + JoinLines(said);
    return line + '\n';
}

// For a task whose process could not say so itself.
Outcome MakeFailure(const Options& task, std::string_view failure) {
    return {true, false, false,
            task.reports ? MakeReport(task, {}, failure) : MakeLine(task, "failed", failure),
            MakeSarifPart(task, {}, failure)};
}

Outcome OutcomeOf(const Options& task, FinishedProcess& process) {
    constexpr int kHighestStatus = 2 | kErrorsFound;
    std::optional<SarifPart> part = Unwrap(process.text);
    const bool isReported = !task.reports || process.text.ends_with('\n');
    if (process.status < 0 || process.status > kHighestStatus || !isReported) {
        return MakeFailure(task,
                           "The process ended unexpectedly, with status " + std::to_string(process.status));
    }
    const bool hasErrors = (process.status & kErrorsFound) != 0;
    const bool isDone = (process.status & ~kErrorsFound) == 0;
    if (!part && !task.sarif.empty())
        part = MakeSarifPart(task, {}, "The findings of this file are missing.");
    if (!task.reports) process.text = MakeLine(task, isDone ? "done" : "failed", process.text);
    return {true, isDone, hasErrors, std::move(process.text), part.value_or(SarifPart())};
}

class Batch {
  public:
    // The log may be null.
    Batch(const CommandLine& line, SarifLog* log) : line_(line), log_(log), outcomes_(line.tasks.size()) {}

    // Returns when all tasks have ended. Throws Failure if an outcome could not be printed.
    void Run();
    [[nodiscard]] std::size_t Failures() const;
    [[nodiscard]] std::size_t FilesWithErrors() const;

  private:
    void Start(std::size_t index);
    void WaitForOne();
    void Tell(std::size_t index, Outcome outcome);
    void PrintKnownLines();
    [[nodiscard]] std::string Progress() const;
    void ShowProgress() const;
    void HideProgress() const;

    const CommandLine& line_;
    SarifLog* const log_;
    const bool showsProgress_ = IsTerminal(stderr);
    std::vector<Outcome> outcomes_;
    std::size_t known_ = 0;
    std::size_t printed_ = 0;
    int printError_ = 0;
};

void Batch::Run() {
    ShowProgress();
    for (std::size_t index = 0; index < outcomes_.size(); ++index) {
        if (RunningProcesses() == line_.jobs) WaitForOne();
        Start(index);
    }
    while (RunningProcesses() > 0) WaitForOne();
    HideProgress();
    if (!CloseStandardOutput() && printError_ == 0) printError_ = errno;
    if (printError_ != 0) throw Failure("Could not write the result: " + SystemText(printError_));
}

void Batch::Start(std::size_t index) {
    const Options& task = line_.tasks[index];
    try {
        while (!StartProcess(index, task)) WaitForOne();
    } catch (const Failure& failure) {
        Tell(index, MakeFailure(task, failure.what()));
    }
}

void Batch::WaitForOne() {
    FinishedProcess process = WaitForProcess();
    const Options& task = line_.tasks[process.index];
    try {
        Tell(process.index, OutcomeOf(task, process));
    } catch (const std::bad_alloc& error) {  // for what it wrote
        Tell(process.index, MakeFailure(task, SentenceOf(error)));
    }
}

void Batch::Tell(std::size_t index, Outcome outcome) {
    outcomes_[index] = std::move(outcome);
    ++known_;
    HideProgress();
    PrintKnownLines();
    ShowProgress();
}

void Batch::PrintKnownLines() {
    for (; printed_ < outcomes_.size() && outcomes_[printed_].isKnown; ++printed_) {
        const std::string line = std::move(outcomes_[printed_].line);
        const SarifPart part = std::move(outcomes_[printed_].part);
        if (log_ != nullptr) log_->Add(part);
        if (std::fwrite(line.data(), 1, line.size(), stdout) != line.size()) printError_ = errno;
    }
    if (std::fflush(stdout) != 0) printError_ = errno;
}

std::string Batch::Progress() const {
    return std::to_string(known_) + " of " + std::to_string(outcomes_.size()) + " files ";
}

void Batch::ShowProgress() const {
    if (showsProgress_) std::fputs(Progress().c_str(), stderr);
}

// What was shown last was no longer than it would be now.
void Batch::HideProgress() const {
    const int width = static_cast<int>(Progress().size());
    if (showsProgress_) std::fprintf(stderr, "\r%*s\r", width, "");
}

std::size_t Batch::Failures() const {
    const auto failed = std::count_if(outcomes_.begin(), outcomes_.end(),
                                      [](const Outcome& outcome) { return !outcome.isDone; });
    return static_cast<std::size_t>(failed);
}

std::size_t Batch::FilesWithErrors() const {
    const auto count = std::count_if(outcomes_.begin(), outcomes_.end(),
                                     [](const Outcome& outcome) { return outcome.hasErrors; });
    return static_cast<std::size_t>(count);
}

void MakeFolder(const std::filesystem::path& folder) {
    std::error_code error;
    if (TypeOf(folder, error) == std::filesystem::file_type::directory) return;
    std::filesystem::create_directory(ToSystemPath(folder), error);
    if (error) throw Failure("Could not create the folder " + NameOf(folder) + ": " + error.message());
}

// Where that fails, no task is tried, but each has its report.
void Prepare(const CommandLine& line, std::optional<SarifLog>& log) {
    try {
        if (!line.tasks.front().sarif.empty()) log.emplace(line.tasks.front());
        if (!line.outputFolder.empty()) MakeFolder(line.outputFolder);
    } catch (const Failure& failure) {
        for (const Options& task : line.tasks) {
            const Outcome outcome = MakeFailure(task, failure.what());
            if (task.reports) std::fputs(outcome.line.c_str(), stdout);
            if (log) log->Add(outcome.part);
        }
        if (log) log->Publish();
        throw;
    }
}

std::string Summarise(const CommandLine& line, std::size_t failed, std::size_t withErrors) {
    const std::size_t count = line.tasks.size();
    const char* const done = line.outputFolder.empty() ? " passed, " : " converted, ";
    return std::to_string(count) + (count == 1 ? " file: " : " files: ") + std::to_string(count - failed) +
           done + std::to_string(failed) + " failed" +
           (withErrors > 0 ? ", " + std::to_string(withErrors) + " with errors." : ".");
}

}  // namespace

void ConvertAll(const CommandLine& line) {
    std::optional<SarifLog> log;
    Prepare(line, log);
    Batch batch(line, log ? &*log : nullptr);
    batch.Run();
    std::string unwritten;
    try {
        if (log) log->Publish();
    } catch (const Failure& failure) {
        unwritten = failure.what();
    }
    const std::size_t failed = batch.Failures();
    const std::string summary = Summarise(line, failed, batch.FilesWithErrors());
    if (failed > 0 && unwritten.empty()) throw Failure(summary);
    Tell(summary);
    if (!unwritten.empty()) throw Failure(unwritten);
}

}  // namespace NCli
