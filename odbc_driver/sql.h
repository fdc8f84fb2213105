// The one statement that the driver understands.
#pragma once

#include <string>
#include <string_view>

namespace NOdbcDriver {

// SELECT * FROM table, in any case and with any blanks, a semicolon may follow. Returns the name of the
// table, which stands there bare (letters, digits, _, $ and everything beyond ASCII) or in "double quotes",
// `back quotes` or [brackets], the closing character twice where the name holds it. Comments are not
// understood. Throws OdbcError (42000), which names the place.
std::u16string ParseSelect(std::u16string_view sql);

}  // namespace NOdbcDriver
