#include "cli/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <iostream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "cli/failure.h"
#include "cli/files.h"
#include "cli/hints.h"
#include "cli/output.h"
#include "cli/process.h"
#include "cli/text.h"
#include "platform/edit_distance.h"

namespace NCli {

using namespace NXls2Tki;

namespace {

// The command line, as bytes.
struct Arguments {
    std::string workbook;
    std::vector<std::string> files;
    bool csv = false;
    bool excel = false;
    bool odbc = false;
    std::optional<std::string> separator;
    bool utf8 = false;
    std::optional<std::string> encoding;
    std::string worksheet;
    std::vector<std::string> vsgNames;
    std::vector<std::string> typeANames;
    std::string variant = "COMMON_DIAGNOSTICS";
    std::string diagnosticInstance = "Emission_Related_Trouble_Codes";
    std::string outputFolder;
    std::string jobs = "1";
    bool check = false;
    bool force = false;
    bool json = false;
    bool noFindings = false;
    bool strict = false;
    bool oneOfMany = false;
    std::optional<std::string> sarif;
    bool verbose = false;
};

class HelpFormatter : public CLI::Formatter {
  public:
    HelpFormatter() { column_width(29); }

    // It fits on one screen, so there are no empty lines; where CLI11 has some depends on its version.
    std::string make_help(const CLI::App* app, std::string, CLI::AppFormatMode) const override {
        std::string help = app->get_description() + "\n" + make_usage(app, {}) + "Options:\n";
        for (const CLI::Option* const option : app->get_options()) {
            if (!option->get_group().empty() && option->nonpositional()) help += make_option(option, false);
        }
        return help;
    }
    std::string make_usage(const CLI::App*, std::string) const override {
        return "Usage: xls2tki [OPTIONS] INPUT OUTPUT     (- is standard input or output)\n"
               "       xls2tki [OPTIONS] --output-dir DIR FILE...     (or --check FILE...)\n";
    }
    std::string make_option_opts(const CLI::Option* option) const override {
        return option->get_type_size() == 0 ? "" : " " + option->get_type_name();
    }
};

constexpr char kExamples[] =
    "Examples: xls2tki --worksheet J1939 powertrain.xlsx j1939.xml\n"
    "          xls2tki --separator tab --vsg Severity body.txt body.xml";

// CLI11 takes "[a,b]" for a list of two. Behind a zero, which no argument holds, it does not.
constexpr char kMark = '\0';

std::string WithoutMark(std::string argument) {
    if (argument.starts_with(kMark)) argument.erase(0, 1);
    return argument;
}

void DeclareOptions(CLI::App& app, Arguments& arguments) {
    const auto add = [&app](const char* name, auto& value, const char* type, const char* help) {
        app.add_option(name, value, help)->type_name(type)->take_last()->transform(WithoutMark);
    };
    const auto addList = [&app](const char* name, std::vector<std::string>& values, const char* help) {
        app.add_option(name, values, help)
            ->type_name("NAME")
            ->allow_extra_args(false)
            ->transform(WithoutMark);
    };
    const auto addFlag = [&app](const char* name, bool& value, const char* help) {
        return app.add_flag(name, value, help)->disable_flag_override();
    };
    app.add_option("FILES", arguments.files)->transform(WithoutMark);
    addFlag("-c,--csv", arguments.csv, "Read INPUT as CSV text (.csv, .txt, .tsv).");
    addFlag("-x,--excel", arguments.excel, "Read INPUT with Excel (.xlsx, .xlsm, .xls).");
    addFlag("-o,--odbc", arguments.odbc, "Read INPUT through the Excel ODBC driver.");
    add("-s,--separator", arguments.separator, "CHAR", "Set the CSV separator (default: detected).");
    addFlag("-u,--utf8", arguments.utf8, "Same as --encoding utf-8.");
    add("--encoding", arguments.encoding, "utf-8|8-bit", "Set the CSV encoding (default: detected).");
    add("-w,--worksheet", arguments.worksheet, "NAME", "Read the worksheet NAME (default: the first).");
    addList("--vsg", arguments.vsgNames, "Give columns with the header NAME type VSG.");
    addList("--type-a", arguments.typeANames, "Give columns with the header NAME type A.");
    add("--variant", arguments.variant, "TEXT", "Variant (default COMMON_DIAGNOSTICS).");
    add("--diag-instance", arguments.diagnosticInstance, "TEXT",
        "Instance (default Emission_Related_Trouble_Codes).");
    add("--list-worksheets", arguments.workbook, "WORKBOOK", "Print the names of the worksheets.");
    add("--output-dir", arguments.outputFolder, "DIR", "Convert each FILE to DIR/NAME.xml.");
    add("--jobs", arguments.jobs, "N", "Convert N files at a time (default 1).");
    addFlag("--check", arguments.check, "Show what the table would become; write nothing.");
    addFlag("--strict", arguments.strict, "Write no document if a finding is an error.");
    addFlag("--no-findings", arguments.noFindings, "Do not check the table for mistakes.");
    addFlag("--force", arguments.force, "Replace OUTPUT even if it is another kind of file.");
    addFlag("--json", arguments.json, "Print the result as JSON, one line per file.");
    add("--sarif", arguments.sarif, "FILE", "Write the findings to FILE as SARIF 2.1.0.");
    addFlag("--one-of-many", arguments.oneOfMany, "")->group("");  // from the command to its processes
    addFlag("-v,--verbose", arguments.verbose, "Print each step to standard error.");
    app.set_version_flag("-V,--version", "xls2tki " XLS2TKI_VERSION, "Print the version.");
    app.set_help_flag("-h,--help", "Print this help.");
}

void DeclareCommandLine(CLI::App& app, Arguments& arguments) {
    app.description("Turns a table of Diagnostic Trouble Codes into an XML import document.");
    app.allow_windows_style_options(false);  // such as /b, which may be a path
    app.formatter(std::make_shared<HelpFormatter>());
    app.footer(kExamples);
    DeclareOptions(app, arguments);
}

[[noreturn]] void RefuseUsage(const std::string& sentence, const std::string& hint = {}) {
    throw WrongUsage(sentence + " (xls2tki --help shows the options.)", hint);
}

// The option whose name is most like the one given; empty where none is.
std::string NearestOption(const CLI::App& app, std::string_view given) {
    std::string nearest;
    std::size_t least = given.size() / 2 + 1;
    for (const CLI::Option* const option : app.get_options()) {
        const std::string name = option->get_name();
        if (option->get_group().empty() || option->get_positional()) continue;
        const bool isCut = name.starts_with(given);
        const auto areEqual = [](char a, char b) { return a == b; };
        const std::size_t distance =
            isCut ? 0 : NPlatform::EditDistance(given, std::string_view(name), areEqual);
        if (distance >= least) continue;
        least = distance;
        nearest = name;
    }
    return nearest;
}

[[noreturn]] void RefuseOption(const CLI::App& app) {
    constexpr std::size_t kLongest = 64;
    const std::string given = WithoutMark(app.remaining().front());
    const std::string name = ShownName(DecodeUtf8(given.substr(0, given.find('='))).text, kLongest);
    const std::string nearest = NearestOption(app, name);
    RefuseUsage("There is no option " + name + (nearest.empty() ? "." : "; did you mean " + nearest + "?"));
}

WideString DecodeArgument(const char* option, const std::string& value) {
    const DecodedText decoded = DecodeUtf8(value);
    if (!decoded.isUtf8) RefuseUsage(std::string("The value of ") + option + " is not UTF-8.");
    return decoded.text;
}

WideStringSet DecodeNames(const char* option, const std::vector<std::string>& values) {
    WideStringSet names;
    for (const std::string& value : values) names.insert(DecodeArgument(option, value));
    return names;
}

std::optional<WideChar> ReadSeparator(const std::optional<std::string>& value) {
    if (!value) return std::nullopt;
    for (const Separator& separator : kSeparators) {
        if (value == separator.name) return separator.character;
    }
    const WideString text = DecodeArgument("--separator", *value);
    if (text.size() != 1) {
        RefuseUsage("--separator takes one character up to U+FFFF, or tab, comma, semicolon or pipe.");
    }
    if (text[0] == '"' || text[0] == '\n') RefuseUsage("A quote or a line feed cannot separate cells.");
    return text[0];
}

std::optional<Encoding> ReadEncoding(bool utf8, const std::optional<std::string>& value) {
    const bool isUtf8 = value == NameOfEncoding(Encoding::Utf8);
    const bool isEightBit = value == NameOfEncoding(Encoding::EightBit);
    if (value && !isUtf8 && !isEightBit) RefuseUsage("--encoding takes utf-8 or 8-bit.");
    if (utf8 && isEightBit) RefuseUsage("--utf8 and --encoding 8-bit cannot be used together.");
    if (isEightBit) return Encoding::EightBit;
    return utf8 || isUtf8 ? std::optional(Encoding::Utf8) : std::nullopt;
}

std::size_t ReadJobs(const std::string& value) {
    std::size_t jobs = 0;
    const char* const end = value.data() + value.size();
    const auto [behind, error] = std::from_chars(value.data(), end, jobs);
    if (error != std::errc{} || behind != end || jobs == 0 || jobs > kMostProcesses) {
        RefuseUsage("--jobs takes a number from 1 to " + std::to_string(kMostProcesses) + ".");
    }
    return jobs;
}

VImportType KindByExtension(const std::filesystem::path& input) {
    constexpr struct {
        const char* extension;
        VImportType kind;
    } kExtensions[] = {{".csv", ImportTypeCSV},    {".txt", ImportTypeCSV},    {".tsv", ImportTypeCSV},
                       {".xlsx", ImportTypeExcel}, {".xlsm", ImportTypeExcel}, {".xls", ImportTypeExcel}};
    const std::string extension = LowerCase(ToBytes(input.extension()));
    for (const auto& [known, kind] : kExtensions) {
        if (extension == known) return kind;
    }
    RefuseUsage(
        "The kind of " + NameOf(input) + " is not known from its extension; use --csv, --excel or --odbc.",
        FindKindHint(input));
}

VImportType ChooseKind(const Arguments& arguments, const std::filesystem::path& input) {
    const bool kinds[] = {arguments.csv, arguments.excel, arguments.odbc};
    const auto kindCount = std::count(std::begin(kinds), std::end(kinds), true);
    if (kindCount > 1) RefuseUsage("--csv, --excel and --odbc cannot be used together.");
    const bool isStandardInput = input == kStandardInput;
    if (isStandardInput && !arguments.csv && kindCount > 0)
        RefuseUsage("Standard input is read as CSV only.");
    if (arguments.excel) return ImportTypeExcel;
    if (arguments.odbc) return ImportTypeODBC;
    return arguments.csv || isStandardInput ? ImportTypeCSV : KindByExtension(input);
}

Options CheckListing(const Arguments& arguments) {
    if (!arguments.files.empty()) RefuseUsage("--list-worksheets takes no INPUT or OUTPUT.");
    if (arguments.check || arguments.json || arguments.sarif) {
        RefuseUsage("--list-worksheets cannot be used with --check, --json or --sarif.");
    }
    if (arguments.workbook.empty()) RefuseUsage("--list-worksheets requires a workbook.");
    Options options;
    options.listsWorksheets = true;
    options.kind = ImportTypeExcel;
    options.input = ToPath(arguments.workbook);
    return options;
}

void SetInput(Options& options, const Arguments& arguments, const std::string& file) {
    options.input = file == "-" ? kStandardInput : ToPath(file);
    options.kind = ChooseKind(arguments, options.input);
}

// All but the files.
Options CheckSettings(const Arguments& arguments) {
    if (arguments.strict && arguments.noFindings)
        RefuseUsage("--strict and --no-findings cannot be used together.");
    Options options;
    options.separator = ReadSeparator(arguments.separator);
    options.encoding = ReadEncoding(arguments.utf8, arguments.encoding);
    options.checks = arguments.check;
    options.force = arguments.force;
    options.reports = arguments.json;
    options.findings = !arguments.noFindings;
    options.strict = arguments.strict;
    options.isOneOfMany = arguments.oneOfMany;
    options.verbose = arguments.verbose;
    options.worksheet = DecodeArgument("--worksheet", arguments.worksheet);
    options.vsgNames = DecodeNames("--vsg", arguments.vsgNames);
    options.typeANames = DecodeNames("--type-a", arguments.typeANames);
    options.variant = DecodeArgument("--variant", arguments.variant);
    options.diagnosticInstance = DecodeArgument("--diag-instance", arguments.diagnosticInstance);
    return options;
}

void RefuseImpossibleName(const std::filesystem::path& output) {
    if (const std::string reason = ReasonAgainstName(output); !reason.empty()) RefuseUsage(reason);
}

Options CheckConversion(const Arguments& arguments) {
    const std::vector<std::string>& files = arguments.files;
    if (files.size() < 2 && !arguments.check) RefuseUsage("INPUT and OUTPUT are required.");
    if (files.size() > 2) RefuseUsage("More than two files require --output-dir or --check.");
    Options options = CheckSettings(arguments);
    SetInput(options, arguments, files[0]);
    if (!options.checks) options.output = files[1] == "-" ? kStandardOutput : ToPath(files[1]);
    if (!options.checks) RefuseImpossibleName(options.output);
    if (options.reports && options.output == kStandardOutput) {
        RefuseUsage("The document and the JSON output cannot both go to standard output.");
    }
    return options;
}

CommandLine OneTask(const Options& task) {
    CommandLine line;
    line.tasks.push_back(task);
    return line;
}

// Where two tables would become the same document, or a document would overwrite another's table, one
// would be lost. The task itself refuses a document that would overwrite its own table.
void RefuseLosses(const std::vector<Options>& tasks) {
    std::map<std::filesystem::path, const Options*> places;
    for (const Options& task : tasks) {
        const auto [other, isNew] = places.emplace(PlaceOf(FollowLinks(task.output)), &task);
        if (isNew) continue;
        const std::filesystem::path& input = task.input;
        if (PlaceOf(other->second->input) == PlaceOf(input)) {
            RefuseUsage(NameOf(input) + " is given twice.");
        }
        RefuseUsage(NameOf(other->second->input) + " and " + NameOf(task.input) + " would both become " +
                    NameOf(task.output) + ".");
    }
    for (const Options& task : tasks) {
        const auto other = places.find(PlaceOf(FollowLinks(task.input)));
        if (other == places.end() || other->second == &task) continue;
        RefuseUsage("The document of " + NameOf(other->second->input) + " would overwrite " +
                    NameOf(task.input) + ".");
    }
}

// A file that is not there yet counts, too; a device can be written to by several.
bool WouldReplace(const std::filesystem::path& file, const std::filesystem::path& other) {
    std::error_code ignored;
    if (std::filesystem::exists(std::filesystem::file_status(TypeOf(other, ignored)))) {
        return IsRegularFile(other) && AreSameFile(file, other);
    }
    return !other.empty() && PlaceOf(FollowLinks(file)) == PlaceOf(FollowLinks(other));
}

void SetSarif(Options& options, const Arguments& arguments) {
    const std::string& file = *arguments.sarif;
    if (file.empty()) RefuseUsage("--sarif requires a file.");
    if (!options.findings) RefuseUsage("--sarif and --no-findings cannot be used together.");
    options.sarif = file == "-" ? kStandardOutput : ToPath(file);
    RefuseImpossibleName(options.sarif);
    if (arguments.oneOfMany) return;
    const char* const printed = options.reports                     ? "the JSON output"
                                : options.isOneOfMany               ? "the results"
                                : options.output == kStandardOutput ? "the document"
                                                                    : nullptr;
    if (options.sarif == kStandardOutput && printed != nullptr) {
        RefuseUsage(std::string("The SARIF output and ")
                        .append(printed)
                        .append(" cannot both go to standard output."));
    }
    for (const std::filesystem::path& other : {options.input, options.output}) {
        if (!WouldReplace(options.sarif, other)) continue;
        RefuseUsage("The SARIF output would overwrite " + NameOf(other) + ".");
    }
    const std::string reason = options.force ? std::string() : ReasonToKeep(options.sarif, kSarifFile);
    if (!reason.empty()) RefuseUsage(reason);
}

void RefuseToReplaceOthers(const std::vector<Options>& tasks) {
    for (const Options& task : tasks) {
        if (const std::string reason = ReasonToKeep(task.output, kImportDocument); !reason.empty())
            RefuseUsage(reason);
    }
}

std::vector<Options> CheckTasks(const Arguments& arguments, const std::filesystem::path& outputFolder) {
    std::vector<Options> tasks(arguments.files.size(), CheckSettings(arguments));
    for (std::size_t index = 0; index < tasks.size(); ++index) {
        Options& task = tasks[index];
        SetInput(task, arguments, arguments.files[index]);
        task.isOneOfMany = true;
        if (task.input == kStandardInput) RefuseUsage("Standard input cannot be one of several files.");
        if (task.checks) continue;
        task.output = outputFolder / task.input.stem();
        task.output += ".xml";
        RefuseImpossibleName(task.output);
    }
    return tasks;
}

CommandLine CheckBatch(const Arguments& arguments, std::size_t jobs) {
    if (arguments.verbose) RefuseUsage("--verbose works with one file only; for several, use --json.");
    CommandLine line;
    line.isBatch = true;
    line.jobs = jobs;
    if (!arguments.check) line.outputFolder = ToPath(arguments.outputFolder);
    line.tasks = CheckTasks(arguments, line.outputFolder);
    if (!arguments.check) RefuseLosses(line.tasks);
    if (!arguments.check && !arguments.force) RefuseToReplaceOthers(line.tasks);
    for (Options& task : line.tasks) {
        if (arguments.sarif) SetSarif(task, arguments);
    }
    return line;
}

std::vector<std::string> ExpandPatterns(const std::vector<std::string>& patterns) {
    std::vector<std::string> files;
    for (const std::string& pattern : patterns) {
        for (std::string& file : FilesOfPattern(pattern)) files.push_back(std::move(file));
    }
    return files;
}

CommandLine CheckConversions(Arguments& arguments) {
    // One file more would become the output elsewhere.
    if (!arguments.outputFolder.empty() || arguments.check) arguments.files = ExpandPatterns(arguments.files);
    const std::vector<std::string>& files = arguments.files;
    const bool isBatch = !arguments.outputFolder.empty() || (arguments.check && files.size() > 1);
    if (std::find(files.begin(), files.end(), "") != files.end()) RefuseUsage("A file name is empty.");
    if (files.empty() && (isBatch || arguments.check)) RefuseUsage("INPUT is required.");
    const std::size_t jobs = ReadJobs(arguments.jobs);
    if (isBatch) return CheckBatch(arguments, jobs);
    Options task = CheckConversion(arguments);
    if (arguments.sarif) SetSarif(task, arguments);
    return OneTask(task);
}

// CLI11 would use the argument after "--variant=" as the value; here the value is empty. The last argument
// comes first, as CLI11 expects.
std::vector<std::string> PrepareArguments(const std::vector<std::string>& given) {
    std::vector<std::string> arguments;
    bool areOptions = true;
    for (std::string argument : given) {
        areOptions = areOptions && argument != "--";
        const bool isEmptyValue =
            areOptions && argument.starts_with("--") && argument.find('=') == argument.size() - 1;
        if (isEmptyValue) argument.pop_back();
        if (argument.starts_with('[')) argument.insert(0, 1, kMark);
        arguments.push_back(argument);
        if (isEmptyValue) arguments.emplace_back();
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

}  // namespace

std::optional<CommandLine> ReadCommandLine(const std::vector<std::string>& given) {
    CLI::App app;
    Arguments arguments;
    DeclareCommandLine(app, arguments);
    try {
        app.parse(PrepareArguments(given));
    } catch (const CLI::Success& shown) {
        app.exit(shown);
        if (!std::cout.flush() || !CloseStandardOutput())
            throw Failure("Could not write to standard output.");
        return std::nullopt;
    } catch (const CLI::ExtrasError&) {
        RefuseOption(app);
    } catch (const CLI::ParseError& error) {
        RefuseUsage(std::string(error.what()) + ".");
    }
    if (app.count("--list-worksheets") > 0) return OneTask(CheckListing(arguments));
    if (app.count("--output-dir") > 0 && arguments.outputFolder.empty())
        RefuseUsage("--output-dir requires a folder.");
    return CheckConversions(arguments);
}

const char* NameOfKind(VImportType kind) {
    constexpr const char* kNames[] = {"odbc", "excel", "csv"};
    return kNames[kind];
}

const char* NameOfEncoding(Encoding encoding) {
    constexpr const char* kNames[] = {"8-bit", "utf-8", "utf-16"};
    return kNames[static_cast<std::size_t>(encoding)];
}

void ReadOptionTable(const std::function<void(const CLI::App&)>& reader) {
    CLI::App app;
    Arguments arguments;
    DeclareCommandLine(app, arguments);
    reader(app);
}

}  // namespace NCli
