#include "document/cell_text.h"

#include <algorithm>
#include <limits>

namespace VSimpleXMLCreation {

namespace {

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

}  // namespace

bool IsWhiteSpace(char16_t unit) {
    if (unit < 0x80) return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
    return unit == 0x85 || unit == 0xA0 || unit == 0x1680 || (unit >= 0x2000 && unit <= 0x200A) ||
           unit == 0x2028 || unit == 0x2029 || unit == 0x202F || unit == 0x205F || unit == 0x3000;
}

std::u16string_view Trim(std::u16string_view text) {
    while (!text.empty() && IsWhiteSpace(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsWhiteSpace(text.back())) text.remove_suffix(1);
    return text;
}

std::u16string_view TrimBlanks(std::u16string_view text) {
    while (!text.empty() && text.front() == u' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == u' ') text.remove_suffix(1);
    return text;
}

std::u16string UpperCase(std::u16string_view text) {
    std::u16string upper(text);
    for (char16_t& unit : upper) unit = UpperCase(unit);
    return upper;
}

std::int32_t DecimalValue(std::u16string_view text) {
    const char16_t* const end = text.data() + text.size();
    const char16_t* unit = std::find_if_not(text.data(), end, IsWhiteSpace);
    const bool isNegative = unit != end && *unit == u'-';
    if (unit != end && (*unit == u'-' || *unit == u'+')) ++unit;
    constexpr std::int64_t kHighest = std::numeric_limits<std::int32_t>::max();
    std::int64_t value = 0;
    for (; unit != end && IsDigit(*unit); ++unit) {
        value = std::min(10 * value + (*unit - u'0'), kHighest + 1);
    }
    return static_cast<std::int32_t>(isNegative ? -value : std::min(value, kHighest));
}

}  // namespace VSimpleXMLCreation
