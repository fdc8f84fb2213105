// What the tests read through the ODBC driver.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "odbc_driver/odbc.h"
#include "tests/made_workbook.h"

namespace NTest {

inline SQLWCHAR* Units(std::u16string& text) { return reinterpret_cast<SQLWCHAR*>(text.data()); }

// A workbook's file with the table DTC, in which A has "aä😀z", nothing and x, and B has 42, 3.5 and P. Its
// worksheet has an empty text beside it.
class OdbcWorkbook : public testing::Test {
  protected:
    OdbcWorkbook() {
        const auto text = [](const std::string& value) { return "<c t='str'><v>" + value + "</v></c>"; };
        Parts parts = Small(
            {{"s.xml", Sheet("<row>" + text("A") + text("B") + "</row><row>" + text("aä😀z") +
                             "<c><v>42</v></c>" + text("") + "</row><row><c/><c><v>3.5</v></c></row><row>" +
                             text("x") + text("P") + "</row>")}});
        parts["w.xml"] = ReplaceAll(
            parts["w.xml"], "</sheets>",
            "</sheets><definedNames><definedName name='DTC'>S!$A$1:$B$4</definedName></definedNames>");
        workbook_ = Zip(folder_, parts);
    }

    TempFolder folder_;
    std::u16string workbook_;
};

}  // namespace NTest
