// A connection: one workbook, and the statements on it.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "odbc_driver/handle.h"
#include "workbook/tables.h"

namespace NOdbcDriver {

class Statement;

class Connection : public Handle {
  public:
    static constexpr HandleKind kKind = HandleKind::Connection;

    Connection();
    ~Connection();

    // Opens the workbook that the connect string names by DBQ, or by a data source (DSN) of the configuration
    // that has a DBQ. Other keywords are for others and count for nothing. Returns the connect string that
    // would name the workbook again. Throws OdbcError: 08001 where no workbook is named or it cannot be
    // opened, 08002 where one is open.
    std::u16string Connect(std::u16string_view connectString);
    // The statements are gone as well.
    void Disconnect();
    [[nodiscard]] bool IsConnected() const { return book_ != nullptr; }

    [[nodiscard]] const std::u16string& DataSource() const { return dataSource_; }
    [[nodiscard]] const std::u16string& WorkbookPath() const { return path_; }

    // The workbook's tables. Throws OdbcError (08003) without a connection.
    NWorkbook::TableBook& Book();
    // Throws OdbcError: 42S02 if there is no such table, HY000 if it cannot be read.
    std::shared_ptr<const NWorkbook::Table> FindTable(std::u16string_view name);

    Statement& AddStatement();
    void RemoveStatement(const Statement& statement);

    // SQL_ATTR_...; those that are numbers. Throws OdbcError (HYC00) for one there is not.
    void SetAttribute(SQLINTEGER attribute, SQLPOINTER value);
    void GetAttribute(SQLINTEGER attribute, SQLPOINTER value) const;

    // Attributes that do nothing, since nothing is ever written, but are remembered.
    SQLUINTEGER accessMode = SQL_MODE_READ_ONLY;
    SQLUINTEGER autocommit = SQL_AUTOCOMMIT_ON;
    SQLUINTEGER loginTimeout = 0;
    SQLUINTEGER connectionTimeout = 0;
    // Of new statements.
    SQLUINTEGER metadataId = SQL_FALSE;
    SQLUINTEGER cursorType = SQL_CURSOR_FORWARD_ONLY;

  private:
    std::mutex ownMutex_;
    std::u16string dataSource_;
    std::u16string path_;
    std::unique_ptr<NWorkbook::TableBook> book_;
    std::vector<std::unique_ptr<Statement>> statements_;
};

}  // namespace NOdbcDriver
