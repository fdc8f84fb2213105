#include "workbook/tables.h"

#include "workbook/column_names.h"
#include "workbook/file_formats.h"
#include "workbook/sheet_rows.h"

namespace NWorkbook {

namespace {

constexpr std::size_t kMostUnitsOfColumnNames = std::size_t{1} << 24;
constexpr CellBlock kWholeWorksheet{1, kLastRow, 1, kLastColumn};

// Nothing for an empty cell, which is NULL, and for an error.
std::optional<std::u16string_view> TextOf(const Cell* cell, NumberText& scratch) {
    switch (cell == nullptr ? CellType::Nothing : cell->type) {
        case CellType::Number:
            return WriteNumber(cell->number, scratch);
        case CellType::Text:
            return TextAt(cell->text);
        case CellType::Bool:
            return cell->truth ? u"TRUE" : u"FALSE";
        default:
            return std::nullopt;
    }
}

[[noreturn]] void Refuse(std::u16string_view table, const CellBlock& block, std::u16string_view what) {
    throw WorkbookError(u"Table '" + std::u16string(table) + u"', from " +
                        CellName(block.firstRow, block.firstColumn) + u" to " +
                        CellName(block.lastRow, block.lastColumn) + u", " + std::u16string(what));
}

bool IsOpenEnded(const CellBlock& block) {
    return block.Rows() == kLastRow || block.Columns() == kLastColumn;
}

}  // namespace

Table::Table(std::u16string_view name, std::shared_ptr<const SheetRows> rows, const CellBlock& block)
    : rows_(std::move(rows)), block_(block) {
    if (block.Cells() > CellTable::kMostCells) {
        Refuse(name, block, u"has more than 50 million cells, empty ones included.");
    }
    std::vector<std::u16string> texts(block.Columns());
    std::size_t unitsLeft = kMostUnitsOfColumnNames;
    NumberText scratch;
    for (std::size_t column = 0; column < texts.size(); ++column) {
        const Cell* const cell =
            rows_->Find(block.firstRow, block.firstColumn + static_cast<std::uint32_t>(column));
        const std::u16string_view text = TextOf(cell, scratch).value_or(u"");
        if (text.size() > unitsLeft) Refuse(name, block, u"has names of columns that are too long.");
        unitsLeft -= text.size();
        texts[column] = text;
    }
    columnNames_ = NameColumns(std::move(texts));
}

std::optional<std::u16string_view> Table::Value(std::size_t row, std::size_t column,
                                                NumberText& scratch) const {
    return TextOf(rows_->Find(block_.firstRow + 1 + static_cast<std::uint32_t>(row),
                              block_.firstColumn + static_cast<std::uint32_t>(column)),
                  scratch);
}

TableBook::TableBook(std::u16string_view path)
    : workbook_(OpenWorkbook(path)), sheets_(workbook_->worksheets.size()) {
    for (DefinedName& defined : workbook_->readDefinedNames()) {
        Add(std::move(defined.name), false, defined.worksheet, defined.block);
    }
    for (std::size_t index = 0; index < workbook_->worksheets.size(); ++index) {
        Add(workbook_->worksheets[index]->Name() + u'$', true, index, kWholeWorksheet);
    }
}

TableBook::~TableBook() = default;

void TableBook::Add(std::u16string name, bool isWorksheet, std::size_t worksheet, const CellBlock& block) {
    if (!index_.Add(name, names_.size())) return;
    names_.push_back({std::move(name), isWorksheet});
    places_.push_back({worksheet, block});
}

std::optional<std::size_t> TableBook::IndexOf(std::u16string_view name) const {
    const std::optional<std::size_t> found = index_.Find(name);
    return found ? found : index_.Find(std::u16string(name) + u'$');
}

std::shared_ptr<const Table> TableBook::Find(std::u16string_view name) {
    const std::optional<std::size_t> found = IndexOf(name);
    if (!found) return nullptr;
    const auto& [worksheet, block] = places_[*found];
    const std::shared_ptr<const SheetRows>& rows = RowsOf(worksheet);
    return std::make_shared<Table>(names_[*found].name, rows,
                                   IsOpenEnded(block) ? rows->Filled(block) : block);
}

const std::shared_ptr<const SheetRows>& TableBook::RowsOf(std::size_t worksheet) {
    Sheet& sheet = sheets_[worksheet];
    if (sheet.failure) throw WorkbookError(*sheet.failure);
    if (sheet.rows != nullptr) return sheet.rows;
    try {
        sheet.rows = std::make_shared<SheetRows>(workbook_->texts, workbook_->worksheets[worksheet]);
    } catch (const WorkbookError& error) {
        sheet.failure = error;
        throw;
    }
    return sheet.rows;
}

}  // namespace NWorkbook
