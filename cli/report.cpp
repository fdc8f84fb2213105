#include "cli/report.h"

#include <cstddef>
#include <iterator>
#include <vector>

#include "cli/files.h"
#include "cli/library.h"
#include "cli/text.h"

namespace NCli {

namespace {

bool isKept = false;
std::vector<std::string> messages;

// Writes the members of one object, one after the other.
class JsonObject {
  public:
    void Text(const char* name, std::string_view value) {
        Name(name);
        AppendJson(json_, value);
    }
    void Number(const char* name, std::size_t value) { Raw(name, std::to_string(value)); }
    void Flag(const char* name, bool value) { Raw(name, value ? "true" : "false"); }
    void Null(const char* name) { Raw(name, "null"); }
    // The value is JSON already.
    void Raw(const char* name, std::string_view value) {
        Name(name);
        json_ += value;
    }
    std::string Finish() { return std::move(json_) + '}'; }

  private:
    void Name(const char* name) {
        if (json_.size() > 1) json_ += ',';
        AppendJson(json_, name);
        json_ += ':';
    }

    std::string json_ = "{";
};

// A list of what `append` puts behind the commas, one for each of so many.
template <typename Append>
std::string MakeList(std::size_t count, Append append) {
    std::string list = "[";
    for (std::size_t index = 0; index < count; ++index) {
        if (index > 0) list += ',';
        append(list, index);
    }
    return list + ']';
}

void AppendSkipped(std::string& list, std::size_t column, std::string_view reason) {
    JsonObject skipped;
    skipped.Number("index", column);
    skipped.Text("reason", reason);
    list += skipped.Finish();
}

std::string ListSkippedColumns(const Xls2TkiFacts& facts) {
    const std::size_t before = facts.columnsWithoutHeaderCount;
    return MakeList(before + facts.columns - facts.endColumn, [&](std::string& list, std::size_t index) {
        if (index < before) return AppendSkipped(list, facts.columnsWithoutHeader[index], "no header");
        const std::size_t column = facts.endColumn + index - before;
        AppendSkipped(list, column, column == facts.endColumn ? "empty" : "behind the end");
    });
}

void AddFacts(JsonObject& report, const Xls2TkiFacts& facts) {
    constexpr const char* kLayouts[] = {"single-number", "spn-fmi", "base-and-failure-type"};
    report.Text("layout", kLayouts[facts.layout]);
    report.Flag("hexadecimal", facts.hexDigits);
    report.Flag("sae_codes", facts.saeCodes);
    report.Number("rows", facts.rows);
    report.Number("columns", facts.columns);
    report.Number("item_columns", facts.itemColumns);
    report.Number("items", facts.items);
    report.Raw("skipped_columns", ListSkippedColumns(facts));
}

void AddUnknownFacts(JsonObject& report) {
    for (const char* const name : {"layout", "hexadecimal", "sae_codes", "rows", "columns", "item_columns",
                                   "items", "skipped_columns"}) {
        report.Null(name);
    }
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
    JsonObject report;
    report.Text("input", PathOnCommandLine(options.input));
    if (options.checks) {
        report.Null("output");
    } else {
        report.Text("output", ToBytes(options.output));
    }
    report.Text("kind", NameOfKind(options.kind));
    if (const auto facts = FindFacts()) {
        AddFacts(report, *facts);
    } else {
        AddUnknownFacts(report);
    }
    report.Raw("messages", MakeList(messages.size(), [](std::string& list, std::size_t index) {
                   AppendJson(list, messages[index]);
               }));
    if (failure.empty()) {
        report.Null("failure");
    } else {
        report.Text("failure", failure);
    }
    return report.Finish() + '\n';
}

}  // namespace NCli
