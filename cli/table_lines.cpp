#include "cli/table_lines.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <utility>
#include <vector>

#include "cli/failure.h"
#include "cli/files.h"
#include "cli/library.h"
#include "cli/text.h"

namespace NCli {

namespace {

constexpr std::size_t kMostLines = 20;  // of a rule
constexpr std::size_t kMostLinesOfCause = 4;
constexpr std::size_t kMostCells = 12;  // that one line names

// "1 row", "2 rows"
std::string Counted(std::size_t count, const char* noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

// One cause: its first places with their texts, and of some more the cells alone.
struct ShownCause {
    std::string_view rule;
    const char* severity;
    std::size_t index;
    std::size_t count;
    std::vector<std::pair<std::string, std::string>> places;  // place and text
    std::vector<std::string> cells;                           // of all places that are kept here
};

std::vector<ShownCause> GatherCauses(const std::vector<Finding>& findings) {
    std::vector<ShownCause> causes;
    for (const Finding& finding : findings) {
        if (causes.empty() || causes.back().index != finding.cause) {
            const char* const severity = finding.isError ? "error: " : "warning: ";
            causes.push_back({finding.rule, severity, finding.cause, finding.causeCount, {}, {}});
        }
        ShownCause& cause = causes.back();
        if (cause.cells.size() == kMostLinesOfCause + kMostCells) continue;
        cause.cells.push_back(finding.cell);
        if (cause.places.size() == kMostLinesOfCause) continue;
        std::string place = finding.cell;
        if (finding.line > 0) place += " (line " + std::to_string(finding.line) + ")";
        cause.places.emplace_back(place.empty() ? place : place + ": ", finding.text);
    }
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
    const std::string end = std::string(" [").append(cause.rule).append("]\n");
    const std::size_t shown = cause.count <= mostLines ? cause.places.size() : mostLines - 1;
    for (std::size_t index = 0; index < shown; ++index) {
        const auto& [place, text] = cause.places[index];
        lines.append(begin).append(place).append(cause.severity).append(text).append(end);
    }
    if (shown < cause.count)
        lines.append(begin).append(cause.severity).append(MoreCells(cause, shown)).append(end);
}

std::string MakeLines(const Options& options, const std::vector<Finding>& findings) {
    const std::string begin = ShownInput(options) + ": ";
    std::string lines;
    const std::vector<ShownCause> causes = GatherCauses(findings);
    for (const ShownCause& cause : causes) {
        const auto ofRule = static_cast<std::size_t>(std::count_if(
            causes.begin(), causes.end(), [&](const ShownCause& other) { return other.rule == cause.rule; }));
        const std::size_t mostLines =
            std::clamp(kMostLines / std::max(ofRule, std::size_t{1}), std::size_t{2}, kMostLinesOfCause);
        AppendLines(lines, begin, cause, mostLines);
    }
    return lines;
}

const char* NotationOf(const Xls2TkiFacts& facts) {
    if (facts.layout == XLS2TKI_SPN_FMI) return "SPN and FMI";
    if (facts.layout == XLS2TKI_BASE_AND_FAILURE_TYPE) {
        return facts.saeCodes ? "SAE codes and failure types" : "base DTCs and failure types";
    }
    if (facts.saeCodes) return "SAE codes";
    return facts.hexDigits ? "hexadecimal numbers" : "decimal numbers";
}

std::string Hexadecimal(std::uint32_t number) {
    char text[11];
    std::snprintf(text, sizeof text, "0x%04" PRIX32, number);
    return text;
}

// Shows no more than a user reads, however many and long the headers of a hostile table are.
std::string ListItems(const Xls2TkiNames& headers) {
    constexpr std::size_t kMostHeaders = 20;
    constexpr std::size_t kLongestHeader = 64;
    std::string list = Counted(headers.count, "item");
    const std::size_t shown = std::min(headers.count, kMostHeaders);
    for (std::size_t index = 0; index < shown; ++index) {
        list += (index == 0 ? ": " : ", ") + ShownName(headers.texts[index], kLongestHeader);
    }
    if (shown < headers.count) list += " and " + std::to_string(headers.count - shown) + " more";
    return list;
}

}  // namespace

std::string ShownInput(const Options& options) {
    if (options.input == kStandardInput) return NameOf(options.input);
    return ShownName(DecodeUtf8(ToBytes(options.input)).text, kWholeName);
}

std::string CountedFindings() {
    const auto [errors, warnings] = CountFindings();
    std::string text;
    if (errors > 0) text = Counted(errors, "error");
    if (warnings > 0) text += (text.empty() ? "" : ", ") + Counted(warnings, "warning");
    return text;
}

void ShowFindings(const Options& options, const Findings& findings) {
    const auto facts = FindFacts();
    const std::string counts = CountedFindings();
    const bool isAny = !counts.empty();
    if (options.findings && (isAny || facts) && !findings.isComplete) {
        Note("Not all of the table was checked for findings.");
    }
    if (!isAny) return;
    if (options.isOneOfMany) return Tell(counts + (facts ? "" : "."));
    std::string lines = MakeLines(options, findings.list) + counts;
    if (facts) lines += " in " + Counted(facts->rows, "row");
    Show(lines + "\n", stderr);
}

std::string DescribeTable() {
    const Xls2TkiFacts facts = FindAllFacts();
    std::string line = Counted(facts.rows, "DTC");
    if (facts.rows > 0) {
        line.append(", ").append(NotationOf(facts)).append(", ").append(Hexadecimal(facts.smallestNumber));
        line.append(" to ").append(Hexadecimal(facts.largestNumber));
    }
    return line.append(", ").append(ListItems(facts.itemHeaders));
}

}  // namespace NCli
