// A workbook in memory.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "workbook/cells.h"
#include "workbook/error.h"
#include "workbook/range_address.h"
#include "workbook/text_store.h"

namespace NWorkbook {

// As many as automation can count: indexes of worksheets have 16 bits.
inline constexpr std::size_t kMostWorksheets = 32'767;

// So many of them are read: a workbook of more is refused.
inline constexpr std::size_t kMostDefinedNames = 65'536;

class Worksheet {
  public:
    using Read = std::function<void(CellTable& cells)>;

    // `read` fills in the cells when they are first asked for; without it there are none.
    explicit Worksheet(std::u16string name, Read read = {})
        : name_(std::move(name)), read_(std::move(read)) {}

    [[nodiscard]] const std::u16string& Name() const { return name_; }
    void Rename(std::u16string name) { name_ = std::move(name); }

    // Throws WorkbookError when they cannot be read, and then again each time.
    CellTable& Cells();

  private:
    std::u16string name_;
    Read read_;
    CellTable cells_;
};

// A defined name of a block of a worksheet's cells.
struct DefinedName {
    std::u16string name;
    std::size_t worksheet;  // its index
    CellBlock block;        // whole columns or rows reach from edge to edge
};

struct Workbook {
    // Of the cells of all worksheets; who keeps views of them keeps the store.
    std::shared_ptr<TextStore> texts = std::make_shared<TextStore>();
    // In workbook order, hidden ones too. None if the file has none, only charts for instance.
    std::vector<std::shared_ptr<Worksheet>> worksheets;
    // The file that it was opened from or saved to last, as a full path; empty for a new one.
    std::u16string path;
    // Whether it is new or this engine wrote its file. Files of other programs hold more than worksheets of
    // plain cells, and would lose it if they were saved from here.
    bool isOwn = true;
    // The names of the whole workbook that stand for one block of cells of one worksheet, then such names of
    // single worksheets, each in workbook order; a name may come again. Hidden names and those that programs
    // make for filters and print areas are left out. Not set for a new workbook. Throws WorkbookError.
    std::function<std::vector<DefinedName>()> readDefinedNames;
};

}  // namespace NWorkbook
