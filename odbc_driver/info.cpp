#include "odbc_driver/info.h"

#include "odbc_driver/numbered.h"

namespace NOdbcDriver {

namespace {

struct TextAnswer {
    SQLUSMALLINT number;
    const char16_t* answer;
};

constexpr TextAnswer kTexts[] = {
    {SQL_ACCESSIBLE_PROCEDURES, u"N"},
    {SQL_ACCESSIBLE_TABLES, u"Y"},
    {SQL_CATALOG_NAME, u"N"},
    {SQL_CATALOG_NAME_SEPARATOR, u""},
    {SQL_CATALOG_TERM, u""},
    {SQL_COLLATION_SEQ, u""},
    {SQL_COLUMN_ALIAS, u"N"},
    {SQL_DATA_SOURCE_READ_ONLY, u"Y"},
    {SQL_DBMS_NAME, u"Excel workbook"},
    {SQL_DBMS_VER, u"01.00.0000"},
    {SQL_DESCRIBE_PARAMETER, u"N"},
    {SQL_DRIVER_NAME, u"libxls2tki-odbc.so"},
    {SQL_DRIVER_ODBC_VER, u"03.00"},
    {SQL_DRIVER_VER, XLS2TKI_ODBC_DRIVER_VERSION},
    {SQL_EXPRESSIONS_IN_ORDERBY, u"N"},
    {SQL_IDENTIFIER_QUOTE_CHAR, u"\""},
    {SQL_INTEGRITY, u"N"},
    {SQL_KEYWORDS, u""},
    {SQL_LIKE_ESCAPE_CLAUSE, u"N"},
    {SQL_MAX_ROW_SIZE_INCLUDES_LONG, u"Y"},
    {SQL_MULT_RESULT_SETS, u"N"},
    {SQL_MULTIPLE_ACTIVE_TXN, u"N"},
    {SQL_NEED_LONG_DATA_LEN, u"N"},
    {SQL_ORDER_BY_COLUMNS_IN_SELECT, u"N"},
    {SQL_OUTER_JOINS, u"N"},
    {SQL_PROCEDURE_TERM, u""},
    {SQL_PROCEDURES, u"N"},
    {SQL_ROW_UPDATES, u"N"},
    {SQL_SCHEMA_TERM, u""},
    {SQL_SEARCH_PATTERN_ESCAPE, u"\\"},
    {SQL_SERVER_NAME, u""},
    {SQL_SPECIAL_CHARACTERS, u"$"},
    {SQL_TABLE_TERM, u"table"},
    {SQL_USER_NAME, u""},
    {SQL_XOPEN_CLI_YEAR, u""},
};

struct SmallAnswer {
    SQLUSMALLINT number;
    SQLUSMALLINT answer;
};

// A limit of 0 is one that there is not or that is not known. Each level of conformance has parameters and
// names of cursors, which there are not.
constexpr SmallAnswer kSmallNumbers[] = {
    {SQL_ACTIVE_ENVIRONMENTS, 0},
    {SQL_CATALOG_LOCATION, 0},
    {SQL_CONCAT_NULL_BEHAVIOR, SQL_CB_NULL},
    {SQL_CORRELATION_NAME, SQL_CN_NONE},
    {SQL_CURSOR_COMMIT_BEHAVIOR, SQL_CB_PRESERVE},
    {SQL_CURSOR_ROLLBACK_BEHAVIOR, SQL_CB_PRESERVE},
    {SQL_FILE_USAGE, SQL_FILE_NOT_SUPPORTED},
    {SQL_GROUP_BY, SQL_GB_NOT_SUPPORTED},
    {SQL_IDENTIFIER_CASE, SQL_IC_MIXED},
    {SQL_MAX_CATALOG_NAME_LEN, 0},
    {SQL_MAX_COLUMN_NAME_LEN, 0},
    {SQL_MAX_COLUMNS_IN_GROUP_BY, 0},
    {SQL_MAX_COLUMNS_IN_INDEX, 0},
    {SQL_MAX_COLUMNS_IN_ORDER_BY, 0},
    {SQL_MAX_COLUMNS_IN_SELECT, 0},
    {SQL_MAX_COLUMNS_IN_TABLE, 0},
    {SQL_MAX_CONCURRENT_ACTIVITIES, 0},
    {SQL_MAX_CURSOR_NAME_LEN, 0},
    {SQL_MAX_DRIVER_CONNECTIONS, 0},
    {SQL_MAX_IDENTIFIER_LEN, 0},
    {SQL_MAX_PROCEDURE_NAME_LEN, 0},
    {SQL_MAX_SCHEMA_NAME_LEN, 0},
    {SQL_MAX_TABLE_NAME_LEN, 0},
    {SQL_MAX_TABLES_IN_SELECT, 1},
    {SQL_MAX_USER_NAME_LEN, 0},
    {SQL_NON_NULLABLE_COLUMNS, SQL_NNC_NULL},
    {SQL_NULL_COLLATION, SQL_NC_HIGH},
    {SQL_ODBC_API_CONFORMANCE, SQL_OAC_NONE},
    {SQL_ODBC_SAG_CLI_CONFORMANCE, SQL_OSCC_NOT_COMPLIANT},
    {SQL_ODBC_SQL_CONFORMANCE, SQL_OSC_MINIMUM},
    {SQL_QUOTED_IDENTIFIER_CASE, SQL_IC_MIXED},
    {SQL_TXN_CAPABLE, SQL_TC_NONE},
};

struct Answer {
    SQLUSMALLINT number;
    SQLUINTEGER answer;
};

constexpr Answer kNumbers[] = {
    {SQL_CURSOR_SENSITIVITY, SQL_INSENSITIVE},
    {SQL_FETCH_DIRECTION, SQL_FD_FETCH_NEXT | SQL_FD_FETCH_FIRST | SQL_FD_FETCH_LAST | SQL_FD_FETCH_PRIOR |
                              SQL_FD_FETCH_ABSOLUTE | SQL_FD_FETCH_RELATIVE},
    {SQL_FORWARD_ONLY_CURSOR_ATTRIBUTES1, SQL_CA1_NEXT | SQL_CA1_POS_POSITION | SQL_CA1_LOCK_NO_CHANGE},
    {SQL_FORWARD_ONLY_CURSOR_ATTRIBUTES2, SQL_CA2_READ_ONLY_CONCURRENCY | SQL_CA2_MAX_ROWS_SELECT},
    {SQL_GETDATA_EXTENSIONS, SQL_GD_ANY_COLUMN | SQL_GD_ANY_ORDER | SQL_GD_BLOCK | SQL_GD_BOUND},
    {SQL_LOCK_TYPES, SQL_LCK_NO_CHANGE},
    {SQL_ODBC_INTERFACE_CONFORMANCE, 0},
    {SQL_PARAM_ARRAY_ROW_COUNTS, SQL_PARC_NO_BATCH},
    {SQL_PARAM_ARRAY_SELECTS, SQL_PAS_NO_SELECT},
    {SQL_POS_OPERATIONS, SQL_POS_POSITION},
    {SQL_SCROLL_CONCURRENCY, SQL_SCCO_READ_ONLY},
    {SQL_SCROLL_OPTIONS, SQL_SO_FORWARD_ONLY | SQL_SO_STATIC},
    {SQL_STANDARD_CLI_CONFORMANCE, 0},
    {SQL_STATIC_CURSOR_ATTRIBUTES1,
     SQL_CA1_NEXT | SQL_CA1_ABSOLUTE | SQL_CA1_RELATIVE | SQL_CA1_POS_POSITION | SQL_CA1_LOCK_NO_CHANGE},
    // Nobody deletes a row: no program has to look for deleted ones, which LibreOffice would do with
    // bookmarks.
    {SQL_STATIC_CURSOR_ATTRIBUTES2, SQL_CA2_READ_ONLY_CONCURRENCY | SQL_CA2_SENSITIVITY_DELETIONS |
                                        SQL_CA2_MAX_ROWS_SELECT | SQL_CA2_CRC_EXACT},
};

// All other questions of ODBC ask for sets of features: the driver has none.
bool IsKnown(SQLUSMALLINT question) {
    constexpr SQLUSMALLINT kLast = SQL_CONVERT_GUID;
    constexpr SQLUSMALLINT kFirstAdded = 10'000;
    constexpr SQLUSMALLINT kLastAdded = SQL_ASYNC_NOTIFICATION;
    return question <= kLast || (question >= kFirstAdded && question <= kLastAdded) ||
           question == SQL_OJ_CAPABILITIES;
}

}  // namespace

std::variant<std::u16string, SQLUSMALLINT, SQLUINTEGER> GetInfo(const Connection& connection,
                                                                SQLUSMALLINT question) {
    if (question == SQL_DATA_SOURCE_NAME) return connection.DataSource();
    if (question == SQL_DATABASE_NAME) return connection.WorkbookPath();
    if (const TextAnswer* const text = FindNumbered(kTexts, question)) return std::u16string(text->answer);
    if (const SmallAnswer* const small = FindNumbered(kSmallNumbers, question)) return small->answer;
    if (const Answer* const number = FindNumbered(kNumbers, question)) return number->answer;
    if (IsKnown(question)) return SQLUINTEGER{0};
    throw OdbcError(u"HY096", u"SQLGetInfo has no information of this number.");
}

}  // namespace NOdbcDriver
