// The format of a file, from its contents and not from its name.
#pragma once

#include <filesystem>

namespace NCli {

enum class FileFormat {
    Unknown,
    Empty,
    Text,            // that nothing below begins like
    Markup,          // an HTML page, or a spreadsheet in XML
    Workbook,        // .xlsx, .xlsm, .xls
    BinaryWorkbook,  // .xlsb
    OpenDocument,    // .ods
    Numbers,         // or another document of the programs it comes with
};

// Looks at no more than the beginning and the end of the file.
FileFormat FormatOf(const std::filesystem::path& path);

}  // namespace NCli
