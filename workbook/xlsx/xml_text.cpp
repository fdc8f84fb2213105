#include "workbook/xlsx/xml_text.h"

#include <algorithm>

#include "platform/code_page.h"
#include "workbook/cell_rules.h"

namespace NWorkbook::NXlsx {

namespace {

void AppendUtf8(std::string& xml, std::u16string_view text) {
    const std::size_t size = xml.size();
    const std::size_t most = 3 * text.size();
    xml.resize(size + most);
    xml.resize(size + NPlatform::Utf16ToCodePage(NPlatform::kUtf8CodePage, text.data(), text.size(),
                                                 xml.data() + size, most));
}

bool IsHexDigit(char16_t unit) {
    return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F') || (unit >= u'a' && unit <= u'f');
}

// Whether the text here is an escape of a character, or would be read as one.
bool IsEscape(std::u16string_view text) {
    return text.size() >= 7 && text[1] == u'x' && std::all_of(&text[2], &text[6], IsHexDigit) &&
           text[6] == u'_';
}

void AppendEscape(std::string& xml, char16_t unit) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    xml += "_x";
    for (int shift = 12; shift >= 0; shift -= 4) xml += kDigits[(unit >> shift) & 0xF];
    xml += '_';
}

// The escape of the unit in XML; nothing if it needs none.
std::string_view ReferenceFor(char16_t unit) {
    switch (unit) {
        case u'&':
            return "&amp;";
        case u'<':
            return "&lt;";
        case u'>':
            return "&gt;";
        case u'"':
            return "&quot;";
        case u'\t':
            return "&#9;";
        case u'\n':
            return "&#10;";
        case u'\r':
            return "&#13;";
        default:
            return {};
    }
}

}  // namespace

void AppendXmlText(std::string& xml, std::u16string_view text) {
    std::size_t begin = 0;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const char16_t unit = text[index];
        const std::string_view reference = ReferenceFor(unit);
        const bool isEscaped = unit == u'_' ? IsEscape(text.substr(index)) : IsNoXmlCharacter(text, index);
        if (reference.empty() && !isEscaped) continue;
        AppendUtf8(xml, text.substr(begin, index - begin));
        xml += reference;
        if (isEscaped) AppendEscape(xml, unit);
        begin = index + 1;
    }
    AppendUtf8(xml, text.substr(begin));
}

}  // namespace NWorkbook::NXlsx
