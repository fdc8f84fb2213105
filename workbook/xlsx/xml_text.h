// Texts as XML has them.
#pragma once

#include <string>
#include <string_view>

namespace NWorkbook::NXlsx {

// White space, as XML means it.
template <typename Unit>
constexpr bool IsXmlBlank(Unit unit) {
    return unit == ' ' || unit == '\t' || unit == '\n' || unit == '\r';
}

// Appends UTF-8 that is the text when it is read as the value of an element or an attribute: tabs and ends
// of lines become character references. What XML cannot have is escaped as _xHHHH_, and so is an underscore
// that readers would take for the beginning of such an escape.
void AppendXmlText(std::string& xml, std::u16string_view text);

}  // namespace NWorkbook::NXlsx
