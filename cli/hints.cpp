#include "cli/hints.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <optional>
#include <system_error>

#include "cli/csv_walk.h"
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
    return Holds(message, "Save it as .xlsx.") ? std::string() : HintAtOtherFormat(name, format);
}

std::string HintAtSeparator(const Options& options, std::FILE* text) {
    const std::optional<Separator> separator = FindSeparator(options, text);
    if (!separator || separator->character == options.separator) return {};
    return std::string("The header has ") + separator->plural + " between its cells. Give --separator " +
           separator->name + ", or leave --separator out.";
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

// Of "Row [3] defines 2 columns."; counts from 0.
std::optional<std::size_t> RefusedRow(std::string_view message) {
    constexpr std::string_view kBegin = "Row [";
    const std::string_view::size_type end = message.find("] defines ");
    if (!message.starts_with(kBegin) || end == std::string_view::npos) return std::nullopt;
    std::size_t row = 0;
    std::from_chars(message.data() + kBegin.size(), message.data() + end, row);
    return row;
}

// Where the walk has stopped.
std::string PlaceOf(const CsvWalk& walk, const Options& options) {
    return "cell " + walk.CellName() + " of " + NameOf(options.input) + ", in line " +
           std::to_string(walk.Line());
}

// The row after the header whose first cell is the code, or with `trims`, the code and blanks.
bool FindCode(CsvWalk& walk, std::string_view code, bool trims) {
    while (walk.Next()) {
        if (walk.Row() == 1 || walk.Column() > 0) continue;
        std::string text = walk.Text();
        if (trims) text.erase(text.find_last_not_of(' ') + 1);
        if (LowerCase(text) == code) return true;
    }
    return false;
}

// Where the bytes of characters are not the message's, there is no place that is sure.
std::string HintAtCode(const Options& options, std::FILE* text, std::string_view code) {
    for (const bool trims : {false, true}) {
        CsvWalk walk(options, text);
        if (FindCode(walk, code, trims)) return "The code is in " + PlaceOf(walk, options) + ".";
    }
    return {};
}

// The message counts rows from 0.
std::string HintAtRow(const Options& options, std::FILE* text, std::size_t row) {
    CsvWalk walk(options, text);
    bool isThere = walk.Next();
    while (isThere && walk.Row() <= row) isThere = walk.Next();
    if (!isThere) return {};
    const std::string line = "ine " + std::to_string(walk.Line()) + " of " + NameOf(options.input);
    if (walk.HowItEnds() == CsvWalk::End::OfRow && walk.Text().empty())
        return "L" + line + " is empty. Delete it.";
    return "The row begins in l" + line + ", with cell " + walk.CellName() +
           ". It needs as many separators as the header has; a cell with a separator in it needs double "
           "quotes "
           "around it.";
}

std::string HintAtFault(const Options& options, std::FILE* text) {
    CsvWalk walk(options, text);
    while (walk.Next() && walk.HowItEnds() != CsvWalk::End::Fault) continue;
    if (walk.HowItEnds() != CsvWalk::End::Fault) return {};
    return "The character is behind the double quote that closes " + PlaceOf(walk, options) +
           ". A double quote that belongs to the cell is written twice.";
}

std::string HintAtNoRow(const Options& options, std::FILE* text) {
    CsvWalk walk(options, text);
    if (!walk.Next()) return NameOf(options.input) + " has a byte order mark and nothing else.";
    while (walk.HowItEnds() == CsvWalk::End::OfCell && walk.Next()) continue;
    if (walk.HowItEnds() != CsvWalk::End::Unfinished) return {};
    return "The double quote with which " + PlaceOf(walk, options) +
           ", begins is not closed, so the first row does not end.";
}

bool HasOnlyCarriageReturns(std::FILE* text) {
    std::rewind(text);
    std::string piece(std::size_t{1} << 20, '\0');
    piece.resize(std::fread(piece.data(), 1, piece.size(), text));
    return Holds(piece, "\r") && !Holds(piece, "\n");
}

// Every other byte of its first characters, which are ASCII in any table, is 0.
bool IsUtf16WithoutMark(std::FILE* text) {
    unsigned char bytes[8];
    std::rewind(text);
    if (std::fread(bytes, 1, sizeof bytes, text) < sizeof bytes) return false;
    const std::size_t zero = bytes[0] == 0 ? 0 : 1;
    for (std::size_t index = 0; index < sizeof bytes; ++index) {
        if ((bytes[index] == 0) != (index % 2 == zero)) return false;
    }
    return true;
}

// Spreadsheet programs leave out such a line.
bool BeginsWithSeparatorLine(const Options& options, std::FILE* text) {
    CsvWalk walk(options, text);
    return walk.Next() && LowerCase(walk.Text()).starts_with("sep=");
}

std::string HintAtHeader(const Options& options, std::FILE* text) {
    const std::string name = NameOf(options.input);
    if (HasOnlyCarriageReturns(text)) {
        return "The lines of " + name + " end in carriage returns alone. Save it with other line ends.";
    }
    if (BeginsWithSeparatorLine(options, text)) {
        return "The first line of " + name +
               " only names the separator, and is read as the header. Delete it.";
    }
    return {};
}

std::string HintAtText(const Options& options, std::FILE* text, std::string_view message) {
    if (IsUtf16WithoutMark(text)) {
        return NameOf(options.input) + " is UTF-16 without a byte order mark. Save it as UTF-8.";
    }
    const auto row = RefusedRow(message);
    const bool isNarrow = Holds(message, " does not define enough columns.");
    if (row || isNarrow || message.starts_with("Row [0] has too many columns")) {
        if (std::string hint = HintAtHeader(options, text); !hint.empty()) return hint;
    }
    if (isNarrow) return HintAtSeparator(options, text);
    if (options.separator.value_or(';') >= 0x80) return {};  // several bytes
    if (row) return HintAtRow(options, text, *row);
    if (message == "Empty data given ?!") return HintAtNoRow(options, text);
    if (Holds(message, "\nUnknown character '")) return HintAtFault(options, text);
    const std::optional<std::string> code = RefusedCode(message);
    return code ? HintAtCode(options, text, *code) : std::string();
}

std::string HintAtWorksheet(const std::string& name, std::string_view message) {
    if (message == "Empty data given ?!") {
        return "Cell A1 of the worksheet that was read from " + name +
               " is empty. The header has to begin there: delete the empty rows and columns in front of it, "
               "or "
               "choose another worksheet with --worksheet.";
    }
    if (!Holds(message, " does not define enough columns.")) return {};
    return "Row 1 of the worksheet that was read from " + name +
           " has one filled cell, and the header has to be there. Delete a title and the empty rows above "
           "the "
           "header.";
}

std::string HintAtTable(const Options& options, const fs::path& input, std::string_view message) {
    if (options.kind == ImportTypeExcel) return HintAtWorksheet(NameOf(options.input), message);
    if (options.kind != ImportTypeCSV) return {};
    const File text = OpenFile(input, "rb");
    return text ? HintAtText(options, text.get(), message) : std::string();
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
