#include "fuzz/workbook_check.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "fuzz/memory_file.h"
#include "workbook/file_formats.h"

namespace NFuzz {

namespace {

using namespace NWorkbook;

bool IsInPlace(const Cell& cell) {
    return cell.row >= 1 && cell.row <= kLastRow && cell.column >= 1 && cell.column <= kLastColumn;
}

bool IsInPlace(const CellBlock& block) {
    return block.firstRow >= 1 && block.firstRow <= block.lastRow && block.lastRow <= kLastRow &&
           block.firstColumn >= 1 && block.firstColumn <= block.lastColumn && block.lastColumn <= kLastColumn;
}

bool IsBefore(const Cell& one, const Cell& other) {
    return one.row != other.row ? one.row < other.row : one.column < other.column;
}

void CheckCells(CellTable& cells) {
    const Cell* const begin = cells.Begin();
    const Cell* const end = cells.End();
    for (const Cell* cell = begin; cell != end; ++cell) {
        Require(IsInPlace(*cell), "a cell lies on the worksheet");
        Require(cell == begin || IsBefore(cell[-1], *cell), "cells are in order, one in a place");
        Require(cell->type != CellType::Nothing, "a cell that is kept holds something");
        if (cell->type == CellType::Number) Require(std::isfinite(cell->number), "a number is finite");
        if (cell->type == CellType::Text)
            Require(TextAt(cell->text).data()[TextAt(cell->text).size()] == 0, "a NUL ends a text");
    }
    if (begin != end)
        Require(cells.From(end[-1].row, end[-1].column) == end - 1, "a cell is found at its place");
}

bool AreSame(const Cell& one, const Cell& other) {
    if (one.row != other.row || one.column != other.column || one.type != other.type) return false;
    switch (one.type) {
        case CellType::Number:
            return one.number == other.number;
        case CellType::Text:
            return TextAt(one.text) == TextAt(other.text);
        case CellType::Bool:
            return one.truth == other.truth;
        default:
            return one.error == other.error;
    }
}

bool AreSame(Worksheet& one, Worksheet& other) {
    return one.Name() == other.Name() &&
           std::equal(one.Cells().Begin(), one.Cells().End(), other.Cells().Begin(), other.Cells().End(),
                      [](const Cell& cell, const Cell& second) { return AreSame(cell, second); });
}

void CheckIsKept(Workbook& workbook) {
    static const std::u16string kPath =
        std::filesystem::path("/dev/shm/xls2tki-fuzz-" + std::to_string(getpid()) + ".xlsx").u16string();
    SaveWorkbook(workbook, kPath);
    const auto copy = OpenWorkbook(kPath);
    std::filesystem::remove(kPath);
    Require(std::equal(workbook.worksheets.begin(), workbook.worksheets.end(), copy->worksheets.begin(),
                       copy->worksheets.end(),
                       [](const auto& one, const auto& other) { return AreSame(*one, *other); }),
            "a workbook that is saved keeps its cells");
}

void CheckAll(Workbook& workbook) {
    Require(workbook.worksheets.size() <= kMostWorksheets, "there are not too many worksheets");
    std::size_t count = 0;
    for (const auto& worksheet : workbook.worksheets) {
        CheckCells(worksheet->Cells());
        count += static_cast<std::size_t>(worksheet->Cells().End() - worksheet->Cells().Begin());
    }
    for (const DefinedName& name : workbook.readDefinedNames()) {
        Require(name.worksheet < workbook.worksheets.size(), "a name's worksheet is one of the workbook's");
        Require(IsInPlace(name.block), "a name's block lies on the worksheet");
    }
    constexpr std::size_t kFew = 1000;
    workbook.isOwn = true;
    if (count < kFew) CheckIsKept(workbook);
}

}  // namespace

void CheckWorkbook(std::string_view bytes) {
    const MemoryFile file(bytes);
    try {
        CheckAll(*OpenWorkbook(file.Path()));
    } catch (const WorkbookError& error) {
        Require(!error.Message().empty(), "a refusal has a message");
    }
}

}  // namespace NFuzz
