// The driver from the inside.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <tuple>

#include "odbc_driver/column_attributes.h"
#include "odbc_driver/connect_string.h"
#include "odbc_driver/diagnostics.h"
#include "odbc_driver/name_pattern.h"
#include "odbc_driver/number_value.h"
#include "odbc_driver/scroll.h"
#include "odbc_driver/sql.h"
#include "odbc_driver/value_transfer.h"
#include "tests/host.h"

namespace {

using namespace NOdbcDriver;
using NTest::Utf8;

// "state message", without who speaks.
std::string Describe(const OdbcError& error) {
    return Utf8(error.Record().state) + " " + Utf8(error.Record().message);
}

TEST(OdbcDriver, TakesConnectStringsApart) {
    const std::string refused =
        " in the connect string is not KEYWORD=value. A value that holds a semicolon has to stand in braces: "
        "DBQ={a;b.xlsx}.";
    const std::pair<std::u16string, std::string> rows[] = {
        {u"DSN='';DBQ", "HY000 \"DBQ\"" + refused},
        {u"DBQ=a;b.xlsx;c=d", "HY000 \"b.xlsx\"" + refused},
        {u"DRIVER={An (*.xls)};DSN='';DBQ=a/my 'Größe'\" x{y}.xlsx", "a/my 'Größe'\" x{y}.xlsx"},
        {u"DRIVER={a}}};DBQ=x} =;DBQ=y", "x} ="},
        {u"DRIVER={a}};DBQ=x;DBQ=y", "x"},
        {u"; \tdBq\n= {a;}}b{} \t; ", "a;}b{"},
        {u"DBQ={a}b}; x=y", "{a}b}"},
        {u"DBQ={a;b=}", "a;b="},
        {u"DBQ={", "{"},
    };
    for (const auto& [text, expected] : rows) {
        std::string found;
        try {
            const ConnectString attributes(text);
            found = Utf8(attributes.Find(u"DBQ").value_or(u"none"));
        } catch (const OdbcError& error) {
            found = Describe(error);
        }
        EXPECT_EQ(found, expected) << Utf8(text);
    }
    for (const std::u16string value : {u"a", u" a", u"a;b", u"{a}", u"}{}}", u""}) {
        EXPECT_EQ(ConnectString(u"X=" + QuoteValue(value) + u";Y=").Find(u"X"), value);
    }
}

TEST(OdbcDriver, UnderstandsSelect) {
    const std::string use = "use SELECT * FROM table or SELECT column, ... FROM table.";
    const auto refused = [&use](const std::string& place) {
        return "42000 " + place + " is not supported: " + use;
    };
    const std::string early = "42000 The SQL statement ends too early: " + use;
    std::u16string many = u"SELECT a";
    for (int column = 1; column <= 32767; ++column) many += u",a";
    const std::pair<std::u16string, std::string> rows[] = {
        {many + u" FROM x", "42000 The statement selects more than 32767 columns."},
        {u"SELECT *FROM DTC ", " DTC"},
        {u"\n select\t*\r\nfrom _1$\x80äЖ😀;\n", " _1$\u0080äЖ😀"},
        {u"SELECT*FROM[It's ]]1[$]", " It's ]1[$"},
        {u"SELECT * FROM\"a\"\"b\";", " a\"b"},
        {u"SELECT * FROM ``````", " ``"},
        {u"SELECT DTC,\"a, b\" ,[c]FROM x", "DTC|a, b|c| x"},
        {u"", early},
        {u"SELECT *", early},
        {u"SELECT a,", early},
        {u"SELECT * FROM [a]]", "42000 The name at character 15 has no closing ]."},
        {u"SELECT a, \"\" FROM b", "42000 The name at character 11 is empty."},
        {u"SELECT , FROM x", refused("\",\" at character 8")},
        {u"SELECT a b FROM x", refused("\"b\" at character 10")},
        {u"SELECT * FROMDTC", refused("\"FROMDTC\" at character 10")},
        {u"SELECT * FROM DTC WHERE a = 1", refused("\"WHERE\" at character 19")},
        {u"SELECT * FROM a.b", refused("\".b\" at character 16")},
    };
    for (const auto& [sql, expected] : rows) {
        std::string found;
        try {
            const Select select = ParseSelect(sql);
            for (const std::u16string& column : select.columns) found.append(Utf8(column)).append("|");
            found.append(" ").append(Utf8(select.table));
        } catch (const OdbcError& error) {
            found = Describe(error);
        }
        EXPECT_EQ(found, expected) << Utf8(sql);
    }
}

// Ten rows, in row sets of four. `from` 0 is before them, 11 behind.
TEST(OdbcDriver, Scrolls) {
    struct {
        SQLSMALLINT direction;
        SQLLEN offset, fromBefore, from1, from3, from9, fromBehind;  // -1: the first row set, cut
    } const rows[] = {
        {SQL_FETCH_NEXT, 0, 1, 5, 7, 11, 11},
        {SQL_FETCH_PRIOR, 0, 0, 0, -1, 5, 7},
        {SQL_FETCH_FIRST, 0, 1, 1, 1, 1, 1},
        {SQL_FETCH_LAST, 0, 7, 7, 7, 7, 7},
        {SQL_FETCH_ABSOLUTE, 0, 0, 0, 0, 0, 0},
        {SQL_FETCH_ABSOLUTE, 10, 10, 10, 10, 10, 10},
        {SQL_FETCH_ABSOLUTE, 11, 11, 11, 11, 11, 11},
        {SQL_FETCH_ABSOLUTE, -10, 1, 1, 1, 1, 1},
        {SQL_FETCH_ABSOLUTE, -11, 0, 0, 0, 0, 0},
        {SQL_FETCH_RELATIVE, 0, 0, 1, 3, 9, 11},
        {SQL_FETCH_RELATIVE, 2, 2, 3, 5, 11, 11},
        {SQL_FETCH_RELATIVE, -3, 0, 0, -1, 6, 8},
        {SQL_FETCH_RELATIVE, -5, 0, 0, 0, 4, 6},
        {SQL_FETCH_RELATIVE, std::numeric_limits<SQLLEN>::min(), 0, 0, 0, 0, 0},
        {SQL_FETCH_RELATIVE, std::numeric_limits<SQLLEN>::max(), 11, 11, 11, 11, 11},
    };
    const auto scroll = [](SQLLEN from, SQLSMALLINT direction, SQLLEN offset) {
        const SQLLEN rowsThere = from == 0 ? 0 : std::min<SQLLEN>(4, 11 - from);
        const Scrolled scrolled = Scroll({from, rowsThere, 10}, direction, offset, 4);
        EXPECT_TRUE(!scrolled.isCut || scrolled.firstRow == 1);
        return scrolled.isCut ? -1 : scrolled.firstRow;
    };
    for (const auto& row : rows) {
        const auto from = [&](SQLLEN start) { return scroll(start, row.direction, row.offset); };
        EXPECT_EQ(std::tuple(from(0), from(1), from(3), from(9), from(11)),
                  std::tuple(row.fromBefore, row.from1, row.from3, row.from9, row.fromBehind))
            << row.direction << " " << row.offset;
    }
    EXPECT_EQ(Scroll({0, 0, 2}, SQL_FETCH_ABSOLUTE, -3, 4).isCut, true);
    EXPECT_EQ(Scroll({0, 0, 2}, SQL_FETCH_LAST, 0, ~SQLULEN{0}).firstRow, 1);
    EXPECT_EQ(Scroll({0, 0, 0}, SQL_FETCH_LAST, 0, 4).firstRow, 1);
    EXPECT_THROW(Scroll({0, 0, 2}, SQL_FETCH_BOOKMARK, 0, 4), OdbcError);
}

TEST(OdbcDriver, FindsNamesByPatterns) {
    struct {
        OptionalText text;
        std::u16string_view name;
        bool asPattern, asName;
    } const rows[] = {
        {std::nullopt, u"DTC", true, true},
        {u"DTC ", u"DTC", false, true},
        {u"%", u"", true, false},
        {u"_T_", u"DTC", true, false},
        {u"___", u"DT", false, false},
        {u"%a%ab", u"aacab", true, false},
        {u"a\\_b", u"a_b", true, false},
        {u"a\\_b", u"axb", false, false},
        {u"a\\b\\%", u"a\\b%", true, false},
        {u"%%%%%%%%%%%%b", u"aaaaaaaaaaaaaaaaaaaa", false, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(NamePattern(row.text, false).Fits(row.name), row.asPattern) << Utf8(row.name);
        EXPECT_EQ(NamePattern(row.text, true).Fits(row.name), row.asName) << Utf8(row.name);
    }
}

TEST(OdbcDriver, RefusesPatternsThatTakeTooLong) {
    const std::u16string text = u"%" + std::u16string(200, u'x') + u"b", name(1000, u'x');
    NamePattern pattern(text, false);
    EXPECT_FALSE(pattern.Fits(name));
    const auto compareWithAll = [&] {
        for (int count = 0; count < 3000; ++count) static_cast<void>(pattern.Fits(name));
    };
    EXPECT_THROW(compareWithAll(), OdbcError);
}

TEST(OdbcDriver, ReadsNumbers) {
    const auto read = [](std::u16string_view text, SQLSMALLINT type) -> std::string {
        char bytes[9] = "########";
        try {
            const NumberTransfer transfer = PutNumberValue(text, type, bytes);
            EXPECT_EQ(transfer.size, NumberSize(type));
            EXPECT_EQ(bytes[transfer.size], transfer.size == 8 ? 0 : '#');
            double number = 0;
            SQLBIGINT integer = 0;
            std::memcpy(&number, bytes, sizeof number);
            std::memcpy(&integer, bytes, static_cast<std::size_t>(transfer.size));
            return (type == SQL_C_DOUBLE ? std::to_string(number) : std::to_string(integer)) +
                   (transfer.lostFraction ? " cut" : "");
        } catch (const OdbcError& error) {
            return Utf8(error.Record().state);
        }
    };
    const std::tuple<std::u16string, SQLSMALLINT, std::string> rows[] = {
        {u"42", SQL_C_SLONG, "42"},
        {u" 2147483647\t", SQL_C_LONG, "2147483647"},
        {u"2147483648", SQL_C_LONG, "22003"},
        {u"1e2", SQL_C_UTINYINT, "100"},
        {u"255.9", SQL_C_UTINYINT, "255 cut"},
        {u"-1", SQL_C_USHORT, "22003"},
        {u"-128", SQL_C_STINYINT, "128"},
        {u"2", SQL_C_BIT, "22003"},
        {u"9223372036854775807", SQL_C_SBIGINT, "9223372036854775807"},
        {u"9223372036854775808", SQL_C_SBIGINT, "22003"},
        {u"18446744073709551615", SQL_C_UBIGINT, "-1"},
        {u"1e999", SQL_C_DOUBLE, "22003"},
        {u"-0.25", SQL_C_DOUBLE, "-0.250000"},
        {u"", SQL_C_DOUBLE, "22018"},
        {u"P0016", SQL_C_LONG, "22018"},
        {u"inf", SQL_C_DOUBLE, "22018"},
        {u"١", SQL_C_LONG, "22018"},
        {u"1", SQL_C_TYPE_DATE, "07006"},
    };
    for (const auto& [text, type, expected] : rows) EXPECT_EQ(read(text, type), expected) << Utf8(text);
    EXPECT_EQ(read(std::u16string(500, u'1'), SQL_C_LONG), "22018");
}

TEST(OdbcDriver, HandsOutValuesInPieces) {
    struct {
        std::u16string text;
        SQLSMALLINT type;
        SQLLEN capacity;
        std::string pieces;  // "units:left in bytes" of each call
    } const rows[] = {
        {u"aä😀z", SQL_C_WCHAR, 12, "5:10 "},    {u"aä😀z", SQL_C_WCHAR, 9, "3:10 2:4 "},
        {u"aä😀z", SQL_C_WCHAR, 8, "3:10 2:4 "}, {u"aä😀z", SQL_C_WCHAR, 4, "1:10 1:8 1:6 1:4 1:2 "},
        {u"aä😀z", SQL_C_CHAR, 9, "8:8 "},       {u"aä😀z", SQL_C_CHAR, 8, "7:8 1:1 "},
        {u"aä😀z", SQL_C_CHAR, 7, "6:8 2:2 "},   {u"aä😀z", SQL_C_CHAR, 3, "2:8 2:6 2:4 2:2 "},
        {u"aä😀z", SQL_C_BINARY, 10, "10:10 "},  {u"aä😀z", SQL_C_BINARY, 3, "3:10 3:7 3:4 1:1 "},
        {u"", SQL_C_CHAR, 1, "0:0 "},           {u"", SQL_C_WCHAR, 2, "0:0 "},
    };
    for (const auto& row : rows) {
        ValueTransfer transfer;
        char room[16] = "###############";
        SQLLEN length = -1;
        const auto take = [&](SQLLEN capacity) {
            return transfer.Continue({row.type, room, capacity, &length, &length});
        };
        transfer.Begin(row.text);
        EXPECT_EQ(take(0), Transferred::Cut);  // there is no room, not even for the NUL of an empty text
        EXPECT_EQ(room[0], '#');
        std::string pieces, bytes;
        while (take(row.capacity) != Transferred::NothingLeft) {
            const std::size_t unit = row.type == SQL_C_WCHAR ? sizeof(char16_t) : 1;
            const auto* const wide = reinterpret_cast<const char16_t*>(room);
            const std::size_t units = row.type == SQL_C_BINARY
                                          ? static_cast<std::size_t>(std::min(length, row.capacity))
                                      : row.type == SQL_C_CHAR ? std::strlen(room)
                                                               : std::u16string_view(wide).size();
            pieces += std::to_string(units) + ":" + std::to_string(length) + " ";
            bytes.append(room, units * unit);
            ASSERT_LT(pieces.size(), 100U);
        }
        EXPECT_EQ(pieces, row.pieces);
        const std::string wide(reinterpret_cast<const char*>(row.text.data()), 2 * row.text.size());
        EXPECT_EQ(bytes, row.type == SQL_C_CHAR ? Utf8(row.text) : wide);
    }
}

TEST(OdbcDriver, TellsHowLongTextsAre) {
    struct {
        std::u16string one, other;
        SQLLEN size, displaySize, bytes;
    } const rows[] = {
        {u"", u"", 1, 1, 2},
        {u"ÄÖÜ", u"abcd", 6, 6, 12},
        {u"😀ࠀ", std::u16string(255, u'x'), 255, 255, 510},
        {std::u16string(128, u'ä'), u"", 257, 256, 514},
    };
    for (const auto& row : rows) {
        RowsResult result({{u"A"}}, {{row.one}, {std::nullopt}, {row.other}});
        const auto attribute = [&result](SQLSMALLINT number) {
            return std::get<SQLLEN>(GetColumnAttribute(result, 0, number));
        };
        EXPECT_EQ(attribute(SQL_DESC_LENGTH), row.size);
        EXPECT_EQ(attribute(SQL_DESC_DISPLAY_SIZE), row.displaySize);
        EXPECT_EQ(attribute(SQL_DESC_OCTET_LENGTH), row.bytes);
    }
}

TEST(OdbcDriver, TellsOfColumns) {
    RowsResult result({{u"A"}, {u"B", SQL_SMALLINT}, {u"C", SQL_INTEGER}}, {{u"äb", u"1", u"2"}});
    const std::pair<SQLSMALLINT, std::string> rows[] = {
        {SQL_DESC_NAME, "A,B,C,"},           {SQL_DESC_TYPE_NAME, "VARCHAR,SMALLINT,INTEGER,"},
        {SQL_DESC_LITERAL_PREFIX, "',,,"},   {SQL_DESC_TABLE_NAME, ",,,"},
        {SQL_DESC_SCHEMA_NAME, ",,,"},       {SQL_DESC_CONCISE_TYPE, "-9,5,4,"},
        {SQL_DESC_LENGTH, "3,5,10,"},        {SQL_DESC_OCTET_LENGTH, "6,2,4,"},
        {SQL_DESC_DISPLAY_SIZE, "3,6,11,"},  {SQL_DESC_NULLABLE, "1,1,1,"},
        {SQL_DESC_CASE_SENSITIVE, "1,0,0,"}, {SQL_DESC_NUM_PREC_RADIX, "0,10,10,"},
        {SQL_DESC_SEARCHABLE, "0,0,0,"},     {12345, "HY091,HY091,HY091,"},
    };
    for (const auto& [attribute, expected] : rows) {
        std::string found;
        for (std::size_t column = 0; column < 3; ++column) {
            try {
                const auto value = GetColumnAttribute(result, column, attribute);
                const auto* const number = std::get_if<SQLLEN>(&value);
                found += number ? std::to_string(*number) : Utf8(std::get<std::u16string_view>(value));
            } catch (const OdbcError& error) {
                found += Utf8(error.Record().state);
            }
            found += ",";
        }
        EXPECT_EQ(found, expected) << attribute;
    }
    EXPECT_EQ(DefaultCType(SQL_SMALLINT), SQL_C_SSHORT);
}

}  // namespace
