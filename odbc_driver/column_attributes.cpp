#include "odbc_driver/column_attributes.h"

#include "odbc_driver/diagnostics.h"

namespace NOdbcDriver {

namespace {

constexpr SQLULEN kSmallIntDigits = 5;
constexpr SQLULEN kIntegerDigits = 10;

bool IsText(const Result& result, std::size_t column) { return result.ColumnType(column) == SQL_WVARCHAR; }

std::u16string_view TypeName(SQLSMALLINT type) {
    if (type == SQL_WVARCHAR) return kTextTypeName;
    return type == SQL_SMALLINT ? u"SMALLINT" : u"INTEGER";
}

// A number is shown with its sign.
SQLLEN DisplaySize(Result& result, std::size_t column) {
    if (IsText(result, column)) return static_cast<SQLLEN>(result.WidthOf(column));
    return static_cast<SQLLEN>(ColumnSize(result, column) + 1);
}

std::optional<std::u16string_view> GetText(const Result& result, std::size_t column, SQLSMALLINT attribute) {
    switch (attribute) {
        case SQL_DESC_NAME:
        case SQL_DESC_LABEL:
        case SQL_COLUMN_NAME:
        case SQL_DESC_BASE_COLUMN_NAME:
            return result.ColumnName(column);
        case SQL_DESC_TABLE_NAME:
        case SQL_DESC_BASE_TABLE_NAME:
            return result.TableName();
        case SQL_DESC_CATALOG_NAME:
        case SQL_DESC_SCHEMA_NAME:
            return u"";
        case SQL_DESC_TYPE_NAME:
        case SQL_DESC_LOCAL_TYPE_NAME:
            return TypeName(result.ColumnType(column));
        case SQL_DESC_LITERAL_PREFIX:
        case SQL_DESC_LITERAL_SUFFIX:
            return IsText(result, column) ? u"'" : u"";
        default:
            return std::nullopt;
    }
}

SQLLEN GetNumber(Result& result, std::size_t column, SQLSMALLINT attribute) {
    const bool isText = IsText(result, column);
    switch (attribute) {
        case SQL_DESC_TYPE:
        case SQL_DESC_CONCISE_TYPE:
            return result.ColumnType(column);
        case SQL_DESC_LENGTH:
        case SQL_DESC_PRECISION:
        case SQL_COLUMN_LENGTH:
        case SQL_COLUMN_PRECISION:
            return static_cast<SQLLEN>(ColumnSize(result, column));
        case SQL_DESC_OCTET_LENGTH:
            return OctetLength(result, column);
        case SQL_DESC_DISPLAY_SIZE:
            return DisplaySize(result, column);
        case SQL_DESC_NULLABLE:
        case SQL_COLUMN_NULLABLE:
            return SQL_NULLABLE;
        case SQL_DESC_CASE_SENSITIVE:
        case SQL_DESC_UNSIGNED:
            return isText ? SQL_TRUE : SQL_FALSE;
        case SQL_DESC_NUM_PREC_RADIX:
            return isText ? 0 : 10;
        case SQL_DESC_UNNAMED:     // 0 is SQL_NAMED
        case SQL_DESC_SEARCHABLE:  // SQL_PRED_NONE
        case SQL_DESC_UPDATABLE:   // SQL_ATTR_READONLY
        case SQL_DESC_AUTO_UNIQUE_VALUE:
        case SQL_DESC_FIXED_PREC_SCALE:
        case SQL_DESC_ROWVER:
        case SQL_DESC_SCALE:
        case SQL_COLUMN_SCALE:
        case SQL_DESC_DATETIME_INTERVAL_CODE:
        case SQL_DESC_DATETIME_INTERVAL_PRECISION:
            return 0;
        default:
            throw OdbcError(u"HY091", u"A column has no attribute of this number.");
    }
}

}  // namespace

SQLULEN ColumnSize(Result& result, std::size_t column) {
    constexpr std::size_t kLongestShort = 255;
    if (!IsText(result, column)) {
        return result.ColumnType(column) == SQL_SMALLINT ? kSmallIntDigits : kIntegerDigits;
    }
    const std::size_t width = result.WidthOf(column);
    return width > kLongestShort ? width + 1 : width;
}

SQLLEN OctetLength(Result& result, std::size_t column) {
    if (IsText(result, column)) return static_cast<SQLLEN>(ColumnSize(result, column) * sizeof(char16_t));
    return result.ColumnType(column) == SQL_SMALLINT ? sizeof(SQLSMALLINT) : sizeof(SQLINTEGER);
}

SQLSMALLINT DefaultCType(SQLSMALLINT columnType) {
    if (columnType == SQL_WVARCHAR) return SQL_C_WCHAR;
    return columnType == SQL_SMALLINT ? SQL_C_SSHORT : SQL_C_SLONG;
}

std::variant<SQLLEN, std::u16string_view> GetColumnAttribute(Result& result, std::size_t column,
                                                             SQLSMALLINT attribute) {
    if (const auto text = GetText(result, column, attribute)) return *text;
    return GetNumber(result, column, attribute);
}

}  // namespace NOdbcDriver
