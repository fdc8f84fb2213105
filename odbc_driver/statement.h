// A statement: a query, and the cursor on its result.
#pragma once

#include <memory>
#include <string_view>

#include "odbc_driver/descriptor.h"
#include "odbc_driver/result.h"
#include "odbc_driver/value_transfer.h"

namespace NOdbcDriver {

class Connection;

// How many rows a fetch takes at once and where it reports on them. The addresses may be NULL.
struct RowSet {
    SQLULEN size;
    SQLULEN* fetched;
    SQLUSMALLINT* status;
};

class Statement : public Handle {
  public:
    static constexpr HandleKind kKind = HandleKind::Statement;

    explicit Statement(Connection& connection);

    [[nodiscard]] Connection& Owner() const { return connection_; }

    // Each throws OdbcError (24000) while a cursor is open.
    void Prepare(std::u16string_view sql);
    void Execute();  // HY010 if nothing is prepared
    void ExecuteDirectly(std::u16string_view sql);
    void Open(std::unique_ptr<Result> result);

    // Closes the cursor, if one is open. What is prepared stays.
    void Close();
    [[nodiscard]] bool IsOpen() const { return isOpen_; }

    // Of the open cursor, or of what is prepared. Throws OdbcError (HY010) if there is neither.
    Result& RequireResult();
    // The index, from 0, of a column that the application counts from 1. Throws OdbcError (07009).
    std::size_t ColumnIndex(SQLUSMALLINT column);

    // Moves to other rows and hands out the values of bound columns. `direction` is SQL_FETCH_..., and
    // `offset` counts rows for SQL_FETCH_ABSOLUTE and SQL_FETCH_RELATIVE. Throws OdbcError: 24000, and HY106
    // for a direction that the cursor does not have.
    SQLRETURN Fetch(const RowSet& rowSet, SQLSMALLINT direction = SQL_FETCH_NEXT, SQLLEN offset = 0);
    // Makes the row of the row set, which counts from 1, the current one; a fetch does so with the first.
    // Throws OdbcError: 24000, HY107.
    void SetPosition(SQLSETPOSIROW row);
    // The next piece of a value in the current row. Throws OdbcError.
    SQLRETURN GetData(SQLUSMALLINT column, Target target);
    // From 1; 0 if there is no current row.
    [[nodiscard]] SQLULEN RowNumber() const {
        return IsOnRow() ? static_cast<SQLULEN>(firstRow_) + rowOfSet_ : 0;
    }
    // Of the result, as many as the application wants at most. Throws OdbcError (HY010) if there is none.
    std::size_t RowCount();

    void SetAttribute(SQLINTEGER attribute, SQLPOINTER value);
    void GetAttribute(SQLINTEGER attribute, SQLPOINTER value);

    Descriptor applicationRows;
    Descriptor implementationRows;
    Descriptor applicationParameters;
    Descriptor implementationParameters;

    SQLULEN maxRows = 0;  // 0: all
    SQLULEN noScan = SQL_NOSCAN_OFF;
    SQLULEN metadataId;        // names in catalogue calls are names, not patterns
    SQLULEN extendedRows = 1;  // the row set of SQLExtendedFetch

  private:
    void RequireClosed() const;
    [[nodiscard]] bool IsForwardOnly() const { return cursorType_ == SQL_CURSOR_FORWARD_ONLY; }
    void SetCursorType(SQLULEN type);
    void TellReplaced();
    std::unique_ptr<Result> Select(std::u16string_view sql);
    void OpenCursor();
    [[nodiscard]] bool IsOnRow() const { return fetchedRows_ > 0; }
    [[nodiscard]] std::size_t CurrentRow() const;
    SQLUSMALLINT FetchRow(std::size_t rowOfSet);
    // Returns whether nothing was lost.
    bool FetchBound(std::size_t column, const Binding& binding, std::size_t rowOfSet);

    Connection& connection_;
    SQLULEN cursorType_;  // SQL_CURSOR_FORWARD_ONLY or SQL_CURSOR_STATIC
    std::unique_ptr<Result> result_;
    bool isPrepared_ = false;
    bool isOpen_ = false;
    SQLLEN firstRow_ =
        0;  // of the row set, from 1; 0 before the first row, and RowCount() + 1 after the last
    std::size_t fetchedRows_ = 0;  // in the row set
    std::size_t rowOfSet_ = 0;     // the current one, from 0

    // What is handed out in pieces, and of which column and as which type; 0: nothing.
    ValueTransfer pieces_;
    NWorkbook::NumberText piecesText_{};
    SQLUSMALLINT piecesColumn_ = 0;
    SQLSMALLINT piecesType_ = 0;

    ValueTransfer bound_;
    NWorkbook::NumberText boundText_{};
};

}  // namespace NOdbcDriver
