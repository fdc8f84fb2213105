#include "checks/text_checks.h"

#include <algorithm>
#include <cstring>

#include "checks/causes.h"
#include "checks/characters.h"
#include "checks/number_form.h"
#include "checks/sentence.h"
#include "platform/utf8.h"

namespace NChecks {

using VCSVReader::VTableRow;

namespace {

// The first that is not from U+0020 to U+007F; four units at a time.
const char16_t* SkipPrintableAscii(const char16_t* unit, const char16_t* end) {
    constexpr std::uint64_t kEach = 0x0001'0001'0001'0001;
    for (; end - unit >= 4; unit += 4) {
        std::uint64_t four = 0;
        std::memcpy(&four, unit, sizeof four);
        const std::uint64_t fromBlank = (four | 0x8000 * kEach) - 0x20 * kEach;  // top bits: not below U+0020
        if ((four & 0xFF80 * kEach) != 0 || (~fromBlank & 0x8000 * kEach) != 0) break;
    }
    while (unit != end && *unit >= u' ' && *unit < 0x80) ++unit;
    return unit;
}

// Whether the unit may begin a character of UTF-8 whose bytes were read as a character each. Behind the end
// there may be more of it.
bool MayBeginUtf8(const char16_t* unit, const char16_t* end) {
    return *unit >= 0xC2 && *unit <= 0xF4 && (unit + 1 == end || (unit[1] >= 0x80 && unit[1] <= 0xBF));
}

// The bytes of a character in UTF-8 that were read as a character each; 0 if there are none.
NPlatform::Utf8Sequence DecodeBytes(std::u16string_view text) {
    char bytes[4];
    std::size_t count = 0;
    while (count < std::size(bytes) && count < text.size() && text[count] <= 0xFF) {
        bytes[count] = static_cast<char>(text[count]);
        ++count;
    }
    return NPlatform::DecodeUtf8(bytes, bytes + count);
}

char16_t FromWindows1252(char16_t unit) {
    constexpr std::u16string_view kCharacters =
        u"\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D\u017D\u008F"
        u"\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u009D\u017E\u0178";
    return kCharacters[unit - 0x80];
}

bool LooksLikeNumber(std::u16string_view text) {
    const std::u16string_view number = Strip(text);
    return IsCode(number) || IsPrefixedHex(number) || IsAllDigits(number);
}

}  // namespace

// The first position of each kind of character in a cell.
struct TextChecks::Suspects {
    std::size_t forbidden = kNowhere;
    std::size_t utf8 = kNowhere;
    std::size_t c1 = kNowhere;
    std::size_t replaced = kNowhere;
    std::size_t halfPair = kNowhere;
    bool hasLineFeed = false;

