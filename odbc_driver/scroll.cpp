#include "odbc_driver/scroll.h"

#include <algorithm>

#include "odbc_driver/diagnostics.h"

namespace NOdbcDriver {

Scrolled Scroll(const CursorPosition& from, SQLSMALLINT direction, SQLLEN offset, SQLULEN size) {
    const SQLLEN behind = from.lastRow + 1;
    // More than all rows are as good as this many, and can be added.
    const SQLLEN most = behind + 1;
    const auto rows = static_cast<SQLLEN>(std::min(size, static_cast<SQLULEN>(most)));
    offset = std::clamp(offset, -most, most);
    const auto move = [=](SQLLEN start, SQLLEN distance) -> Scrolled {
        const SQLLEN to = std::min(start + distance, behind);
        if (to >= 1) return {to};
        const bool isCut = start > 1 && -distance <= rows;
        return {isCut ? 1 : 0, isCut};
    };
    switch (direction) {
        case SQL_FETCH_NEXT:
            return move(from.firstRow, from.firstRow == 0 ? 1 : from.rows);
        case SQL_FETCH_PRIOR:
            return move(from.firstRow, -rows);
        case SQL_FETCH_RELATIVE:
            return move(from.firstRow, offset);
        case SQL_FETCH_ABSOLUTE:
            return move(offset < 0 ? behind : 0, offset);
        case SQL_FETCH_FIRST:
            return {1};
        case SQL_FETCH_LAST:
            return {std::max(behind - rows, SQLLEN{1})};
        default:
            throw OdbcError(u"HY106", u"The cursor does not support this direction.");
    }
}

}  // namespace NOdbcDriver
