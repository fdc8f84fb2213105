#include "cli/report.h"

#include <cstddef>
#include <vector>

#include "cli/files.h"
#include "cli/json.h"
#include "cli/library.h"
#include "cli/text.h"

namespace NCli {

namespace {

constexpr std::size_t kMostListed = 1000;

bool isKept = false;
std::vector<std::string> messages;
std::size_t messageCount = 0;

std::string ListSkippedColumns(const Xls2TkiFacts& facts) {
    JsonArray list;
    std::size_t listed = 0;
    const auto add = [&](std::size_t column, const char* reason) {
        JsonObject skipped;
        skipped.Add("index", column);
        skipped.Add("reason", reason);
        list.Add(skipped.Text());
        return ++listed < kMostListed;
    };
    bool isRoom = true;
    for (std::size_t index = 0; index < facts.columnsWithoutHeaderCount && isRoom; ++index) {
        isRoom = add(facts.columnsWithoutHeader[index], "no header");
    }
    for (std::size_t column = facts.endColumn; column < facts.columns && isRoom; ++column) {
        isRoom = add(column, column == facts.endColumn ? "empty" : "behind the end");
    }
    return list.Text();
}

// With null for each of them where they are not known.
void AddFacts(JsonObject& report) {
    constexpr const char* kLayouts[] = {"single-number", "spn-fmi", "base-and-failure-type"};
    const auto found = FindFacts();
    const auto known = [&found](const JsonValue& value) { return found ? value : JsonValue(); };
    const Xls2TkiFacts facts = found.value_or(Xls2TkiFacts{});
    report.Add("layout", known(kLayouts[facts.layout]));
    report.Add("hexadecimal", known(facts.hexDigits));
    report.Add("sae_codes", known(facts.saeCodes));
    report.Add("rows", known(facts.rows));
    report.Add("columns", known(facts.columns));
    report.Add("item_columns", known(facts.itemColumns));
    report.Add("items", known(facts.items));
    report.AddJson("skipped_columns", found ? ListSkippedColumns(facts) : "null");
    report.Add("skipped_column_count",
               known(facts.columnsWithoutHeaderCount + facts.columns - facts.endColumn));
}

void AddMessages(JsonObject& report) {
    JsonArray list;
    for (const std::string& message : messages) list.Add(JsonOf(message));
    report.AddJson("messages", list.Text());
    report.Add("message_count", messageCount);
}

std::string ListFindings(const std::vector<Finding>& findings) {
    JsonArray list;
    for (const Finding& finding : findings) {
        JsonObject added;
        added.Add("rule", finding.rule);
        added.Add("severity", finding.isError ? "error" : "warning");
        added.Add("cell", finding.cell.empty() ? JsonValue() : JsonValue(finding.cell));
        added.Add("line", finding.line == 0 ? JsonValue() : JsonValue(finding.line));
        added.Add("text", finding.text);
        list.Add(added.Text());
    }
    return list.Text();
}

std::string ListCounts(const std::vector<FindingCount>& counts) {
    JsonObject list;
    for (const FindingCount& count : counts) {
        JsonObject ofRule;
        ofRule.Add("errors", count.errors);
        ofRule.Add("warnings", count.warnings);
        list.AddJson(count.rule, ofRule.Text());
    }
    return list.Text();
}

std::string PathOnCommandLine(const std::filesystem::path& path) {
    return path == kStandardInput ? "-" : ToBytes(path);
}

void AddReading(JsonObject& report, const Options& options) {
    const bool isText = options.kind == NXls2Tki::ImportTypeCSV;
    JsonValue encoding;
    JsonValue separator;
    if (isText && options.encoding) encoding = NameOfEncoding(*options.encoding);
    if (isText && options.separator) separator = EncodeUtf8({&*options.separator, 1});
    report.Add("encoding", encoding);
    report.Add("separator", separator);
}

}  // namespace

void KeepMessages() { isKept = true; }

void KeepMessage(std::string_view message) {
    if (!isKept || message.empty()) return;
    ++messageCount;
    if (messages.size() == kMostListed) messages.pop_back();  // the last one says how it ended
    messages.emplace_back(message);
}

std::string MakeReport(const Options& options, const Findings& findings, std::string_view failure) {
    JsonObject report;
    report.Add("input", PathOnCommandLine(options.input));
    report.Add("output", options.checks ? JsonValue() : JsonValue(ToBytes(options.output)));
    report.Add("kind", NameOfKind(options.kind));
    AddReading(report, options);
    AddFacts(report);
    AddMessages(report);
    report.AddJson("findings", findings.areKnown ? ListFindings(findings.list) : "null");
    report.AddJson("finding_counts", findings.areKnown ? ListCounts(findings.counts) : "null");
    report.Add("failure", failure.empty() ? JsonValue() : JsonValue(failure));
    return report.Text() + '\n';
}

}  // namespace NCli
