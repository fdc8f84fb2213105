#include "odbc_driver/catalogue.h"

#include <algorithm>

#include "odbc_driver/ascii.h"
#include "odbc_driver/column_attributes.h"
#include "platform/format.h"

namespace NOdbcDriver {

namespace {

using Row = RowsResult::Row;

constexpr std::u16string_view kTableType = u"TABLE";
constexpr std::size_t kLongestText = 32'767;  // of a cell
constexpr auto kNull = std::nullopt;

template <typename Number>
std::u16string ToText(Number number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

bool IsEmpty(const OptionalText& text) { return text && text->empty(); }
bool IsAll(const OptionalText& text) { return text == u"%"; }

// Tables are in a catalogue and in a schema without names.
bool IncludesNameless(const OptionalText& text) { return !text || text->empty() || IsAll(text); }

bool IncludesTables(const OptionalText& types) {
    if (IncludesNameless(types)) return true;
    std::u16string_view left = *types;
    for (;;) {
        const std::size_t comma = std::min(left.find(u','), left.size());
        std::u16string_view type = Trim(left.substr(0, comma));
        if (type.size() >= 2 && type.starts_with(u'\'') && type.ends_with(u'\'')) {
            type = type.substr(1, type.size() - 2);
        }
        if (EqualsIgnoringCase(type, kTableType)) return true;
        if (comma == left.size()) return false;
        left.remove_prefix(comma + 1);
    }
}

// A question for all of one kind and nothing of the others asks for a list of the kind itself.
bool AsksForTypes(const TablesRequest& request) {
    return IsAll(request.types) && IsEmpty(request.catalogue) && IsEmpty(request.schema) &&
           IsEmpty(request.table);
}
bool AsksForCataloguesOrSchemas(const TablesRequest& request) {
    return IsEmpty(request.table) && ((IsAll(request.catalogue) && IsEmpty(request.schema)) ||
                                      (IsAll(request.schema) && IsEmpty(request.catalogue)));
}

// A worksheet also has its name without '$', unless another table has it.
bool Fits(const NWorkbook::TableBook& book, NamePattern& pattern, const NWorkbook::TableName& table) {
    if (pattern.Fits(table.name)) return true;
    const std::u16string_view bare = std::u16string_view(table.name).substr(0, table.name.size() - 1);
    return table.isWorksheet && pattern.Fits(bare) && &book.Names()[*book.IndexOf(bare)] == &table;
}

// The names that fit, in their order. Valid as long as the book.
std::vector<std::u16string_view> FindNames(const NWorkbook::TableBook& book, NamePattern& pattern) {
    std::vector<std::u16string_view> names;
    for (const NWorkbook::TableName& table : book.Names()) {
        if (Fits(book, pattern, table)) names.emplace_back(table.name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<Row> FindTables(const NWorkbook::TableBook& book, const TablesRequest& request) {
    std::vector<Row> rows;
    NamePattern pattern(request.table, request.isName);
    for (const std::u16string_view name : FindNames(book, pattern)) {
        rows.push_back({kNull, kNull, std::u16string(name), std::u16string(kTableType)});
    }
    return rows;
}

Row DescribeColumn(TableResult& table, std::size_t column) {
    const std::u16string type = ToText(SQL_WVARCHAR);
    const std::u16string bytes = ToText(OctetLength(table, column));
    return {kNull,
            kNull,
            std::u16string(table.TableName()),
            std::u16string(table.ColumnName(column)),
            type,
            std::u16string(kTextTypeName),
            ToText(ColumnSize(table, column)),
            bytes,
            kNull,
            kNull,
            ToText(SQL_NULLABLE),
            kNull,
            kNull,
            type,
            kNull,
            bytes,
            ToText(column + 1),
            u"YES"};
}

// How much listing columns may take, so that no workbook with thousands of large tables takes hours or all
// memory: in cells to look at and characters to copy.
constexpr std::size_t kMostWork = 50'000'000;
constexpr std::size_t kWorkOfColumn = 1000;
constexpr std::size_t kWorkOfFailure = 100'000;

std::size_t WorkOf(const TableResult& table) {
    std::size_t work = table.ColumnCount() * (table.RowCount() + kWorkOfColumn + table.TableName().size());
    for (std::size_t column = 0; column < table.ColumnCount(); ++column) {
        work += table.ColumnName(column).size();
    }
    return work;
}

void DescribeColumns(TableResult& table, NamePattern& pattern, std::vector<Row>& rows) {
    for (std::size_t column = 0; column < table.ColumnCount(); ++column) {
        if (pattern.Fits(table.ColumnName(column))) rows.push_back(DescribeColumn(table, column));
    }
}

std::u16string TellLeftOut(std::u16string_view pattern, std::u16string_view table) {
    return NPlatform::Format(400, pattern, {NPlatform::Cut(table, 300)});
}

std::vector<Row> FindColumns(NWorkbook::TableBook& book, ColumnsRequest& request, Diagnostics& diagnostics) {
    std::vector<Row> rows;
    std::vector<std::pair<std::u16string_view, NWorkbook::WorkbookError>> failures;  // of tables
    std::u16string_view firstUnseen;
    std::size_t work = 0;
    for (const std::u16string_view name : FindNames(book, request.table)) {
        if (work >= kMostWork) {
            firstUnseen = name;
            break;
        }
        try {
            TableResult table(std::u16string(name), book.Find(name));
            work += WorkOf(table);
            DescribeColumns(table, request.column, rows);
        } catch (const NWorkbook::WorkbookError& error) {
            work += kWorkOfFailure;
            failures.emplace_back(name, error);
        }
    }
    if (rows.empty() && !failures.empty()) throw NWorkbook::WorkbookError(failures.front().second);
    for (const auto& [table, error] : failures) {
        diagnostics.Add({u"01000", TellLeftOut(u"Table %s is left out: ", table) + error.Message()});
    }
    if (!firstUnseen.empty()) {
        diagnostics.Add({u"01000", TellLeftOut(u"There are too many columns: those of table %s and of the "
                                               u"tables behind it are left out.",
                                               firstUnseen)});
    }
    return rows;
}

}  // namespace

std::unique_ptr<Result> ListTables(const NWorkbook::TableBook& book, const TablesRequest& request) {
    std::vector<Row> rows;
    if (AsksForTypes(request)) {
        rows = {{kNull, kNull, kNull, std::u16string(kTableType)}};
    } else if (!AsksForCataloguesOrSchemas(request) && IncludesNameless(request.catalogue) &&
               IncludesNameless(request.schema) && IncludesTables(request.types)) {
        rows = FindTables(book, request);
    }
    return std::make_unique<RowsResult>(ColumnsOfTables(), std::move(rows));
}

std::unique_ptr<Result> ListColumns(NWorkbook::TableBook& book, ColumnsRequest& request,
                                    Diagnostics& diagnostics) {
    std::vector<Row> rows;
    if (IncludesNameless(request.catalogue) && IncludesNameless(request.schema)) {
        rows = FindColumns(book, request, diagnostics);
    }
    return std::make_unique<RowsResult>(ColumnsOfColumns(), std::move(rows));
}

std::unique_ptr<Result> ListTypes(SQLSMALLINT type) {
    std::vector<Row> rows;
    if (type == SQL_ALL_TYPES || type == SQL_WVARCHAR) {
        const std::u16string text = ToText(SQL_WVARCHAR);
        rows.push_back({std::u16string(kTextTypeName), text, ToText(kLongestText), u"'", u"'", kNull,
                        ToText(SQL_NULLABLE), ToText(SQL_TRUE), ToText(SQL_PRED_NONE), kNull,
                        ToText(SQL_FALSE), kNull, kNull, kNull, kNull, text});
    }
    return std::make_unique<RowsResult>(ColumnsOfTypes(), std::move(rows));
}

std::unique_ptr<Result> ListNothing(Absent what) { return std::make_unique<RowsResult>(ColumnsOf(what)); }

}  // namespace NOdbcDriver
