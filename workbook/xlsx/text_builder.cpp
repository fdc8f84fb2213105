#include "workbook/xlsx/text_builder.h"

#include <algorithm>
#include <cstring>

#include "workbook/utf16.h"
#include "workbook/xlsx/xml_text.h"

namespace NWorkbook::NXlsx {

namespace {

constexpr std::size_t kEscapeSize = 7;

int DigitValue(char16_t unit) {
    if (unit >= u'0' && unit <= u'9') return unit - u'0';
    if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
    if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
    return -1;
}

// The unit that an escape at `text` encodes, or -1.
int ReadEscape(const char16_t* text, std::size_t size) {
    if (size < kEscapeSize || text[0] != u'_' || text[1] != u'x' || text[kEscapeSize - 1] != u'_') return -1;
    int unit = 0;
    for (std::size_t index = 2; index < kEscapeSize - 1; ++index) {
        const int digit = DigitValue(text[index]);
        if (digit < 0) return -1;
        unit = unit << 4 | digit;
    }
    return unit;
}

}  // namespace

std::size_t DecodeEscapes(char16_t* text, std::size_t size) {
    char16_t* out = text;
    for (std::size_t index = 0; index < size;) {
        const int unit = ReadEscape(text + index, size - index);
        *out++ = unit < 0 ? text[index] : static_cast<char16_t>(unit);
        index += unit < 0 ? 1 : kEscapeSize;
    }
    return static_cast<std::size_t>(out - text);
}

void TextBuilder::Append(std::string_view text) {
    const std::size_t size = store_.Open().size();
    if (text.size() > kMostUnitsOfText - size)
        throw PartFault{Fault::TooLarge, u"the text of a cell is too long"};
    char16_t* const out = store_.Extend(text.size());
    const char16_t* const end = Utf8ToUtf16(text, out);
    store_.Truncate(size + static_cast<std::size_t>(end - out));
    mayHaveEscapes_ = mayHaveEscapes_ || std::memchr(text.data(), '_', text.size()) != nullptr;
}

void TextBuilder::EndElement() {
    const std::u16string_view text = store_.Open().substr(elementStart_);
    const bool hasBlanks = !text.empty() && (IsXmlBlank(text.front()) || IsXmlBlank(text.back()));
    if (keepsBlanks_ || !hasBlanks) return;
    char16_t* const begin = store_.Extend(0) - text.size();
    char16_t* const end = begin + text.size();
    auto* const first = std::find_if_not(begin, end, IsXmlBlank<char16_t>);
    char16_t* last = end;
    while (last != first && IsXmlBlank(last[-1])) --last;
    std::copy(first, last, begin);
    store_.Truncate(elementStart_ + static_cast<std::size_t>(last - first));
}

TextPlace TextBuilder::Close() {
    if (mayHaveEscapes_) DecodeEscapes();
    mayHaveEscapes_ = false;
    const std::size_t size = store_.Open().size();
    Spend(budget_.units, size, u"the workbook's texts have too many characters");
    return store_.Close();
}

void TextBuilder::DecodeEscapes() {
    const std::size_t size = store_.Open().size();
    store_.Truncate(NXlsx::DecodeEscapes(store_.Extend(0) - size, size));
}

}  // namespace NWorkbook::NXlsx
