#include "workbook/sheet_xml.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "platform/code_page.h"
#include "workbook/cell_rules.h"
#include "workbook/range_address.h"

namespace NWorkbook {

namespace {

constexpr std::string_view kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
    "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"><sheetData>";
constexpr std::string_view kTail = "</sheetData></worksheet>";

// Far more than the longest cell needs on top of it.
constexpr std::size_t kPieceSize = std::size_t{1} << 16;

void AppendUtf8(std::string& xml, std::u16string_view text) {
    const std::size_t size = xml.size();
    const std::size_t most = 3 * text.size();
    xml.resize(size + most);
    xml.resize(size + NPlatform::Utf16ToCodePage(NPlatform::kUtf8CodePage, text.data(), text.size(),
                                                 xml.data() + size, most));
}

void AppendMarkup(std::string& xml, char16_t unit) {
    switch (unit) {
        case u'&':
            xml += "&amp;";
            break;
        case u'<':
            xml += "&lt;";
            break;
        case u'>':
            xml += "&gt;";
            break;
        default:
            xml += "&quot;";
    }
}

bool IsHexDigit(char16_t unit) {
    return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F') || (unit >= u'a' && unit <= u'f');
}

// Whether an escape of a character stands here, or what would be taken for one.
bool IsEscape(std::u16string_view text) {
    return text.size() >= 7 && text[1] == u'x' && std::all_of(&text[2], &text[6], IsHexDigit) &&
           text[6] == u'_';
}

void AppendEscape(std::string& xml, char16_t unit) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    xml += "_x";
    for (int shift = 12; shift >= 0; shift -= 4) xml += kDigits[(unit >> shift) & 0xF];
    xml += '_';
}

bool IsMarkup(char16_t unit) { return unit == u'&' || unit == u'<' || unit == u'>' || unit == u'"'; }

bool NeedsEscape(std::u16string_view text, std::size_t index) {
    const char16_t unit = text[index];
    return unit == u'\r' || (unit == u'_' && IsEscape(text.substr(index))) || IsNoXmlCharacter(text, index);
}

void AppendCellText(std::string& xml, std::u16string_view text) {
    std::size_t begin = 0;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const bool isMarkup = IsMarkup(text[index]);
        if (!isMarkup && !NeedsEscape(text, index)) continue;
        AppendUtf8(xml, text.substr(begin, index - begin));
        isMarkup ? AppendMarkup(xml, text[index]) : AppendEscape(xml, text[index]);
        begin = index + 1;
    }
    AppendUtf8(xml, text.substr(begin));
}

bool IsBlank(char16_t unit) { return unit == u' ' || unit == u'\t' || unit == u'\n'; }

void AppendTextCell(std::string& xml, std::u16string_view text) {
    const bool keepsBlanks = !text.empty() && (IsBlank(text.front()) || IsBlank(text.back()));
    xml += " t=\"inlineStr\"><is><t";
    xml += keepsBlanks ? " xml:space=\"preserve\">" : ">";
    AppendCellText(xml, text);
    xml += "</t></is></c>";
}

void AppendNumberCell(std::string& xml, double number) {
    char digits[32];
    const std::to_chars_result result = std::to_chars(std::begin(digits), std::end(digits), number);
    xml += "><v>";
    xml.append(digits, result.ptr);
    xml += "</v></c>";
}

void AppendCell(std::string& xml, const Cell& cell) {
    char room[kMostUnitsOfCellName];
    xml += "<c r=\"";
    xml += WriteCellName(cell.row, cell.column, room);
    xml += '"';
    if (cell.type == CellType::Text) return AppendTextCell(xml, TextAt(cell.text));
    if (cell.type == CellType::Number) return AppendNumberCell(xml, cell.number);
    xml += cell.truth ? " t=\"b\"><v>1</v></c>" : " t=\"b\"><v>0</v></c>";
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

void AppendXmlAttribute(std::string& xml, std::u16string_view text) {
    for (std::size_t index = 0; index < text.size();) {
        const auto* const markup = std::find_if(text.begin() + index, text.end(), IsMarkup);
        const auto end = static_cast<std::size_t>(markup - text.begin());
        AppendUtf8(xml, text.substr(index, end - index));
        if (end < text.size()) AppendMarkup(xml, text[end]);
        index = end + 1;
    }
}

SheetXml::SheetXml(Worksheet& worksheet) : begin_(worksheet.Cells().Begin()), end_(worksheet.Cells().End()) {
    std::for_each(begin_, end_, RefuseUnwritable);
    for (MakePiece(); !piece_.empty(); MakePiece()) size_ += piece_.size();
    Rewind();
}

void SheetXml::Rewind() {
    next_ = nullptr;
    row_ = 0;
    isDone_ = false;
    piece_.clear();
    taken_ = 0;
}

std::size_t SheetXml::Read(char* bytes, std::size_t capacity) {
    if (taken_ == piece_.size()) MakePiece();
    const std::size_t count = std::min(capacity, piece_.size() - taken_);
    std::memcpy(bytes, piece_.data() + taken_, count);
    taken_ += count;
    return count;
}

void SheetXml::MakePiece() {
    piece_.clear();
    taken_ = 0;
    if (isDone_) return;
    if (next_ == nullptr) {
        next_ = begin_;
        piece_ += kHead;
    }
    for (; next_ != end_ && piece_.size() < kPieceSize; ++next_) {
        if (next_->row != row_) {
            CloseRow();
            OpenRow(next_->row);
        }
        AppendCell(piece_, *next_);
    }
    if (next_ != end_) return;
    CloseRow();
    piece_ += kTail;
    isDone_ = true;
}

void SheetXml::OpenRow(std::uint32_t row) {
    char digits[16];
    const std::to_chars_result result = std::to_chars(std::begin(digits), std::end(digits), row);
    piece_ += "<row r=\"";
    piece_.append(digits, result.ptr);
    piece_ += "\">";
    row_ = row;
}

void SheetXml::CloseRow() {
    if (row_ != 0) piece_ += "</row>";
    row_ = 0;
}

}  // namespace NWorkbook
