#include "workbook/xlsx/written_part.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "workbook/cell_rules.h"
#include "workbook/range_address.h"
#include "workbook/xlsx/xml_text.h"

namespace NWorkbook::NXlsx {

namespace {

constexpr std::string_view kSheetHead =
    R"(<worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><sheetData>)";
constexpr std::string_view kSheetTail = "</sheetData></worksheet>";
constexpr std::string_view kStringsHead =
    R"(<sst xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main">)";
constexpr std::string_view kStringsTail = "</sst>";

constexpr std::size_t kPieceSize = std::size_t{1} << 16;

template <typename Number>
void AppendNumber(std::string& xml, Number number) {
    char digits[32];
    const std::to_chars_result result = std::to_chars(std::begin(digits), std::end(digits), number);
    xml.append(digits, result.ptr);
}

void AppendString(std::string& xml, std::u16string_view text) {
    const bool keepsBlanks = !text.empty() && (IsXmlBlank(text.front()) || IsXmlBlank(text.back()));
    xml += keepsBlanks ? R"(<si><t xml:space="preserve">)" : "<si><t>";
    AppendXmlText(xml, text);
    xml += "</t></si>";
}

void RefuseUnwritable(const Cell& cell) {
    if (cell.type == CellType::Text) RefuseLongText(TextAt(cell.text), cell.row, cell.column);
    if (cell.type == CellType::Number) RefuseStrangeNumber(cell.number, cell.row, cell.column);
    if (cell.type == CellType::Error) {
        throw WorkbookError(u"The error value in cell " + CellName(cell.row, cell.column) +
                            u" cannot be saved.");
    }
}

}  // namespace

// ---- Parts ----

void WrittenPart::Measure() {
    Rewind();
    size_ = 0;
    for (MakePiece(); !piece_.empty(); MakePiece()) size_ += piece_.size();
    Rewind();
}

void WrittenPart::Rewind() {
    stage_ = Stage::Head;
    piece_.clear();
    taken_ = 0;
    Restart();
}

std::size_t WrittenPart::Read(char* bytes, std::size_t capacity) {
    if (taken_ == piece_.size()) MakePiece();
    const std::size_t count = std::min(capacity, piece_.size() - taken_);
    std::memcpy(bytes, piece_.data() + taken_, count);
    taken_ += count;
    return count;
}

void WrittenPart::MakePiece() {
    piece_.clear();
    taken_ = 0;
    if (stage_ == Stage::Done) return;
    if (stage_ == Stage::Head) piece_.append(kXmlDeclaration).append(head_);
    stage_ = Stage::Content;
    while (piece_.size() < kPieceSize) {
        if (Continue(piece_)) continue;
        piece_ += tail_;
        stage_ = Stage::Done;
        return;
    }
}

// ---- Worksheets ----

WrittenWorksheet::WrittenWorksheet(Worksheet& worksheet, std::size_t& firstString)
    : WrittenPart(kSheetHead, kSheetTail),
      begin_(worksheet.Cells().Begin()),
      end_(worksheet.Cells().End()),
      firstString_(firstString) {
    std::for_each(begin_, end_, RefuseUnwritable);
    firstString += static_cast<std::size_t>(
        std::count_if(begin_, end_, [](const Cell& cell) { return cell.type == CellType::Text; }));
}

void WrittenWorksheet::Restart() {
    next_ = begin_;
    row_ = 0;
    string_ = firstString_;
}

bool WrittenWorksheet::Continue(std::string& xml) {
    const bool isAtEnd = next_ == end_;
    if (row_ != 0 && (isAtEnd || next_->row != row_)) xml += "</row>";
    if (isAtEnd) return false;
    const Cell& cell = *next_++;
    if (cell.row != row_) {
        row_ = cell.row;
        xml += R"(<row r=")";
        AppendNumber(xml, row_);
        xml += R"(">)";
    }
    char room[kMostUnitsOfCellName];
    xml.append(R"(<c r=")").append(WriteCellName(cell.row, cell.column, room));
    AppendValue(xml, cell);
    xml += "</v></c>";
    return true;
}

void WrittenWorksheet::AppendValue(std::string& xml, const Cell& cell) {
    if (cell.type == CellType::Number) {
        xml += R"("><v>)";
        AppendNumber(xml, cell.number);
    } else if (cell.type == CellType::Text) {
        xml += R"(" t="s"><v>)";
        AppendNumber(xml, string_++);
    } else {
        xml += cell.truth ? R"(" t="b"><v>1)" : R"(" t="b"><v>0)";
    }
}

// ---- Strings ----

WrittenStrings::WrittenStrings(const Workbook& workbook)
    : WrittenPart(kStringsHead, kStringsTail), workbook_(workbook) {}

void WrittenStrings::Restart() {
    worksheet_ = 0;
    next_ = workbook_.worksheets[0]->Cells().Begin();
}

bool WrittenStrings::Continue(std::string& xml) {
    while (true) {
        if (next_ == workbook_.worksheets[worksheet_]->Cells().End()) {
            if (worksheet_ + 1 == workbook_.worksheets.size()) return false;
            next_ = workbook_.worksheets[++worksheet_]->Cells().Begin();
        } else if ((next_++)->type == CellType::Text) {
            AppendString(xml, TextAt(next_[-1].text));
            return true;
        }
    }
}

}  // namespace NWorkbook::NXlsx
