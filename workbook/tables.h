// A workbook's tables, as database programs see them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbook/name_index.h"
#include "workbook/number_text.h"
#include "workbook/range_address.h"
#include "workbook/workbook.h"

namespace NWorkbook {

class SheetRows;

struct TableName {
    std::u16string name;
    bool isWorksheet;  // then the name has a '$' at its end
};

// One block of cells, whose first row names the columns. Does not change after it is made: may be read from
// several threads.
class Table {
  public:
    // Throws WorkbookError, which names the table, where the block has more than CellTable::kMostCells cells
    // or the first row more than 16 million characters.
    Table(std::u16string_view name, std::shared_ptr<const SheetRows> rows, const CellBlock& block);

    // At least 1.
    [[nodiscard]] std::size_t ColumnCount() const { return columnNames_.size(); }
    // The text of the first row's cell, as NameColumns makes it unique. Columns count from 0.
    [[nodiscard]] const std::u16string& ColumnName(std::size_t column) const { return columnNames_[column]; }
    // Of the records, without the row of names.
    [[nodiscard]] std::size_t RowCount() const { return block_.Rows() - 1; }
    // Rows count from 0, at the first record. Nothing, which is NULL, for an empty cell and for an error; a
    // text that is empty is a text. A truth value is TRUE or FALSE, a number as WriteNumber has it, a date
    // the number that the workbook keeps. Valid as long as the table lives and `scratch` is not written
    // again. Fast in any order.
    [[nodiscard]] std::optional<std::u16string_view> Value(std::size_t row, std::size_t column,
                                                           NumberText& scratch) const;

  private:
    std::shared_ptr<const SheetRows> rows_;
    CellBlock block_;
    std::vector<std::u16string> columnNames_;
};

// The tables of a workbook's file. A table is
// - a defined name that the whole workbook or one of its worksheets has and that stands for one block of
//   cells of a worksheet; hidden names, and those that programs make for filters and print areas, are left
//   out;
// - a worksheet.
// Of a worksheet, and of a name for whole columns or rows, the table is the smallest block that holds all
// that is filled there; where nothing is, it has one column, F1, and no record.
//
// To be used by one thread at a time. Reads worksheets when they are first asked for.
class TableBook {
  public:
    // Messages show the path as given. Throws WorkbookError.
    explicit TableBook(std::u16string_view path);
    ~TableBook();
    TableBook(const TableBook&) = delete;
    TableBook& operator=(const TableBook&) = delete;

    // No two the same, case of ASCII letters aside: defined names of the workbook, then those of single
    // worksheets that are no name of the workbook's, then worksheets, each in workbook order.
    [[nodiscard]] const std::vector<TableName>& Names() const { return names_; }

    // The place in Names() of the table with this name; nothing if there is none. Case of ASCII
    // letters counts for nothing; a worksheet is also found without its '$', where there is no defined name
    // of this kind.
    [[nodiscard]] std::optional<std::size_t> IndexOf(std::u16string_view name) const;
    // The table with this name; NULL if there is none. Outlives the book. Throws WorkbookError.
    std::shared_ptr<const Table> Find(std::u16string_view name);

  private:
    void Add(std::u16string name, bool isWorksheet, std::size_t worksheet, const CellBlock& block);
    const std::shared_ptr<const SheetRows>& RowsOf(std::size_t worksheet);

    // What was read, or what was in the way.
    struct Sheet {
        std::shared_ptr<const SheetRows> rows;
        std::optional<WorkbookError> failure;
    };
    struct Place {
        std::size_t worksheet;
        CellBlock block;
    };

    std::unique_ptr<Workbook> workbook_;
    std::vector<TableName> names_;
    std::vector<Place> places_;  // of the names
    NameIndex index_;            // of the names
    std::vector<Sheet> sheets_;  // of the workbook
};

}  // namespace NWorkbook
