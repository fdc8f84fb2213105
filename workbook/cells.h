// The cells of one worksheet, as many as hold something.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/array.h"
#include "workbook/text_store.h"

namespace NWorkbook {

// A worksheet's edges, as spreadsheet programs have them: A1 to XFD1048576. Rows and columns count from 1.
inline constexpr std::uint32_t kLastRow = 1'048'576;
inline constexpr std::uint16_t kLastColumn = 16'384;

enum class CellType : std::uint8_t { Nothing, Number, Text, Bool, Error };

// The errors that a cell can show, by the numbers that spreadsheet programs give them to automation.
enum class CellError : std::uint16_t {
    Null = 2000,
    DivisionByZero = 2007,
    Value = 2015,
    Reference = 2023,
    Name = 2029,
    Number = 2036,
    NotAvailable = 2042,
    GettingData = 2043,
};

struct Cell {
    std::uint32_t row;
    std::uint16_t column;
    CellType type;
    union {
        double number;
        TextPlace text;
        bool truth;
        CellError error;
    };
};

// What a file says of a cell beyond its value.
enum class CellNote : std::uint8_t {
    ShowsDate,       // a number that is shown as a date or a time
    UnsavedFormula,  // an empty cell with a formula, whose result was not saved
};

struct NotedCell {
    std::uint32_t row;
    std::uint16_t column;
    CellNote note;
};

// Sorted by row, then by column, when it is read; filled in any order.
class CellTable {
  public:
    // More cells than the largest table whose document can be written has.
    static constexpr std::size_t kMostCells = 50'000'000;

    // Of several cells in one place the last one counts; one of type Nothing empties its place. Throws
    // WorkbookError when there are too many.
    void Add(const Cell& cell);

    // Throws as Add does.
    void Note(const NotedCell& cell);
    // In order.
    [[nodiscard]] const std::vector<NotedCell>& Notes();

    // The cells in order; pointers are valid until the next Add.
    [[nodiscard]] const Cell* Begin();
    [[nodiscard]] const Cell* End();
    // The first cell that is not before this place.
    [[nodiscard]] const Cell* From(std::uint32_t row, std::uint16_t column);

  private:
    void Sort();

    NPlatform::Array<Cell> cells_;
    std::vector<NotedCell> notes_;
    std::size_t size_ = 0;
    std::size_t sorted_ = 0;  // as many at the front are in order
    std::size_t before_ = 0;  // the last cell before the place that was looked for last
};

}  // namespace NWorkbook
