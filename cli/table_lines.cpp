#include "cli/table_lines.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <map>
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

// The first places of one cause.
using ShownCause = std::vector<const Finding*>;

std::vector<ShownCause> GatherCauses(const std::vector<Finding>& findings) {
    std::vector<ShownCause> causes;
    for (const Finding& finding : findings) {
        const auto number = [](const ShownCause& cause) { return cause.front()->cause; };
        auto cause = std::ranges::find(causes, finding.cause, number);
        if (cause == causes.end()) cause = causes.insert(cause, ShownCause());
        if (cause->size() < kMostLinesOfCause + kMostCells) cause->push_back(&finding);
    }
    return causes;
}

std::string PlaceOf(const Finding& finding) {
    if (finding.cell.empty()) return "";
    const std::string line = " (line " + std::to_string(finding.line) + ")";
    return finding.cell + (finding.line > 0 ? line : "") + ": ";
}

std::string MoreCells(const ShownCause& cause, std::size_t shown) {
    const std::size_t count = cause.front()->causeCount;
    const std::size_t end = std::min(cause.size(), shown + kMostCells);
    std::string text = "The same in ";
    for (std::size_t index = shown; index < end; ++index) {
        const bool isLast = index + 1 == count;
        if (index > shown) text += isLast ? " and " : ", ";
        text += cause[index]->cell;
    }
    if (end < count) text += " and " + std::to_string(count - end) + " more";
    return text + ".";
}

// Adds as many lines as a cause may have if its rule has this many causes.
void AddLines(std::map<const Finding*, std::string>& lines, const std::string& begin, const ShownCause& cause,
              std::size_t mostLines) {
    const Finding& first = *cause.front();
    const std::string severity = first.isError ? "error: " : "warning: ";
    const std::string end = std::string(" [").append(first.rule).append("]\n");
    const std::size_t shown = first.causeCount <= mostLines ? cause.size() : mostLines - 1;
    for (std::size_t index = 0; index < shown; ++index) {
        std::string& line = lines[cause[index]];
        line.append(begin)
            .append(PlaceOf(*cause[index]))
            .append(severity)
            .append(cause[index]->text)
            .append(end);
    }
    if (shown == first.causeCount) return;
    lines[cause[shown - 1]].append(begin).append(severity).append(MoreCells(cause, shown)).append(end);
}

// In the order of the findings.
std::string MakeLines(const Options& options, const std::vector<Finding>& findings) {
    const std::string begin = ShownInput(options) + ": ";
    std::map<const Finding*, std::string> lines;
    const std::vector<ShownCause> causes = GatherCauses(findings);
    for (const ShownCause& cause : causes) {
        const auto isOfRule = [&](const ShownCause& other) {
            return other.front()->rule == cause.front()->rule;
        };
        const auto ofRule = static_cast<std::size_t>(std::ranges::count_if(causes, isOfRule));
        const std::size_t mostLines =
            std::clamp(kMostLines / std::max(ofRule, std::size_t{1}), std::size_t{2}, kMostLinesOfCause);
        AddLines(lines, begin, cause, mostLines);
    }
    std::string text;
    for (const auto& [finding, line] : lines) text += line;
    return text;
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

// Shows no more than a user reads, even if a malicious table has many long headers.
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

// Those of a table whose first column is left out have none.
bool HaveNumbers(const Xls2TkiFacts& facts) {
    const bool isFirstLeftOut = facts.columnsWithoutHeaderCount > 0 && facts.columnsWithoutHeader[0] == 0;
    return facts.endColumn > 0 && !isFirstLeftOut;
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
    if (facts.rows > 0 && !HaveNumbers(facts)) {
        line += " without numbers";
    } else if (facts.rows > 0) {
        line.append(", ").append(NotationOf(facts)).append(", ").append(Hexadecimal(facts.smallestNumber));
        line.append(" to ").append(Hexadecimal(facts.largestNumber));
    }
    return line.append(", ").append(ListItems(facts.itemHeaders));
}

}  // namespace NCli
