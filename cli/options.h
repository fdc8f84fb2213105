// The command line.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "api/xls2tki.h"

namespace CLI {
class App;
}

namespace NCli {

// A character that often separates cells.
struct Separator {
    NXls2Tki::WideChar character;
    const char* name;  // as --separator takes it
    const char* plural;
};

// The first is the default.
inline constexpr Separator kSeparators[] = {{';', "semicolon", "semicolons"},
                                            {'\t', "tab", "tabs"},
                                            {',', "comma", "commas"},
                                            {'|', "pipe", "pipes"}};

// Of a CSV text. UTF-16 has a byte order mark, so the library reads it when asked to read UTF-8.
enum class Encoding { EightBit, Utf8, Utf16 };

// One task: a conversion, or a listing of worksheets.
struct Options {
    bool listsWorksheets = false;
    std::filesystem::path input;  // also the workbook whose worksheets are listed
    std::filesystem::path output;
    std::filesystem::path sarif;  // where the findings go as well; empty where they do not
    NXls2Tki::VImportType kind = NXls2Tki::ImportTypeCSV;
    std::optional<NXls2Tki::WideChar> separator;  // none: detect it
    std::optional<Encoding> encoding;             // the same
    bool verbose = false;
    bool checks = false;       // nothing is written, so there is no output
    bool force = false;        // replace any output
    bool reports = false;      // as JSON
    bool findings = true;      // look for what is wrong with the table, and show it
    bool strict = false;       // no document of a table with an error
    bool isOneOfMany = false;  // of its findings only the counts are shown
    NXls2Tki::WideString worksheet;
    NXls2Tki::WideStringSet vsgNames;
    NXls2Tki::WideStringSet typeANames;
    NXls2Tki::WideString variant;
    NXls2Tki::WideString diagnosticInstance;
};

struct CommandLine {
    std::vector<Options> tasks;          // one, unless it is a batch
    bool isBatch = false;                // each task has its own process, and needs no standard stream
    std::filesystem::path outputFolder;  // of a batch; empty if nothing is written
    std::size_t jobs = 1;                // that many tasks of a batch at a time, at most kMostProcesses
};

// Empty when the command line asked for the help or the version, which has then been shown. Throws Failure.
std::optional<CommandLine> ReadCommandLine(const std::vector<std::string>& given);

// Of its long option, without the dashes.
const char* NameOfKind(NXls2Tki::VImportType kind);

// As --encoding has it; "utf-16" for the one that --encoding cannot name.
const char* NameOfEncoding(Encoding encoding);

// Lends the table of options that parses the command line. The help is made from it, and so is everything
// else that lists the options.
void ReadOptionTable(const std::function<void(const CLI::App&)>& reader);

}  // namespace NCli