    static void Set(std::size_t& first, std::size_t index) { first = std::min(first, index); }
};

void TextChecks::LookAtRow(std::size_t row) {
    const VTableRow& cells = table_.Row(row);
    const char16_t* unit = cells[0].data();
    const char16_t* const end = unit + cells.TextSize();
    std::size_t strays = 0;
    const char16_t* stray = nullptr;
    while ((unit = SkipPrintableAscii(unit, end)) != end) {
        const bool isCommon = *unit >= 0xA0 && *unit < 0xD800;
        if (!isCommon || MayBeginUtf8(unit, end)) return LookAtCells(row);
        if (*unit <= 0xFF && strays++ == 0) stray = unit;
        ++unit;
    }
    if (strays == 0) return;
    std::size_t column = 0;
    while (cells[column].data() + cells[column].size() <= stray) ++column;
    AddStrays({row, column}, strays);
}

void TextChecks::LookAtCells(std::size_t row) {
    const VTableRow& cells = table_.Row(row);
    for (std::size_t column = 0; column < cells.size(); ++column) LookAtCell({row, column}, cells[column]);
}

// Whether the document has the cell as a text.
bool TextChecks::IsWritten(Place place) const {
    const std::size_t first = table_.DescriptionColumn() + (place.row == 0 ? 1 : 0);
    return place.column >= first && !table_.IsSkipped(place.column);
}

void TextChecks::LookAtCell(Place place, std::u16string_view cell) {
    Suspects suspects;
    for (std::size_t index = 0; index < cell.size(); ++index) {
        const char16_t unit = cell[index];
        if (unit >= u' ' && unit < 0x80) continue;
        if (unit == u'\n') suspects.hasLineFeed = true;
        if (IsForbiddenInXml(unit)) Suspects::Set(suspects.forbidden, index);
        if (unit == 0xFFFD) Suspects::Set(suspects.replaced, index);
        if (IsHalfPair(cell, index)) Suspects::Set(suspects.halfPair, index);
        if (unit >= 0x80 && unit <= 0xFF) index += LookAtByte(place, cell, index, suspects) - 1;
    }
    if (suspects.hasLineFeed && wishes_.separator != 0) LookForRows(place, cell);
    if (IsWritten(place)) Report(place, cell, suspects);
}

// A character that may have been a byte; returns how many of them belong together.
std::size_t TextChecks::LookAtByte(Place place, std::u16string_view cell, std::size_t index,
                                   Suspects& suspects) {
    const NPlatform::Utf8Sequence sequence = DecodeBytes(cell.substr(index));
    if (sequence.wellFormed) {
        ++sequences_;
        Suspects::Set(suspects.utf8, index);
        return sequence.length;
    }
    const bool isEnd = index + sequence.length == cell.size() && IsEndOfTable(place);
    if (sequence.cutShort && isEnd && IsMostlyUtf8(strays_ + 1)) {
        collector_.Add(kCutCharacter, place, [&] {
            return Say(u"%s ends amid a character of UTF-8: the end of the file is missing.", {Quote(cell)});
        });
        return sequence.length;
    }
    AddStrays(place, 1);
    if (IsC1Control(cell[index])) Suspects::Set(suspects.c1, index);
    return 1;
}

void TextChecks::Report(Place place, std::u16string_view cell, const Suspects& suspects) {
    if (suspects.forbidden != kNowhere) {
        return collector_.Add(kNotXml, place, [&] {
            const char16_t unit = cell[suspects.forbidden];
            return Say(u"%s has the character %s, with which no XML reader takes the document. %s",
                       {Quote(cell), CodePoint(unit),
                        unit == 0 ? u"If the file is UTF-16, save it as UTF-8; else remove the character."
                                  : u"Remove it."});
        });
    }
    if (suspects.utf8 != kNowhere) {
        isUtf8AsEightBit_ = true;
        return collector_.Add(kUtf8, place, [&] {
            const NPlatform::Utf8Sequence sequence = DecodeBytes(cell.substr(suspects.utf8));
            char16_t meant[2];
            const std::u16string_view character(meant, NPlatform::EncodeUtf16(sequence.character, meant));
            return Say(u"%s is UTF-8 that was read as 8-bit text: it has %s instead of %s. %s",
                       {Quote(cell), Quote(cell.substr(suspects.utf8, sequence.length)), Quote(character),
                        wishes_.isEightBit ? u"Read the file as UTF-8, or correct the text."
                                           : u"Correct the text."});
        });
    }
    if (suspects.c1 != kNowhere) {
        return collector_.Add(kWindows, place, [&] {
            const char16_t unit = cell[suspects.c1];
            const char16_t meant = FromWindows1252(unit);
            return Say(
                u"%s has the control character %s instead of %s of Windows-1252. Save the file as UTF-8 "
                u"and read it so.",
                {Quote(cell), CodePoint(unit), Quote({&meant, 1})});
        });
    }
    if (suspects.replaced != kNowhere) {
        return collector_.Add(kReplaced, place, [&] {
            return Say(
                u"%s has U+FFFD where a character was lost. Save the file as UTF-8, or read it as 8-bit "
                u"text if it is none.",
                {Quote(cell)});
        });
    }
    if (suspects.halfPair != kNowhere) {
        return collector_.Add(kHalfPair, place, [&] {
            return Say(u"%s has half of a surrogate pair, %s, which becomes U+FFFD. Correct the text.",
                       {Quote(cell), CodePoint(cell[suspects.halfPair])});
        });
    }
}

// A quote that is closed only in a later row makes one cell of all between.
void TextChecks::LookForRows(Place place, std::u16string_view cell) {
    std::size_t rows = 0;
    for (std::size_t feed = 0; (feed = cell.find(u'\n', feed)) != std::u16string_view::npos;) {
        ++feed;
        const std::u16string_view line = cell.substr(feed, cell.find(u'\n', feed) - feed);
        const auto separators =
            static_cast<std::size_t>(std::count(line.begin(), line.end(), wishes_.separator));
        if (separators > 0 && LooksLikeNumber(line.substr(0, line.find(wishes_.separator)))) ++rows;
    }
    if (rows == 0) return;
    collector_.Add(kSwallowedRows, place, [&] {
        return Say(u"%s holds %s. Close the double quote with which it begins.",
                   {Quote(cell), Counted(rows, u"line that looks like a row", u"lines that look like rows")});
    });
}

void TextChecks::AddStrays(Place place, std::size_t count) {
    constexpr std::size_t kEnough = 20;
    strays_ += count;
    const bool isNew =
        strayAt_.empty() || strayAt_.back().row != place.row || strayAt_.back().column != place.column;
    if (isNew && strayAt_.size() < kEnough) strayAt_.push_back(place);
}

bool TextChecks::IsEndOfTable(Place place) const {
    return place.row + 1 == table_.RowCount() && place.column + 1 == table_.ColumnCount();
}

bool TextChecks::IsMostlyUtf8(std::size_t strays) const {
    constexpr std::size_t kClearly = 4;
    return wishes_.isEightBit && sequences_ > kClearly * strays;
}

// Text that may be in another encoding is only worth a look.
void TextChecks::Finish() {
    if (!isUtf8AsEightBit_) return;
    if (!IsMostlyUtf8(strays_)) return collector_.SetSeverity(kUtf8, Severity::Warning);
    for (const Place& place : strayAt_) {
        collector_.Add(kStray, place, [&] {
            return Say(
                u"%s has a character that is not UTF-8, and the rest of the file is UTF-8. Correct it, and "
                u"read the file as UTF-8.",
                {Quote(table_.Row(place.row)[place.column])});
        });
    }
}

}  // namespace NChecks
