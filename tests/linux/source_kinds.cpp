#include "sources/odbc_heap.h"
#include "tests/source_kind.h"
#include "workbook/file_formats.h"

namespace NTest {

namespace {

using namespace VCSVReader;

// Through our own driver, of which the driver manager takes the file for a description.
class OwnOdbcHeap : public VDefaultODBCHeap {
  public:
    using VDefaultODBCHeap::VDefaultODBCHeap;
    std::u16string FindExcelOdbcDriver() override {
        return std::filesystem::path(XLS2TKI_TEST_OWN_ODBC_DRIVER).u16string();
    }
};

std::unique_ptr<VHeapInterface> MakeOdbcHeap(const TempFolder& folder, const Table& table, VLogObject* log) {
    NWorkbook::Workbook workbook;
    const auto& sheet = workbook.worksheets.emplace_back(std::make_shared<NWorkbook::Worksheet>(u"DTC"));
    NWorkbook::Cell cell{.row = 1, .column = 1, .type = NWorkbook::CellType::Text, .text = nullptr};
    for (const Row& row : table) {
        for (const std::u16string& text : row) {
            workbook.texts->Append(text);
            cell.text = workbook.texts->Close();
            sheet->Cells().Add(cell);
            ++cell.column;
        }
        ++cell.row;
        cell.column = 1;
    }
    NWorkbook::SaveWorkbook(workbook, folder.Path("input"));
    return std::make_unique<OwnOdbcHeap>(folder.Path("input"), log);
}

}  // namespace

std::vector<SourceKind> SystemsSourceKinds() {
    return {
        {"Odbc",
         MakeOdbcHeap,
         {u"Using VDefaultODBCHeap to receive data.", u"Trying to get Excel driver for ODBC",
          u"Opening ODBC database", u"Allocating the recordset", u"Trying to get recordset from table 'DTC'",
          u"Stepping through record set", u"Closing database ...", u"Closing database ... done"},
         false,
         true}};
}

}  // namespace NTest
