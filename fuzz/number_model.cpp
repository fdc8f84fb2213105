#include "fuzz/number_model.h"

#include <algorithm>
#include <string>

namespace NFuzz {

std::u16string_view Strip(std::u16string_view text, std::u16string_view blanks) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::u16string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

// Ten digits fit 64 bits; more of them are above the range, whatever they are.
std::uint32_t DecimalNumber(std::u16string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
    const bool isNegative = text.starts_with(u'-');
    if (isNegative || text.starts_with(u'+')) text.remove_prefix(1);
    text = text.substr(0, text.find_first_not_of(u"0123456789"));
    text.remove_prefix(std::min(text.find_first_not_of(u'0'), text.size()));
    const std::string digits(text.begin(), text.end());
    const long long value = digits.empty() ? 0 : (digits.size() > 10 ? 99'999'999'999 : std::stoll(digits));
    return static_cast<std::uint32_t>(isNegative ? -std::min(value, 2'147'483'648LL)
                                                 : std::min(value, 2'147'483'647LL));
}

// Each character adds its bits at its own place.
std::uint32_t HexNumber(std::u16string_view text) {
    std::uint32_t number = 0;
    for (std::size_t place = 0; place < text.size() && place < 8; ++place) {
        const std::uint32_t unit = text[text.size() - 1 - place];
        const std::uint32_t digit =
            unit <= 0x40 ? unit - 48 : (unit >= 'a' && unit <= 'f' ? unit - 87 : unit - 55);
        number |= digit << 4 * place;
    }
    return number;
}

std::optional<std::uint32_t> SaeNumber(std::u16string_view text) {
    if (text.size() != 3 && text.size() != 5 && text.size() != 7 && text.size() != 9) return std::nullopt;
    const std::uint32_t digits = HexNumber(text.substr(1));
    const std::size_t shift = 4 * (text.size() - 2);
    if (digits >> shift > 3) return std::nullopt;
    const std::uint32_t system = text[0] == u'C' ? 1 : (text[0] == u'B' ? 2 : (text[0] == u'U' ? 3 : 0));
    return digits | digits >> shift << shift | system << 2 << shift;
}

std::optional<std::uint32_t> DtcNumber(std::u16string_view text, bool hexDefault, bool saeCodes) {
    if (text.empty()) return 0;
    const std::u16string_view trimmed = Strip(text, u" ");
    if (saeCodes && (text[0] == u'B' || text[0] == u'C' || text[0] == u'P' || text[0] == u'U')) {
        return SaeNumber(trimmed);
    }
    if (text.substr(0, 2) == u"0x") return HexNumber(trimmed.substr(2));
    return hexDefault ? HexNumber(trimmed) : DecimalNumber(trimmed);
}

}  // namespace NFuzz
