#include "odbc_driver/result.h"

#include <algorithm>

#include "odbc_driver/diagnostics.h"
#include "platform/format.h"

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

TableResult::TableResult(std::u16string name, std::shared_ptr<const NWorkbook::Table> table,
                         const std::vector<std::u16string>& columns)
    : name_(std::move(name)), table_(std::move(table)) {
    NWorkbook::NameIndex index;
    for (std::size_t column = 0; column < table_->ColumnCount(); ++column) {
        if (columns.empty()) {
            columns_.push_back(column);
        } else {
            index.Add(table_->ColumnName(column), column);
        }
    }
    for (const std::u16string& column : columns) {
        const std::optional<std::size_t> found = index.Find(column);
        if (!found) {
            throw OdbcError(u"42S22",
                            NPlatform::Format(512, u"The table %s has no column \"%s\".",
                                              {NPlatform::Cut(name_, 200), NPlatform::Cut(column, 200)}));
        }
        columns_.push_back(*found);
    }
}

}  // namespace NOdbcDriver
