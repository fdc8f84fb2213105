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

// One task: a conversion, or a listing of worksheets.
struct Options {
    bool listsWorksheets = false;
    std::filesystem::path input;  // also the workbook whose worksheets are listed
    std::filesystem::path output;
    NXls2Tki::VImportType kind = NXls2Tki::ImportTypeCSV;
    NXls2Tki::WideChar separator = ';';
    bool utf8 = false;
    bool verbose = false;
    bool checks = false;   // nothing is written, so there is no output
    bool force = false;    // the output may be replaced whatever it is
    bool reports = false;  // as JSON
    NXls2Tki::WideString worksheet;
    NXls2Tki::WideStringSet vsgNames;
    NXls2Tki::WideStringSet typeANames;
    NXls2Tki::WideString variant;
    NXls2Tki::WideString diagnosticInstance;
};

struct CommandLine {
    std::vector<Options> tasks;          // one, unless it is a batch
    bool isBatch = false;                // each task has its own process, and needs no standard stream
    std::filesystem::path outputFolder;  // of a batch; empty where nothing is to be written
    std::size_t jobs = 1;                // that many tasks of a batch at a time, at most kMostProcesses
};

// Empty when the command line asked for the help or the version, which has then been shown. Throws Failure.
std::optional<CommandLine> ReadCommandLine(const std::vector<std::string>& given);

// Of its long option, without the dashes.
const char* NameOfKind(NXls2Tki::VImportType kind);

// Lends the table of options that the command line is read by. The help is made of it, and so is whatever
// else tells what the options are.
void ReadOptionTable(const std::function<void(const CLI::App&)>& reader);

}  // namespace NCli
