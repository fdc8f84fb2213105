#include "cli/sarif.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>

#include "api/xls2tki_c.h"
#include "cli/files.h"
#include "cli/findings.h"
#include "cli/library.h"
#include "cli/text.h"

namespace NCli {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

constexpr char kSchema[] =
    "https://docs.oasis-open.org/sarif/sarif/v2.1.0/os/schemas/sarif-schema-2.1.0.json";

struct Rule {
    const char* id;
    const char* description;
};

constexpr Rule kRules[] = {
    {"number-unreadable", "A number cell is not a valid number in the notation of its column."},
    {"number-empty", "A number cell is empty."},
    {"number-range", "A number is out of range."},
    {"number-exponent", "A spreadsheet program has rounded a number to an exponent."},
    {"number-duplicate", "Two rows get the same number."},
    {"notation-mixed", "One cell changes how others are read."},
    {"layout-near-miss", "The table nearly has another layout."},
    {"column-lost", "A column and its cells are left out."},
    {"row-lost", "Rows of the table are missing in the document."},
    {"text-not-xml", "A text has a character that XML forbids."},
    {"text-encoding", "The text was read in the wrong encoding."},
    {"value-rounded", "The document has fewer digits than the number in the worksheet."},
    {"item-header", "Two item columns have the same header, or an option names a header that no column has."},
    {"description-empty", "Rows have no description."}};

void AddRule(Json& object, const Rule& rule) {
    object["id"] = rule.id;
    object["shortDescription"]["text"] = rule.description;
}

bool IsUnreserved(char byte) {
    const bool isLetter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
    return isLetter || (byte >= '0' && byte <= '9') ||
           std::string_view("-._~").find(byte) != std::string_view::npos;
}

std::string PercentEncode(std::string_view path, std::string_view kept) {
    std::string encoded;
    for (const char byte : path) {
        if (IsUnreserved(byte) || kept.find(byte) != std::string_view::npos) {
            encoded += byte;
            continue;
        }
        char escape[4];
        std::snprintf(escape, sizeof escape, "%%%02X",
                      static_cast<unsigned>(static_cast<unsigned char>(byte)));
        encoded += escape;
    }
    return encoded;
}

// A relative path stays relative: the tool that reads it knows the folder.
std::string UriOf(const fs::path& path) {
    const std::string slashed = ToBytes(path.generic_string<fs::path::value_type>());
    if (!path.is_absolute()) return PercentEncode(slashed, "/");
    if (!path.has_root_name()) return "file://" + PercentEncode(slashed, "/");
    const bool hasHost = slashed.starts_with("//");  // else a drive, on Windows
    return (hasHost ? "file:" : "file:///") + PercentEncode(slashed, "/:");
}

// In a message of this format, braces hold the place of an argument, and "[text](target)" is a link: what a
// cell or a name holds must be neither.
void SetMessage(Json& owner, std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    text = ShownName(DecodeUtf8(text).text, kWholeName);
    std::string escaped;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] == '{' || text[index] == '}') escaped += text[index];
        if (text.compare(index, 2, "](") == 0) escaped += '\\';
        escaped += text[index];
    }
    owner["message"]["text"] = escaped;
}

void SetLocation(Json& location, const Finding& finding, const std::string& uri) {
    Json& place = location["physicalLocation"];
    place["artifactLocation"]["uri"] = uri;
    if (finding.line > 0) place["region"]["startLine"] = finding.line;
    if (finding.cell.empty()) return;
    Json& cell = location["logicalLocations"].emplace_back();
    cell["fullyQualifiedName"] = finding.cell;
    cell["kind"] = "cell";
}

// Many tools show the line alone, and a workbook has none: so the text names the cell, too.
void AddResult(Json& results, const Finding& finding, const std::string& uri) {
    const auto* const rule = std::find_if(std::begin(kRules), std::end(kRules),
                                          [&](const Rule& other) { return other.id == finding.rule; });
    Json& result = results.emplace_back();
    result["ruleId"] = finding.rule;
    if (rule != std::end(kRules)) result["ruleIndex"] = rule - std::begin(kRules);
    result["level"] = finding.isError ? "error" : "warning";
    SetMessage(result, finding.cell.empty() ? finding.text : finding.cell + ": " + finding.text);
    SetLocation(result["locations"].emplace_back(), finding, uri);
}

void AddNotification(Json& notifications, const char* level, const std::string& text) {
    Json& notification = notifications.emplace_back();
    notification["level"] = level;
    SetMessage(notification, text);
}

// What the reader of the results has to know: why they may not be all.
void AddNotifications(Json& notifications, const std::map<std::string, std::size_t>& listed) {
    if (!xls2tki_findings_complete()) {
        AddNotification(notifications, "warning", "Not all of the table was checked for findings.");
    }
    ForEachFindingCount([&](const FindingCount& count) {
        const std::size_t all = count.errors + count.warnings;
        const auto rule = listed.find(count.rule);
        if (rule == listed.end() || rule->second == all) return;
        AddNotification(notifications, "note",
                        count.rule + ": the results have " + std::to_string(rule->second) + " of " +
                            std::to_string(all) + " findings.");
    });
}

void FillDriver(Json& driver) {
    driver["name"] = "xls2tki";
    driver["version"] = XLS2TKI_VERSION;
    Json& rules = driver["rules"];
    for (const Rule& rule : kRules) AddRule(rules.emplace_back(), rule);
}

// An object's new member may move those it has, so a reference to one counts only until then.
void FillRun(Json& run, const Options& options, std::string_view failure) {
    for (const char* const member : {"tool", "invocations", "results"}) run[member] = nullptr;
    FillDriver(run["tool"]["driver"]);
    Json& results = run["results"] = Json::array();
    std::map<std::string, std::size_t> listed;
    ForEachFinding([&, uri = UriOf(options.input)](const Finding& finding) {
        ++listed[finding.rule];
        AddResult(results, finding, uri);
    });
    Json& invocation = run["invocations"].emplace_back();
    // Where a table that converted was refused, for its findings or because there was no room for the
    // document, the findings are whole.
    const bool isSuccess = failure.empty() || FindFacts();
    invocation["executionSuccessful"] = isSuccess;
    Json& notifications = invocation["toolExecutionNotifications"] = Json::array();
    if (!failure.empty())
        AddNotification(notifications, isSuccess ? "warning" : "error", std::string(failure));
    AddNotifications(notifications, listed);
}

std::string MakeLog(const Options& options, std::string_view failure) {
    // It stays until the process ends: to destroy it takes memory, and without that the process would end.
    static Json& log = *new Json;
    log["$schema"] = kSchema;
    log["version"] = "2.1.0";
    FillRun(log["runs"].emplace_back(), options, failure);
    return EscapeControls(log.dump(1, ' ', false, Json::error_handler_t::replace)) + '\n';
}

}  // namespace

void SarifFile::Write(const Options& options, std::string_view failure) {
    const std::string log = MakeLog(options, failure);
    File file = OpenToReplace(output_.Path());
    const bool isWritten = file && std::fwrite(log.data(), 1, log.size(), file.get()) == log.size() &&
                           std::fclose(file.release()) == 0;
    output_.Publish(isWritten);
}

}  // namespace NCli
