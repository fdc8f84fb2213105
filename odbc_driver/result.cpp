#include "odbc_driver/result.h"

#include <algorithm>

namespace NOdbcDriver {

std::size_t Result::Width(std::size_t column) {
    widths_.resize(ColumnCount());
    std::size_t& width = widths_[column];
    if (width != 0) return width;
    std::size_t widest = 1;
    NWorkbook::NumberText scratch;
    const std::size_t rowCount = RowCount();
    for (std::size_t row = 0; row < rowCount; ++row) {
        widest = std::max(widest, Value(row, column, scratch).value_or(std::u16string_view()).size());
    }
    return width = widest;
}

}  // namespace NOdbcDriver
