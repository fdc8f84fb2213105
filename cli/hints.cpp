#include "cli/hints.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <optional>
#include <system_error>

#include "cli/csv_text.h"
#include "cli/detection.h"
#include "cli/failure.h"
#include "cli/file_format.h"
#include "cli/files.h"
#include "cli/text.h"

namespace NCli {

using namespace NXls2Tki;

namespace fs = std::filesystem;

namespace {

bool Holds(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

std::string HintAtInstallation(std::string_view message) {
    if (message == "No Excel ODBC driver found" || message.ends_with(": No Excel ODBC driver found")) {
        return std::string("--excel needs no such driver. ").append(DriverAdvice());
    }
    const char* const registry = std::getenv("XLS2TKI_REGISTRY");
    if (registry == nullptr || *registry == '\0' || !Holds(message, " is not installed ")) return {};
    return "XLS2TKI_REGISTRY names the registry file " + NameOf(registry) +
           ", which cannot be read or has no entry for Excel.";
}

std::string HintAtOpening(const fs::path& input) {
    const std::string name = NameOf(input);
    std::error_code error;
    switch (TypeOf(input, error)) {
        case fs::file_type::regular:
            if (OpenFile(input, "rb")) return {};
            return name + " cannot be opened: " + SystemText(errno) + ".";
        case fs::file_type::not_found:
            return "There is no file " + name + ".";
        case fs::file_type::directory:
            return name + " is a folder.";
        case fs::file_type::none:
            return name + " cannot be reached: " + error.message() + ".";
        default:
            return name + " is a device or a pipe, not a file.";
    }
}

// For what no option makes a table of.
std::string HintAtOtherFormat(const std::string& name, FileFormat format) {
    switch (format) {
        case FileFormat::OlderWorkbook:
            return name + " is a workbook of the older kind (.xls). Save it as .xlsx.";
        case FileFormat::BinaryWorkbook:
            return name + " is a binary workbook (.xlsb). Save it as .xlsx.";
        case FileFormat::OpenDocument:
            return name + " is an OpenDocument spreadsheet (.ods). Save it as .xlsx.";
        case FileFormat::Numbers:
            return name +
                   " is a document of Numbers or one of its sister programs. Export the table as .xlsx.";
        case FileFormat::Markup:
            return name + " is HTML or XML. Open it in a spreadsheet program and save it as .xlsx.";
        default:
            return {};
    }
}

std::string HintAtWorkbook(const fs::path& input, FileFormat format) {
    const std::string name = NameOf(input);
    if (format != FileFormat::Workbook) return HintAtOtherFormat(name, format);
    if (input == kStandardInput) return "Standard input is a workbook. Save it as a file, for --excel.";
    return name + " is a workbook. Give --excel.";
}

bool HasSeparator(const Options& options, const fs::path& input) {
    Options open = options;
    open.encoding.reset();
    const File text = OpenFile(input, "rb");
    return text && FindSeparator(open, text.get());
}

std::string HintAtFormat(const Options& options, const fs::path& input, std::string_view message) {
    const std::string name = NameOf(options.input);
    const FileFormat format = FormatOf(input);
    if (format == FileFormat::Empty) return name + " is empty.";
    if (options.kind == ImportTypeCSV) return HintAtWorkbook(options.input, format);
    if (format == FileFormat::Text && HasSeparator(options, input)) {
        return name + " is text with separators. Give --csv.";
    }
    const bool isExcels = format == FileFormat::OlderWorkbook || Holds(message, "Save it as .xlsx.");
    return isExcels ? std::string() : HintAtOtherFormat(name, format);
}

std::string HintAtSeparator(const Options& options, const fs::path& input) {
    const File text = OpenFile(input, "rb");
    const std::optional<Separator> separator = text ? FindSeparator(options, text.get()) : std::nullopt;
    if (!separator || separator->character == options.separator) return {};
    return std::string("The header has ") + separator->plural + " between its cells. Give --separator " +
           separator->name + ", or leave --separator out.";
}

std::string HintAtNoData(const Options& options) {
    const std::string name = NameOf(options.input);
    if (options.kind == ImportTypeCSV) {
        return "The first row of " + name +
               " does not end: no double quote closes a cell that begins with one.";
    }
    return "Row 1 of the worksheet that was read from " + name +
           " has nothing in its first columns. --worksheet chooses the worksheet.";
}

// The code that the library refused, in lower case; its message has it in upper case.
std::optional<std::string> RefusedCode(std::string_view message) {
    constexpr struct {
        std::string_view before;
        std::string_view behind;
    } kMessages[] = {{"Given SAE DTC number ", " has invalid length, expected"},
                     {"Given SAE DTC '", "' is invalid,"}};
    for (const auto& [before, behind] : kMessages) {
        const std::size_t end = message.rfind(behind);
        if (!message.starts_with(before) || end == std::string_view::npos) continue;
        return LowerCase(message.substr(before.size(), end - before.size()));
    }
    return std::nullopt;
}

struct Place {
    std::size_t row = 1;
    std::size_t line = 1;  // of the file
};

// The row behind the header whose first cell is the code, or with `trims`, the code and blanks.
std::optional<Place> FindCode(const Options& options, std::FILE* text, std::string_view code, bool trims) {
    GoToText(text);
    CsvCharacters characters(text, options.encoding.value_or(Encoding::EightBit));
    CsvCells cells(options.separator.value_or(';'));
    Place place;
    std::size_t lines = 1;
    std::string first;
    bool isFirst = true;
    for (int character = characters.Next(); character != kEndOfText; character = characters.Next()) {
        lines += character == '\n' ? 1 : 0;
        const CsvStep step = cells.Take(character);
        if (step == CsvStep::Fault) return std::nullopt;
        if (step == CsvStep::Character && isFirst) first += static_cast<char>(character);
        if (step != CsvStep::EndOfCell && step != CsvStep::EndOfRow) continue;
        if (trims) first.erase(first.find_last_not_of(' ') + 1);
        if (isFirst && place.row > 1 && LowerCase(first) == code) return place;
        isFirst = step == CsvStep::EndOfRow;
        if (isFirst) place = {place.row + 1, lines};
        first.clear();
    }
    return std::nullopt;
}

// Where the bytes of characters are not the message's, there is no place that is sure.
std::string HintAtCode(const Options& options, const fs::path& input, std::string_view code) {
    if (options.separator.value_or(';') >= 0x80) return {};
    const File text = OpenFile(input, "rb");
    if (!text) return {};
    std::optional<Place> place = FindCode(options, text.get(), code, false);
    if (!place) place = FindCode(options, text.get(), code, true);
    if (!place) return {};
    return "The code is in cell A" + std::to_string(place->row) + " of " + NameOf(options.input) +
           ", in line " + std::to_string(place->line) + ".";
}

std::string HintAtTable(const Options& options, const fs::path& input, std::string_view message) {
    if (message == "Empty data given ?!" && options.kind != ImportTypeODBC) return HintAtNoData(options);
    if (options.kind != ImportTypeCSV) return {};
    if (Holds(message, " does not define enough columns.")) return HintAtSeparator(options, input);
    const std::optional<std::string> code = RefusedCode(message);
    return code ? HintAtCode(options, input, *code) : std::string();
}

}  // namespace

std::string FindHint(const Options& options, const fs::path& input, std::string_view message) {
    std::string hint = HintAtInstallation(message);
    if (hint.empty()) hint = HintAtOpening(input);
    if (hint.empty()) hint = HintAtFormat(options, input, message);
    if (hint.empty()) hint = HintAtTable(options, input, message);
    return hint;
}

std::string FindKindHint(const fs::path& input) {
    return IsRegularFile(input) ? HintAtWorkbook(input, FormatOf(input)) : std::string();
}

}  // namespace NCli
