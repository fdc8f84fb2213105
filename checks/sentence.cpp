#include "checks/sentence.h"

#include <charconv>
#include <cmath>

#include "checks/characters.h"
#include "sources/cell_name.h"

namespace NChecks {

namespace {

constexpr std::size_t kMostQuoted = 40;

}  // namespace

std::u16string Quote(std::u16string_view text) {
    std::u16string quoted = u"\"";
    const std::u16string_view shown = NPlatform::Cut(text, kMostQuoted);
    for (std::size_t index = 0; index < shown.size(); ++index) {
        if (IsUnseen(shown[index]) || IsHalfPair(shown, index)) {
            quoted += Say(u"<%s>", {CodePoint(shown[index])});
        } else {
            quoted += shown[index];
        }
    }
    if (shown.size() < text.size()) quoted += u"...";
    quoted += u'"';
    return quoted;
}

std::u16string HexText(std::uint32_t number) {
    std::u16string digits;
    for (int shift = 28; shift >= 0; shift -= 4) {
        if (shift < 16 || number >> shift != 0) digits.push_back(u"0123456789ABCDEF"[number >> shift & 0xF]);
    }
    return digits;
}

std::u16string CodePoint(char32_t character) { return Say(u"U+%s", {HexText(character)}); }

std::u16string CellName(const Place& place) { return VCSVReader::CellName(place.column, place.row + 1); }

std::u16string NameCell(const Place& place, std::u16string_view text) {
    return Say(u"%s %s", {CellName(place), Quote(text)});
}

std::u16string DigitsOf(double number) {
    char digits[64];
    const double size = std::fabs(number);
    const bool isShort = size >= 1e-9 && size < 1e21;
    const auto format = isShort ? std::chars_format::fixed : std::chars_format::general;
    return {digits, std::to_chars(digits, digits + sizeof digits, number, format).ptr};
}

std::u16string Counted(std::size_t count, std::u16string_view one, std::u16string_view many) {
    return Say(u"%d %s", {Count(count), count == 1 ? one : many});
}

}  // namespace NChecks
