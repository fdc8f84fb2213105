// What a statement gives: columns, and rows of texts.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "odbc_driver/odbc.h"
#include "workbook/tables.h"

namespace NOdbcDriver {

// Rows and columns count from 0.
class Result {
  public:
    virtual ~Result() = default;

    [[nodiscard]] virtual std::size_t ColumnCount() const = 0;
    [[nodiscard]] virtual std::size_t RowCount() const = 0;
    [[nodiscard]] virtual std::u16string_view ColumnName(std::size_t column) const = 0;
    // SQL_WVARCHAR, SQL_INTEGER or SQL_SMALLINT.
    [[nodiscard]] virtual SQLSMALLINT ColumnType(std::size_t column) const = 0;
    // Of the table that the columns belong to; empty if they belong to none.
    [[nodiscard]] virtual std::u16string_view TableName() const { return {}; }
    // Nothing for NULL. Valid as long as the result lives and `scratch` is not written again.
    [[nodiscard]] virtual std::optional<std::u16string_view> Value(std::size_t row, std::size_t column,
                                                                   NWorkbook::NumberText& scratch) const = 0;

    // The bytes in UTF-8 of the longest value, at least 1. Looks at all values of the column when it is first
    // asked.
    std::size_t WidthOf(std::size_t column);

  private:
    std::vector<std::size_t> widths_;  // 0: not known yet
};

// The records of a table, in all of its columns or in some.
class TableResult : public Result {
  public:
    // `columns`: their names, case of ASCII letters aside; none for all. Throws OdbcError (42S22) for one
    // that the table does not have.
    TableResult(std::u16string name, std::shared_ptr<const NWorkbook::Table> table,
                const std::vector<std::u16string>& columns = {});

    [[nodiscard]] std::size_t ColumnCount() const override { return columns_.size(); }
    [[nodiscard]] std::size_t RowCount() const override { return table_->RowCount(); }
    [[nodiscard]] std::u16string_view ColumnName(std::size_t column) const override {
        return table_->ColumnName(columns_[column]);
    }
    [[nodiscard]] SQLSMALLINT ColumnType(std::size_t) const override { return SQL_WVARCHAR; }
    [[nodiscard]] std::u16string_view TableName() const override { return name_; }
    [[nodiscard]] std::optional<std::u16string_view> Value(std::size_t row, std::size_t column,
                                                           NWorkbook::NumberText& scratch) const override {
        return table_->Value(row, columns_[column], scratch);
    }

  private:
    std::u16string name_;
    std::shared_ptr<const NWorkbook::Table> table_;
    std::vector<std::size_t> columns_;  // of the table
};

// Rows made on the spot, as catalogue calls give them.
class RowsResult : public Result {
  public:
    struct Column {
        std::u16string_view name;  // in static storage
        SQLSMALLINT type = SQL_WVARCHAR;
    };
    using Columns = std::vector<Column>;
    using Row = std::vector<std::optional<std::u16string>>;

    // Each row has a value for each column, or less: the rest is NULL.
    explicit RowsResult(Columns columns, std::vector<Row> rows = {})
        : columns_(std::move(columns)), rows_(std::move(rows)) {}

    [[nodiscard]] std::size_t ColumnCount() const override { return columns_.size(); }
    [[nodiscard]] std::size_t RowCount() const override { return rows_.size(); }
    [[nodiscard]] std::u16string_view ColumnName(std::size_t column) const override {
        return columns_[column].name;
    }
    [[nodiscard]] SQLSMALLINT ColumnType(std::size_t column) const override { return columns_[column].type; }
    [[nodiscard]] std::optional<std::u16string_view> Value(std::size_t row, std::size_t column,
                                                           NWorkbook::NumberText&) const override {
        if (column >= rows_[row].size()) return std::nullopt;
        return rows_[row][column];
    }

  private:
    Columns columns_;
    std::vector<Row> rows_;
};

}  // namespace NOdbcDriver
