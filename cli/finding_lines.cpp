#include "cli/finding_lines.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "cli/failure.h"
#include "cli/files.h"
#include "cli/findings.h"
#include "cli/library.h"
#include "cli/text.h"

namespace NCli {

namespace {

constexpr std::size_t kMostLines = 20;  // of a rule
constexpr std::size_t kMostLinesOfCause = 4;
constexpr std::size_t kMostCells = 12;  // that one line names

// One cause: its first places with their texts, and of some more the cells alone.
struct ShownCause {
    std::string rule;
    const char* severity;
    std::size_t index;
    std::size_t count;
    std::vector<std::pair<std::string, std::string>> places;  // place and text
    std::vector<std::string> cells;                           // of all places that are kept here
};

std::vector<ShownCause> GatherCauses() {
    std::vector<ShownCause> causes;
    ForEachFinding([&causes](const Finding& finding) {
        if (causes.empty() || causes.back().index != finding.cause) {
            const char* const severity = finding.isError ? "error: " : "warning: ";
            causes.push_back({finding.rule, severity, finding.cause, finding.causeCount, {}, {}});
        }
        ShownCause& cause = causes.back();
        if (cause.cells.size() == kMostLinesOfCause + kMostCells) return;
        cause.cells.push_back(finding.cell);
        if (cause.places.size() == kMostLinesOfCause) return;
        std::string place = finding.cell;
        if (finding.line > 0) place += " (line " + std::to_string(finding.line) + ")";
        cause.places.emplace_back(place.empty() ? place : place + ": ", finding.text);
    });
    return causes;
}

std::string MoreCells(const ShownCause& cause, std::size_t shown) {
    const std::size_t end = std::min(cause.cells.size(), shown + kMostCells);
    std::string text = "The same in ";
    for (std::size_t index = shown; index < end; ++index) {
        const bool isLast = index + 1 == cause.count;
        if (index > shown) text += isLast ? " and " : ", ";
        text += cause.cells[index];
    }
    if (end < cause.count) text += " and " + std::to_string(cause.count - end) + " more";
    return text + ".";
}

// As many lines as there may be of a cause where its rule has so many causes.
void AppendLines(std::string& lines, const std::string& begin, const ShownCause& cause,
                 std::size_t mostLines) {
    const std::string end = " [" + cause.rule + "]\n";
    const std::size_t shown = cause.count <= mostLines ? cause.places.size() : mostLines - 1;
    for (std::size_t index = 0; index < shown; ++index) {
        const auto& [place, text] = cause.places[index];
        lines.append(begin).append(place).append(cause.severity).append(text).append(end);
    }
    if (shown < cause.count)
        lines.append(begin).append(cause.severity).append(MoreCells(cause, shown)).append(end);
}

std::string MakeLines(const Options& options) {
    const std::string begin = ShownInput(options) + ": ";
    std::string lines;
    const std::vector<ShownCause> causes = GatherCauses();
    for (const ShownCause& cause : causes) {
        const auto ofRule = static_cast<std::size_t>(std::count_if(
            causes.begin(), causes.end(), [&](const ShownCause& other) { return other.rule == cause.rule; }));
        const std::size_t mostLines = std::clamp(kMostLines / ofRule, std::size_t{2}, kMostLinesOfCause);
        AppendLines(lines, begin, cause, mostLines);
    }
    return lines;
}

}  // namespace

std::string Counted(std::size_t count, const char* noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string ShownInput(const Options& options) {
    if (options.input == kStandardInput) return NameOf(options.input);
    return ShownName(DecodeUtf8(ToBytes(options.input)).text, kWholeName);
}

std::string CountedFindings(std::size_t errors, std::size_t warnings) {
    std::string text;
    if (errors > 0) text = Counted(errors, "error");
    if (warnings > 0) text += (text.empty() ? "" : ", ") + Counted(warnings, "warning");
    return text;
}

void ShowFindings(const Options& options, bool hasPassed) {
    const FindingTotals totals = CountFindings();
    const bool isAny = totals.errors + totals.warnings > 0;
    if (options.findings && (isAny || hasPassed) && !xls2tki_findings_complete()) {
        Note("Not all of the table was checked for findings.");
    }
    if (!isAny) return;
    const std::string counts = CountedFindings(totals.errors, totals.warnings);
    if (options.isOneOfMany) return Tell(counts + (hasPassed ? "" : "."));
    std::string lines = MakeLines(options) + counts;
    if (const auto facts = FindFacts()) lines += " in " + Counted(facts->rows, "row");
    Show(lines + "\n", stderr);
}

}  // namespace NCli
