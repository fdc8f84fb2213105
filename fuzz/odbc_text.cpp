// What applications hand to the ODBC driver. The input is UTF-16, taken as a connect string, as an SQL
// statement, and as a value or a name within one.
#include "fuzz/memory_file.h"
#include "odbc_driver/connect_string.h"
#include "odbc_driver/diagnostics.h"
#include "odbc_driver/sql.h"

namespace {

using namespace NFuzz;
using namespace NOdbcDriver;

template <typename Read>
void ReadOrRefuse(Read read) {
    try {
        read();
    } catch (const OdbcError& error) {
        Require(!error.Record().message.empty(), "a refusal has a message");
    }
}

std::u16string Quote(std::u16string_view name, char16_t open, char16_t close) {
    std::u16string quoted(1, open);
    for (const char16_t unit : name) quoted.append(unit == close ? 2 : 1, unit);
    return quoted += close;
}

void CheckValueIsKept(std::u16string_view value) {
    const ConnectString text(u"driver=x;DBQ=" + QuoteValue(value) + u";Last=y");
    Require(text.Find(u"DBQ") == value && text.Find(u"LAST") == u"y",
            "a value that is quoted arrives as it was");
}

void CheckNameIsKept(std::u16string_view name) {
    if (name.empty()) return;
    const std::u16string quotes[] = {Quote(name, u'[', u']'), Quote(name, u'"', u'"'),
                                     Quote(name, u'`', u'`')};
    for (const std::u16string& quoted : quotes) {
        const Select all = ParseSelect(u"select*from" + quoted + u" ; ");
        const Select one = ParseSelect(u"select" + quoted + u",a from" + quoted);
        Require(all.columns.empty() && all.table == name && one.table == name && one.columns.size() == 2 &&
                    one.columns[0] == name,
                "a name that is quoted arrives as it was");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::u16string text = Utf16(data, size);
    ReadOrRefuse([&text] { CheckValueIsKept(ConnectString(text).Find(u"DBQ").value_or(u"")); });
    ReadOrRefuse([&text] {
        const Select select = ParseSelect(text);
        CheckNameIsKept(select.table);
        for (const std::u16string& column : select.columns) CheckNameIsKept(column);
    });
    CheckValueIsKept(text);
    CheckNameIsKept(text);
    return 0;
}
