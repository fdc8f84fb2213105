#include "sources/odbc_heap.h"

#include "platform/database.h"
#include "sources/parser_exception.h"

namespace VCSVReader {

void VDefaultODBCHeap::OpenSource() { Log(u"Using VDefaultODBCHeap to receive data."); }

std::u16string VDefaultODBCHeap::FindExcelOdbcDriver() {
    constexpr std::size_t kListCapacity = 2000;
    for (const std::u16string& description : NPlatform::InstalledDrivers(kListCapacity)) {
        if (description.find(u"Excel") != std::u16string::npos) return description;
    }
    return {};
}

void VDefaultODBCHeap::ReadData() {
    Log(u"Trying to get Excel driver for ODBC");
    const std::u16string driver = FindExcelOdbcDriver();
    if (driver.empty()) throw VParserException(u"No Excel ODBC driver found");
    try {
        ReadDatabase(u"ODBC;DRIVER={" + driver + u"};DSN='';DBQ=" + FileName());
    } catch (const NPlatform::DatabaseException& exception) {
        throw VParserException(u"Database error: " + exception.Message());
    }
}

void VDefaultODBCHeap::ReadDatabase(const std::u16string& connectString) {
    NPlatform::Database database;
    Log(u"Opening ODBC database");
    database.Open(connectString);
    ReadRecords(database);
    Log(u"Closing database ...");
    database.Close();
    Log(u"Closing database ... done");
}

void VDefaultODBCHeap::ReadRecords(NPlatform::Database& database) {
    Log(u"Allocating the recordset");
    NPlatform::Recordset records(database);
    Log(u"Trying to get recordset from table 'DTC'");
    records.Open(u"SELECT *FROM DTC ");
    Log(u"Stepping through record set");
    const std::int16_t columnCount = records.ColumnCount();
    for (std::int16_t column = 0; column < columnCount; ++column) AddCell(records.ColumnName(column));
    EndRow(false);
    for (; !records.IsAtEnd(); EndRow(false)) {
        for (std::int16_t column = 0; column < columnCount; ++column) AddCell(records.Value(column));
        records.MoveNext();
    }
}

}  // namespace VCSVReader
