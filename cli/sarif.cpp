#include "cli/sarif.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <iterator>

#include "cli/files.h"
#include "cli/json.h"
#include "cli/library.h"
#include "cli/text.h"

namespace NCli {

namespace fs = std::filesystem;

namespace {

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
    const std::string given = ToUriPath(path);
    const char* const scheme = given.starts_with("//") ? "file:" : given.starts_with('/') ? "file://" : "";
    return scheme + PercentEncode(given, path.has_root_name() ? "/:" : "/");
}

// An object with one member.
void AddMember(JsonObject& owner, const char* object, const char* name, const JsonValue& value) {
    JsonObject added;
    added.Add(name, value);
    owner.AddJson(object, added.Text());
}

// In a message of this format, braces hold the place of an argument, "[text](target)" is a link, and a
// backslash removes the meaning of the bracket after it: texts of cells and names must contain neither.
void AddMessage(JsonObject& owner, std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    text = ShownName(DecodeUtf8(text).text, kWholeName);
    std::string escaped;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] == '{' || text[index] == '}') escaped += text[index];
        if (text.compare(index, 2, "](") == 0) {
            const std::size_t backslashes = escaped.size() - (escaped.find_last_not_of('\\') + 1);
            escaped.append(backslashes + 1, '\\');
        }
        escaped += text[index];
    }
    AddMember(owner, "message", "text", escaped);
}

// The file, and the place in it where there is a finding.
void AddLocation(JsonObject& owner, const std::string& uri, const Finding* finding) {
    JsonObject place;
    JsonObject location;
    JsonArray cells;
    JsonArray locations;
    AddMember(place, "artifactLocation", "uri", uri);
    if (finding != nullptr && finding->line > 0) AddMember(place, "region", "startLine", finding->line);
    location.AddJson("physicalLocation", place.Text());
    if (finding != nullptr && !finding->cell.empty()) {
        JsonObject cell;
        cell.Add("fullyQualifiedName", finding->cell);
        cell.Add("kind", "cell");
        cells.Add(cell.Text());
        location.AddJson("logicalLocations", cells.Text());
    }
    locations.Add(location.Text());
    owner.AddJson("locations", locations.Text());
}

// Many tools show the line alone, and a workbook has none: so the text names the cell, too.
std::string MakeResult(const Finding& finding, const std::string& uri) {
    const auto* const rule = std::find_if(std::begin(kRules), std::end(kRules),
                                          [&](const Rule& other) { return other.id == finding.rule; });
    JsonObject result;
    result.Add("ruleId", finding.rule);
    if (rule != std::end(kRules)) result.Add("ruleIndex", rule - std::begin(kRules));
    result.Add("level", finding.isError ? "error" : "warning");
    AddMessage(result, finding.cell.empty() ? finding.text : finding.cell + ": " + finding.text);
    AddLocation(result, uri, &finding);
    return result.Text();
}

std::string MakeNotification(const char* level, const std::string& text, const std::string& uri) {
    JsonObject notification;
    notification.Add("level", level);
    AddMessage(notification, text);
    AddLocation(notification, uri, nullptr);
    return notification.Text();
}

// What the reader of the results has to know: why they may not be all.
std::string MakeInvocation(const Findings& findings, const std::string& failure, const std::string& uri) {
    // Where a table that converted was refused, for its findings or because there was no room for the
    // document, the findings are whole.
    const bool isSuccess = failure.empty() || FindFacts();
    JsonArray notifications;
    if (!failure.empty()) notifications.Add(MakeNotification(isSuccess ? "warning" : "error", failure, uri));
    if (!findings.isComplete) {
        notifications.Add(MakeNotification("warning", "Not all of the table was checked for findings.", uri));
    }
    for (const FindingCount& count : findings.counts) {
        const std::size_t all = count.errors + count.warnings;
        if (count.listed == all) continue;
        const std::string text = std::string(count.rule) + ": the results have " +
                                 std::to_string(count.listed) + " of " + std::to_string(all) + " findings.";
        notifications.Add(MakeNotification("note", text, uri));
    }
    JsonObject invocation;
    invocation.Add("executionSuccessful", isSuccess);
    invocation.AddJson("toolExecutionNotifications", notifications.Text());
    return invocation.Text();
}

std::string MakeTool() {
    JsonArray rules;
    for (const Rule& rule : kRules) {
        JsonObject object;
        object.Add("id", rule.id);
        AddMember(object, "shortDescription", "text", rule.description);
        rules.Add(object.Text());
    }
    JsonObject driver;
    driver.Add("name", "xls2tki");
    driver.Add("version", XLS2TKI_VERSION);
    driver.AddJson("rules", rules.Text());
    JsonObject tool;
    tool.AddJson("driver", driver.Text());
    return tool.Text();
}

}  // namespace

SarifPart MakeSarifPart(const Options& options, const Findings& findings, std::string_view failure) {
    SarifPart part;
    const std::string uri = UriOf(options.input);
    for (const Finding& finding : findings.list) {
        part.results.append(part.results.empty() ? "" : ",\n").append(MakeResult(finding, uri));
    }
    part.invocation = MakeInvocation(findings, std::string(failure), uri);
    return part;
}

// No other text has a zero.
std::string Wrap(const SarifPart& part) {
    return std::string(1, '\0').append(part.results).append(1, '\0').append(part.invocation).append(1, '\0');
}

std::optional<SarifPart> Unwrap(std::string& text) {
    const std::size_t begin = text.find('\0');
    const std::size_t middle = text.find('\0', begin == std::string::npos ? begin : begin + 1);
    const std::size_t end = text.find('\0', middle == std::string::npos ? middle : middle + 1);
    if (end == std::string::npos) {
        text.resize(std::min(begin, text.size()));
        return std::nullopt;
    }
    SarifPart part = {text.substr(begin + 1, middle - begin - 1), text.substr(middle + 1, end - middle - 1)};
    text.erase(begin, end + 1 - begin);
    return part;
}

SarifLog::SarifLog(const Options& options)
    : output_(options.sarif, options.force ? nullptr : &kSarifFile),
      file_(OpenToReplace(output_.Path())),
      isWritten_(file_ != nullptr) {
    Write(
        "{\"$schema\": "
        "\"https://docs.oasis-open.org/sarif/sarif/v2.1.0/os/schemas/sarif-schema-2.1.0.json\",\n"
        " \"version\": \"2.1.0\",\n \"runs\": [{\n\"tool\": " +
        MakeTool() + ",\n\"results\": [\n");
}

void SarifLog::Write(const std::string& text) {
    isWritten_ = isWritten_ && std::fwrite(text.data(), 1, text.size(), file_.get()) == text.size();
}

void SarifLog::Add(const SarifPart& part) {
    if (hasResults_ && !part.results.empty()) Write(",\n");
    hasResults_ = hasResults_ || !part.results.empty();
    Write(part.results);
    invocations_.append(invocations_.empty() ? "" : ",\n").append(part.invocation);
}

void SarifLog::Publish() {
    Write("\n],\n\"invocations\": [\n" + invocations_ + "\n]\n}]}\n");
    output_.Publish(isWritten_ && std::fclose(file_.release()) == 0);
}

}  // namespace NCli
