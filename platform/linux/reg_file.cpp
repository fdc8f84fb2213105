#include "platform/linux/reg_file.h"

#include <algorithm>
#include <string>

#include "platform/registry.h"

namespace NPlatform {

namespace {

char16_t LowerCase(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

bool AreSame(std::u16string_view one, std::u16string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char16_t left, char16_t right) { return LowerCase(left) == LowerCase(right); });
}

// Off the front of `rest`, without the blanks around it.
std::u16string_view TakeLine(std::u16string_view& rest) {
    constexpr std::u16string_view kBlanks = u" \t";
    std::u16string_view line = rest.substr(0, rest.find(u'\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
    return line.substr(0, line.find_last_not_of(kBlanks) + 1);
}

// Of what stands behind the first quote.
std::optional<RegistryValue> ParseText(std::u16string_view rest) {
    RegistryValue value{kRegistryText, {}};
    const auto add = [&value](char16_t unit) {
        value.data.push_back(static_cast<std::byte>(unit & 0xFF));
        value.data.push_back(static_cast<std::byte>(unit >> 8));
    };
    for (std::size_t index = 0; index < rest.size(); ++index) {
        if (rest[index] == u'"') {
            add(u'\0');
            return index + 1 == rest.size() ? std::optional(value) : std::nullopt;
        }
        if (rest[index] == u'\\' && index + 1 < rest.size()) ++index;
        add(rest[index]);
    }
    return std::nullopt;
}

// Of pairs of digits with commas between them.
std::optional<RegistryValue> ParseBytes(std::uint32_t type, std::u16string_view digits) {
    constexpr std::u16string_view kDigits = u"0123456789abcdef";
    constexpr std::size_t kStep = 3;
    RegistryValue value{type, {}};
    for (; !digits.empty(); digits.remove_prefix(std::min(kStep, digits.size()))) {
        if (digits.size() < 2 || (digits.size() >= kStep && digits[2] != u',')) return std::nullopt;
        const std::size_t high = kDigits.find(LowerCase(digits[0]));
        const std::size_t low = kDigits.find(LowerCase(digits[1]));
        if (std::max(high, low) >= kDigits.size()) return std::nullopt;
        value.data.push_back(static_cast<std::byte>(high << 4 | low));
    }
    return value;
}

// The data may go on in the next lines of `rest`.
std::optional<RegistryValue> TakeValue(std::u16string_view data, std::u16string_view& rest) {
    if (data.starts_with(u'"')) return ParseText(data.substr(1));
    constexpr std::size_t kMarkSize = 7;  // hex(1):
    if (!data.starts_with(u"hex(") || data.find(u"):") != kMarkSize - 2) return std::nullopt;
    std::u16string digits(data.substr(kMarkSize));
    while (digits.ends_with(u'\\')) {
        digits.pop_back();
        digits.append(TakeLine(rest));
    }
    return ParseBytes(data[4] - u'0', digits);
}

}  // namespace

std::optional<FoundRegistryKey> FindInRegFile(std::u16string_view text, std::u16string_view path) {
    const std::u16string_view first = TakeLine(text);
    if (first != u"Windows Registry Editor Version 5.00" && first != u"REGEDIT4") return std::nullopt;
    std::optional<FoundRegistryKey> key;
    bool isInKey = false;
    while (!text.empty()) {
        const std::u16string_view line = TakeLine(text);
        if (line.starts_with(u'[') && line.ends_with(u']')) {
            isInKey = AreSame(line.substr(1, line.size() - 2), path);
            if (isInKey && !key) key.emplace();
        } else if (isInKey && line.starts_with(u"@=")) {
            key->value = TakeValue(line.substr(2), text);
        } else if (isInKey) {
            key->isDenied = key->isDenied || line == u";deny key";
            key->isValueDenied = key->isValueDenied || line == u";deny value";
        }
    }
    return key;
}

}  // namespace NPlatform
