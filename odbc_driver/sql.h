// The statements that the driver understands.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace NOdbcDriver {

struct Select {
    std::vector<std::u16string> columns;  // none: all
    std::u16string table;
};

// SELECT * FROM table or SELECT column, column FROM table, in any case and with any blanks; a semicolon may
// follow. A name is bare (letters, digits, _, $ and everything beyond ASCII) or in "double quotes",
// `back quotes` or [brackets], the closing character twice where the name holds it. Comments are not
// understood. Throws OdbcError (42000), which names the place. A result has at most 32767 columns, as many as
// ODBC can count.
Select ParseSelect(std::u16string_view sql);

}  // namespace NOdbcDriver
