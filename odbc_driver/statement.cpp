#include "odbc_driver/statement.h"

#include <algorithm>

#include "odbc_driver/application_text.h"
#include "odbc_driver/column_attributes.h"
#include "odbc_driver/connection.h"
#include "odbc_driver/scroll.h"
#include "odbc_driver/sql.h"
#include "platform/format.h"

namespace NOdbcDriver {

namespace {

SQLSMALLINT ResolveType(SQLSMALLINT type, const Result& result, std::size_t column) {
    return type == SQL_C_DEFAULT ? DefaultCType(result.ColumnType(column)) : type;
}

// The place of a value counts from 1 in the application's terms.
void TellLoss(Transferred transferred, Diagnostics& diagnostics, std::size_t rowOfSet, std::size_t column) {
    const auto row = static_cast<SQLLEN>(rowOfSet + 1);
    const auto number = static_cast<SQLINTEGER>(column + 1);
    if (transferred == Transferred::Cut) {
        diagnostics.Add({u"01004", u"The value is longer than its buffer; its end is missing.", row, number});
    } else if (transferred == Transferred::WithoutFraction) {
        diagnostics.Add({u"01S07", u"The number has lost its fraction.", row, number});
    }
}

// A static cursor does what the others do, as far as nothing changes the workbook.
SQLULEN NearestCursorType(SQLULEN type) {
    return type == SQL_CURSOR_FORWARD_ONLY ? SQL_CURSOR_FORWARD_ONLY : SQL_CURSOR_STATIC;
}

}  // namespace

Statement::Statement(Connection& connection)
    : Handle(kKind, connection.Mutex()),
      applicationRows(connection.Mutex()),
      implementationRows(connection.Mutex(), &result_),
      applicationParameters(connection.Mutex()),
      implementationParameters(connection.Mutex()),
      metadataId(connection.metadataId),
      connection_(connection),
      cursorType_(NearestCursorType(connection.cursorType)) {}

void Statement::SetCursorType(SQLULEN type) {
    RequireClosed();
    cursorType_ = NearestCursorType(type);
    if (type != cursorType_) TellReplaced();
}

void Statement::RequireClosed() const {
    if (isOpen_) throw OdbcError(u"24000", u"The statement's cursor is still open.");
}

std::unique_ptr<Result> Statement::Select(std::u16string_view sql) {
    RequireClosed();
    NOdbcDriver::Select select = ParseSelect(sql);
    std::shared_ptr<const NWorkbook::Table> table = connection_.FindTable(select.table);
    return std::make_unique<TableResult>(std::move(select.table), std::move(table), select.columns);
}

void Statement::Prepare(std::u16string_view sql) {
    result_ = Select(sql);
    isPrepared_ = true;
}

void Statement::Execute() {
    RequireClosed();
    if (!isPrepared_) throw OdbcError(u"HY010", u"No statement is prepared.");
    OpenCursor();
}

void Statement::ExecuteDirectly(std::u16string_view sql) { Open(Select(sql)); }

void Statement::Open(std::unique_ptr<Result> result) {
    RequireClosed();
    result_ = std::move(result);
    isPrepared_ = false;
    OpenCursor();
}

void Statement::OpenCursor() {
    isOpen_ = true;
    firstRow_ = 0;
    fetchedRows_ = 0;
}

void Statement::Close() {
    isOpen_ = false;
    fetchedRows_ = 0;
    if (!isPrepared_) result_.reset();
}

Result& Statement::RequireResult() {
    if (result_ == nullptr) throw OdbcError(u"HY010", u"No statement is prepared or executed.");
    return *result_;
}

std::size_t Statement::ColumnIndex(SQLUSMALLINT column) {
    const std::size_t count = RequireResult().ColumnCount();
    if (column == 0 || column > count) {
        throw OdbcError(u"07009",
                        NPlatform::Format(128, u"There is no column %d: there are %d.",
                                          {std::int32_t{column}, static_cast<std::int32_t>(count)}));
    }
    return column - 1U;
}

std::size_t Statement::RowCount() {
    const std::size_t count = RequireResult().RowCount();
    return maxRows == 0 ? count : std::min<std::size_t>(count, maxRows);
}

std::size_t Statement::CurrentRow() const { return static_cast<std::size_t>(firstRow_) - 1 + rowOfSet_; }

SQLRETURN Statement::Fetch(const RowSet& rowSet, SQLSMALLINT direction, SQLLEN offset) {
    if (!isOpen_) throw OdbcError(u"24000", u"No cursor is open.");
    if (direction != SQL_FETCH_NEXT && IsForwardOnly()) {
        throw OdbcError(u"HY106", u"This cursor fetches the next rows only; a static one fetches any.");
    }
    const auto last = static_cast<SQLLEN>(RowCount());
    const Scrolled scrolled =
        Scroll({firstRow_, static_cast<SQLLEN>(fetchedRows_), last}, direction, offset, rowSet.size);
    if (scrolled.isCut) {
        diagnostics.Add({u"01S06", u"There are fewer rows before the row set: it begins with the first."});
    }
    firstRow_ = scrolled.firstRow;
    const SQLLEN left = firstRow_ == 0 ? 0 : last + 1 - firstRow_;
    const std::size_t count = std::min<std::size_t>(rowSet.size, static_cast<std::size_t>(left));
    fetchedRows_ = count;
    rowOfSet_ = 0;
    piecesColumn_ = 0;
    PutNumber(static_cast<SQLULEN>(count), rowSet.fetched);
    std::size_t failures = 0;
    for (std::size_t row = 0; row < count; ++row) {
        const SQLUSMALLINT status = FetchRow(row);
        if (status == SQL_ROW_ERROR) ++failures;
        if (rowSet.status != nullptr) rowSet.status[row] = status;
    }
    if (rowSet.status != nullptr) {
        std::fill(rowSet.status + count, rowSet.status + rowSet.size, SQLUSMALLINT{SQL_ROW_NOROW});
    }
    if (count == 0) return SQL_NO_DATA;
    return failures == count ? SQL_ERROR : SQL_SUCCESS;
}

SQLUSMALLINT Statement::FetchRow(std::size_t rowOfSet) {
    const std::vector<Binding>& bindings = applicationRows.Bindings();
    const std::size_t columnCount = std::min(bindings.size(), result_->ColumnCount());
    SQLUSMALLINT status = SQL_ROW_SUCCESS;
    for (std::size_t column = 0; column < columnCount; ++column) {
        if (!bindings[column].IsBound()) continue;
        try {
            const bool isWhole = FetchBound(column, bindings[column], rowOfSet);
            if (!isWhole && status == SQL_ROW_SUCCESS) status = SQL_ROW_SUCCESS_WITH_INFO;
        } catch (const OdbcError& error) {
            Diagnostic record = error.Record();
            record.row = static_cast<SQLLEN>(rowOfSet + 1);
            record.column = static_cast<SQLINTEGER>(column + 1);
            diagnostics.Add(std::move(record));
            status = SQL_ROW_ERROR;
        }
    }
    return status;
}

bool Statement::FetchBound(std::size_t column, const Binding& binding, std::size_t rowOfSet) {
    const SQLSMALLINT type = ResolveType(binding.type, *result_, column);
    bound_.Begin(result_->Value(CurrentRow() + rowOfSet, column, boundText_));
    const Transferred transferred = bound_.Continue(applicationRows.TargetOf(binding, type, rowOfSet));
    TellLoss(transferred, diagnostics, rowOfSet, column);
    return transferred == Transferred::Whole;
}

void Statement::SetPosition(SQLSETPOSIROW row) {
    if (!IsOnRow()) throw OdbcError(u"24000", u"The cursor is not on a row.");
    if (row == 0 || row > fetchedRows_) throw OdbcError(u"HY107", u"The row set has no row of this number.");
    rowOfSet_ = row - 1;
    piecesColumn_ = 0;
}

SQLRETURN Statement::GetData(SQLUSMALLINT column, Target target) {
    if (!IsOnRow()) throw OdbcError(u"24000", u"The cursor is not on a row.");
    const std::size_t index = ColumnIndex(column);
    if (target.type == SQL_ARD_TYPE && index < applicationRows.Bindings().size()) {
        target.type = applicationRows.Bindings()[index].type;
    }
    target.type = ResolveType(target.type, *result_, index);
    if (column != piecesColumn_ || target.type != piecesType_) {
        pieces_.Begin(result_->Value(CurrentRow(), index, piecesText_));
        piecesColumn_ = column;
        piecesType_ = target.type;
    }
    const Transferred transferred = pieces_.Continue(target);
    if (transferred == Transferred::NothingLeft) return SQL_NO_DATA;
    TellLoss(transferred, diagnostics, 0, index);
    return SQL_SUCCESS;
}

}  // namespace NOdbcDriver
