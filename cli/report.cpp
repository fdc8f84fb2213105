#include "cli/report.h"

#include <cstddef>
#include <deque>
#include <nlohmann/json.hpp>
#include <vector>

#include "cli/files.h"
#include "cli/findings.h"
#include "cli/library.h"
#include "cli/text.h"

namespace NCli {

namespace {

bool isKept = false;
std::vector<std::string> messages;

using Json = nlohmann::ordered_json;

// In their order.
constexpr const char* kMembers[] = {
    "input",           "output",    "kind",     "encoding",       "separator",    "layout",
    "hexadecimal",     "sae_codes", "rows",     "columns",        "item_columns", "items",
    "skipped_columns", "messages",  "findings", "finding_counts", "failure"};

// With null for each member. It stays until the process ends: to destroy an object takes memory, and without
// that the process would end in its midst.
Json& MakeObject() {
    static auto& objects = *new std::deque<Json>;
    Json& object = objects.emplace_back();
    for (const char* const member : kMembers) object[member] = nullptr;
    return object;
}

void AddSkipped(Json& list, std::size_t column, const char* reason) {
    Json& skipped = list.emplace_back();
    skipped["index"] = column;
    skipped["reason"] = reason;
}

void AddSkippedColumns(Json& list, const Xls2TkiFacts& facts) {
    list = Json::array();
    for (std::size_t index = 0; index < facts.columnsWithoutHeaderCount; ++index) {
        AddSkipped(list, facts.columnsWithoutHeader[index], "no header");
    }
    for (std::size_t column = facts.endColumn; column < facts.columns; ++column) {
        AddSkipped(list, column, column == facts.endColumn ? "empty" : "behind the end");
    }
}

void AddFacts(Json& report, const Xls2TkiFacts& facts) {
    constexpr const char* kLayouts[] = {"single-number", "spn-fmi", "base-and-failure-type"};
    report["layout"] = kLayouts[facts.layout];
    report["hexadecimal"] = facts.hexDigits;
    report["sae_codes"] = facts.saeCodes;
    report["rows"] = facts.rows;
    report["columns"] = facts.columns;
    report["item_columns"] = facts.itemColumns;
    report["items"] = facts.items;
    AddSkippedColumns(report["skipped_columns"], facts);
}

void AddFindings(Json& report) {
    Json& counts = report["finding_counts"] = Json::object();
    ForEachFindingCount([&counts](const FindingCount& count) {
        if (count.errors + count.warnings == 0) return;
        Json& ofRule = counts[count.rule];
        ofRule["errors"] = count.errors;
        ofRule["warnings"] = count.warnings;
    });
    Json& list = report["findings"] = Json::array();
    ForEachFinding([&list](const Finding& finding) {
        Json& added = list.emplace_back();
        added["rule"] = finding.rule;
        added["severity"] = finding.isError ? "error" : "warning";
        added["cell"] = finding.cell.empty() ? Json() : Json(finding.cell);
        added["line"] = finding.line == 0 ? Json() : Json(finding.line);
        added["text"] = finding.text;
    });
}

std::string PathOnCommandLine(const std::filesystem::path& path) {
    return path == kStandardInput ? "-" : ToBytes(path);
}

}  // namespace

void KeepMessages() { isKept = true; }

void KeepMessage(std::string_view message) {
    if (isKept) messages.emplace_back(message);
}

std::string MakeReport(const Options& options, std::string_view failure) {
    Json& report = MakeObject();
    report["input"] = PathOnCommandLine(options.input);
    if (!options.checks) report["output"] = ToBytes(options.output);
    report["kind"] = NameOfKind(options.kind);
    const bool isText = options.kind == NXls2Tki::ImportTypeCSV;
    if (isText && options.encoding) report["encoding"] = NameOfEncoding(*options.encoding);
    if (isText && options.separator) report["separator"] = EncodeUtf8({&*options.separator, 1});
    if (const auto facts = FindFacts()) AddFacts(report, *facts);
    Json& list = report["messages"] = Json::array();
    for (const std::string& message : messages) list.push_back(message);
    if (HaveBeenLookedFor()) AddFindings(report);
    if (!failure.empty()) report["failure"] = failure;
    return EscapeControls(report.dump(-1, ' ', false, Json::error_handler_t::replace)) + '\n';
}

}  // namespace NCli
