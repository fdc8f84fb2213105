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

struct Options {
    bool listsWorksheets = false;
    std::filesystem::path input;  // also the workbook whose worksheets are listed
    std::filesystem::path output;
    NXls2Tki::VImportType kind = NXls2Tki::ImportTypeCSV;
    NXls2Tki::WideChar separator = ';';
    bool utf8 = false;
    bool verbose = false;
    NXls2Tki::WideString worksheet;
    NXls2Tki::WideStringSet vsgNames;
    NXls2Tki::WideStringSet typeANames;
    NXls2Tki::WideString variant;
    NXls2Tki::WideString diagnosticInstance;
};

// Empty when the command line asked for the help or the version, which has then been shown. Throws Failure.
std::optional<Options> ReadCommandLine(const std::vector<std::string>& given);

// Lends the table of options that the command line is read by. The help is made of it, and so is whatever
// else tells what the options are.
void ReadOptionTable(const std::function<void(const CLI::App&)>& reader);

}  // namespace NCli
