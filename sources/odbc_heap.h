// The table source for Excel files that an ODBC driver reads.
#pragma once

#include <string>

#include "sources/vector_heap.h"

namespace NPlatform {
class Database;
}

namespace VCSVReader {

// Reads the table named DTC through the first installed ODBC driver whose description contains "Excel": the
// names of its columns are the header, its records the rows. The file is opened by the driver alone, under
// the name it was given. An error of the driver or the driver manager becomes "Database error: " and its
// text.
class VDefaultODBCHeap : public V2DVectorHeap {
  public:
    using V2DVectorHeap::V2DVectorHeap;

    // Opens nothing yet.
    void OpenSource() override;
    // A NULL gives an empty cell, a value with a NUL character ends there. After a failure the table has the
    // rows up to it.
    void ReadData() override;
    // Its description; "" if there is none, or the installed drivers cannot be listed. The first 2000
    // characters of their list are searched, with regard to case.
    virtual std::u16string FindExcelOdbcDriver();

  private:
    void ReadDatabase(const std::u16string& connectString);
    void ReadRecords(NPlatform::Database& database);
};

}  // namespace VCSVReader
