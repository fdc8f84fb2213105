#include "workbook/xlsx/written_parts.h"

#include <charconv>

#include "workbook/cell_rules.h"
#include "workbook/range_address.h"
#include "workbook/xlsx/xml_text.h"

namespace NWorkbook::NXlsx {

namespace {

constexpr std::string_view kXmlDeclaration = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>)"
                                             "\n";
constexpr std::string_view kContentTypes =
    R"(<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">)"
    R"(<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>)"
    R"(<Override PartName="/xl/workbook.xml" ContentType=)"
    R"("application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml"/>)"
    R"(<Override PartName="/xl/sharedStrings.xml" ContentType=)"
    R"("application/vnd.openxmlformats-officedocument.spreadsheetml.sharedStrings+xml"/>)";
constexpr std::string_view kSheetType =
    R"(.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml"/>)";
constexpr std::string_view kRelationships =
    R"(<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">)";
constexpr std::string_view kRelationshipType =
    R"(" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/)";
constexpr std::string_view kWorkbook =
    R"(<workbook xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" )"
    R"(xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships"><fileVersion appName=")";
constexpr std::string_view kSheet =
    R"(<worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><sheetData>)";
constexpr std::string_view kStrings =
    R"(<sst xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main">)";

template <typename... Pieces>
void Append(std::string& xml, const Pieces&... pieces) {
    (xml.append(std::string_view(pieces)), ...);
}

template <typename Number>
void AppendNumber(std::string& xml, Number number) {
    char digits[32];
    const std::to_chars_result result = std::to_chars(std::begin(digits), std::end(digits), number);
    xml.append(digits, result.ptr);
}

std::string SheetPart(std::size_t number) { return "worksheets/sheet" + std::to_string(number); }

void AppendRelationship(std::string& xml, std::size_t id, std::string_view type, std::string_view target) {
    Append(xml, R"(<Relationship Id="rId)", std::to_string(id), kRelationshipType, type, R"(" Target=")",
           target, R"("/>)");
}

// The texts of all worksheets are in one part; the cells have their indexes.
class StringsPart {
  public:
    // Returns the index.
    std::size_t Add(std::u16string_view text) {
        const bool keepsBlanks = !text.empty() && (IsXmlBlank(text.front()) || IsXmlBlank(text.back()));
        xml_ += keepsBlanks ? R"(<si><t xml:space="preserve">)" : "<si><t>";
        AppendXmlText(xml_, text);
        xml_ += "</t></si>";
        return count_++;
    }

    std::string Take() { return std::move(xml_.append("</sst>")); }

  private:
    std::string xml_ = std::string(kXmlDeclaration).append(kStrings);
    std::size_t count_ = 0;
};

void AppendValue(std::string& xml, const Cell& cell, StringsPart& strings) {
    switch (cell.type) {
        case CellType::Number:
            RefuseStrangeNumber(cell.number, cell.row, cell.column);
            xml += R"("><v>)";
            return AppendNumber(xml, cell.number);
        case CellType::Text:
            RefuseLongText(TextAt(cell.text), cell.row, cell.column);
            xml += R"(" t="s"><v>)";
            return AppendNumber(xml, strings.Add(TextAt(cell.text)));
        case CellType::Bool:
            xml += cell.truth ? R"(" t="b"><v>1)" : R"(" t="b"><v>0)";
            return;
        default:
            throw WorkbookError(u"The error value in cell " + CellName(cell.row, cell.column) +
                                u" cannot be saved.");
    }
}

std::string WriteWorksheet(Worksheet& worksheet, StringsPart& strings) {
    std::string xml = std::string(kXmlDeclaration).append(kSheet);
    std::uint32_t row = 0;
    const Cell* const end = worksheet.Cells().End();
    for (const Cell* cell = worksheet.Cells().Begin(); cell != end; ++cell) {
        if (cell->row != row) {
            Append(xml, row == 0 ? "" : "</row>", R"(<row r=")");
            AppendNumber(xml, row = cell->row);
            xml += R"(">)";
        }
        char room[kMostUnitsOfCellName];
        Append(xml, R"(<c r=")", WriteCellName(cell->row, cell->column, room));
        AppendValue(xml, *cell, strings);
        xml += "</v></c>";
    }
    Append(xml, row == 0 ? "" : "</row>", "</sheetData></worksheet>");
    return xml;
}

}  // namespace

std::vector<WrittenPart> WriteParts(const Workbook& workbook) {
    std::string types = std::string(kXmlDeclaration).append(kContentTypes);
    std::string root = std::string(kXmlDeclaration).append(kRelationships);
    std::string sheets = std::string(kXmlDeclaration).append(kWorkbook);
    std::string relationships = root;
    AppendRelationship(root, 1, "officeDocument", "xl/workbook.xml");
    Append(sheets, kApplicationName, R"("/><sheets>)");
    std::vector<WrittenPart> worksheets;
    StringsPart strings;
    for (const auto& worksheet : workbook.worksheets) {
        const std::size_t number = worksheets.size() + 1;
        const std::string digits = std::to_string(number);
        Append(types, R"(<Override PartName="/xl/)", SheetPart(number), kSheetType);
        AppendRelationship(relationships, number, "worksheet", SheetPart(number) + ".xml");
        sheets += R"(<sheet name=")";
        AppendXmlText(sheets, worksheet->Name());
        Append(sheets, R"(" sheetId=")", digits, R"(" r:id="rId)", digits, R"("/>)");
        worksheets.push_back({"xl/" + SheetPart(number) + ".xml", WriteWorksheet(*worksheet, strings)});
    }
    AppendRelationship(relationships, worksheets.size() + 1, "sharedStrings", "sharedStrings.xml");
    std::vector<WrittenPart> parts = {
        {"[Content_Types].xml", types + "</Types>"},
        {"_rels/.rels", root + "</Relationships>"},
        {"xl/workbook.xml", sheets + "</sheets></workbook>"},
        {"xl/_rels/workbook.xml.rels", relationships + "</Relationships>"},
        {"xl/sharedStrings.xml", strings.Take()},
    };
    std::move(worksheets.begin(), worksheets.end(), std::back_inserter(parts));
    return parts;
}

}  // namespace NWorkbook::NXlsx
