#include "odbc_driver/result.h"

#include <algorithm>

namespace NOdbcDriver {

namespace {

// A surrogate without the other one becomes U+FFFD, which has three bytes.
std::size_t Utf8Size(std::u16string_view text) {
    std::size_t size = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char16_t unit = text[at];
        const bool beginsPair =
            (unit & 0xFC00U) == 0xD800 && at + 1 < text.size() && (text[at + 1] & 0xFC00U) == 0xDC00;
        if (beginsPair) {
            size += 4;
            ++at;
        } else {
            size += unit < 0x80 ? 1 : unit < 0x800 ? 2 : 3;
        }
    }
    return size;
}

}  // namespace

std::size_t Result::WidthOf(std::size_t column) {
    widths_.resize(ColumnCount());
    std::size_t& known = widths_[column];
    if (known != 0) return known;
    std::size_t widest = 1;
    NWorkbook::NumberText scratch;
    const std::size_t rowCount = RowCount();
    for (std::size_t row = 0; row < rowCount; ++row) {
        widest = std::max(widest, Utf8Size(Value(row, column, scratch).value_or(std::u16string_view())));
    }
    return known = widest;
}

}  // namespace NOdbcDriver
