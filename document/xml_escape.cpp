#include "document/xml_escape.h"

namespace VSimpleXMLCreation {

namespace {

std::u16string_view Replacement(char16_t unit) {
    return unit == u'&' ? u"&amp;" : (unit == u'<' ? u"&lt;" : u"&gt;");
}

}  // namespace

std::size_t EscapedSize(std::u16string_view text) {
    std::size_t size = text.size();
    for (const char16_t unit : text) size += unit == u'&' ? 4U : (IsEscaped(unit) ? 3U : 0U);
    return size;
}

char16_t* CopyEscaped(std::u16string_view text, char16_t* out) {
    for (const char16_t unit : text) {
        if (IsEscaped(unit)) {
            const std::u16string_view replacement = Replacement(unit);
            out = std::copy_n(replacement.data(), replacement.size(), out);
        } else {
            *out++ = unit;
        }
    }
    return out;
}

}  // namespace VSimpleXMLCreation
