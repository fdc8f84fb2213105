// Which cells show their number as a date or a time.
#pragma once

#include <string_view>
#include <vector>

#include "workbook/xlsx/package.h"

namespace NWorkbook::NXlsx {

class NumberFormats {
  public:
    // Of a part that is missing or damaged there are none: no value depends on them.
    NumberFormats(Package& package, std::string_view part);

    // `style`: the index that a cell has.
    [[nodiscard]] bool ShowsDate(std::size_t style) const {
        return style < showsDate_.size() && showsDate_[style];
    }

  private:
    class Reader;

    std::vector<bool> showsDate_;  // by style
};

}  // namespace NWorkbook::NXlsx
