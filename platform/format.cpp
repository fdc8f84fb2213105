#include "platform/format.h"

#include <algorithm>
#include <charconv>

namespace NPlatform {

namespace {

bool IsHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
bool IsLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

void AppendLimited(std::u16string& result, std::u16string_view text, std::size_t limit) {
    const std::size_t size = result.size();
    result.append(text.substr(0, limit - std::min(limit, size)));
    std::replace(result.begin() + static_cast<std::ptrdiff_t>(size), result.end(), u'\0', u'\uFFFD');
}

std::u16string Digits(std::int32_t number) {
    char digits[12];
    char* const end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    return {digits, end};
}

std::u16string HexDigits(std::uint32_t code) {
    std::u16string digits;
    for (int shift = 28; shift >= 0; shift -= 4) digits.push_back(u"0123456789abcdef"[code >> shift & 0xF]);
    return digits;
}

}  // namespace

void FormatArgument::AppendTo(std::u16string& result, std::size_t limit) const {
    switch (kind_) {
        case Kind::Number:
            return AppendLimited(result, Digits(number_), limit);
        case Kind::Code:
            return AppendLimited(result, HexDigits(code_), limit);
        case Kind::Character:
            return AppendLimited(result, std::u16string_view(&character_, 1), limit);
        case Kind::Text:
            return AppendLimited(result, text_, limit);
    }
}

std::u16string Format(std::size_t capacity, std::u16string_view pattern,
                      std::initializer_list<FormatArgument> arguments) {
    // One unit more than fits, so that Cut sees whether the limit falls inside a surrogate pair.
    const std::size_t limit = capacity;
    std::u16string result;
    const FormatArgument* argument = arguments.begin();
    std::size_t position = 0;
    while (position < pattern.size() && result.size() < limit) {
        const std::size_t percent = pattern.find(u'%', position);
        AppendLimited(result, pattern.substr(position, percent - position), limit);
        if (percent == std::u16string_view::npos) break;
        if (argument != arguments.end()) argument++->AppendTo(result, limit);
        position = std::min(pattern.find_first_of(u"dxsc", percent), pattern.size() - 1) + 1;
    }
    result.resize(Cut(result, capacity - 1).size());
    return result;
}

std::u16string_view Cut(std::u16string_view text, std::size_t limit) {
    if (text.size() <= limit) return text;
    const bool splitsPair = limit > 0 && IsHighSurrogate(text[limit - 1]) && IsLowSurrogate(text[limit]);
    return text.substr(0, splitsPair ? limit - 1 : limit);
}

}  // namespace NPlatform
