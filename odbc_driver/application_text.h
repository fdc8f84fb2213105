// Texts and numbers between the driver and an application's memory, whose pointers need no alignment.
//
// The wide functions have texts in UTF-16, in units of SQLWCHAR, the narrow ones in UTF-8, in units of
// SQLCHAR. Here is the one place that converts: inside the driver every text is UTF-16.
#pragma once

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "odbc_driver/diagnostics.h"
#include "odbc_driver/odbc.h"
#include "workbook/utf16.h"

namespace NOdbcDriver {

std::string ToUtf8(std::u16string_view text);

// A text that an application gives: its length in units, or SQL_NTS where it ends with NUL. NULL is empty.
// NULs at the end are left out, since some programs count them. Throws HY090 for any other length below 0.
template <typename Unit>
std::u16string GetText(const Unit* text, SQLINTEGER length) {
    using Character = std::conditional_t<sizeof(Unit) == 1, char, char16_t>;
    if (text == nullptr) return {};
    if (length < 0 && length != SQL_NTS) throw OdbcError(u"HY090", u"The length of a text is below zero.");
    const auto* const units = reinterpret_cast<const Character*>(text);
    std::basic_string_view<Character> given(units, length == SQL_NTS
                                                       ? std::char_traits<Character>::length(units)
                                                       : static_cast<std::size_t>(length));
    given = given.substr(0, given.find_last_not_of(Character{0}) + 1);
    if constexpr (sizeof(Unit) == 1) {
        return NWorkbook::ToUtf16(given);
    } else {
        return std::u16string(given);
    }
}

// Fills a buffer of `capacity` units with the text and the terminator. Returns how many units of the text it
// copied: a text that is cut fills the buffer, since programs take the rest of it for text, even where that
// divides a character.
template <typename Unit>
std::size_t CopyPiece(std::basic_string_view<Unit> text, void* buffer, std::size_t capacity) {
    if (capacity == 0) return 0;
    const std::size_t size = std::min(text.size(), capacity - 1);
    const Unit terminator = 0;
    if (size > 0) std::memcpy(buffer, text.data(), size * sizeof(Unit));
    std::memcpy(static_cast<char*>(buffer) + size * sizeof(Unit), &terminator, sizeof terminator);
    return size;
}

// Gives a text to the application, whose buffer and length count units of `lengthUnit` bytes: what fits into
// the buffer, the terminator among it, and the length of the whole. Either may be NULL. Returns whether the
// text was cut. Throws HY090.
template <typename Unit, typename Length>
bool PutText(std::u16string_view text, SQLPOINTER buffer, SQLLEN capacity, Length* length,
             std::size_t lengthUnit) {
    if (capacity < 0) throw OdbcError(u"HY090", u"The length of a buffer is below zero.");
    const auto put = [=](auto encoded) {
        constexpr auto kMost = static_cast<std::size_t>(std::numeric_limits<Length>::max());
        const std::size_t units = sizeof(Unit) / lengthUnit;  // of the length, for each of the text
        if (length != nullptr) *length = static_cast<Length>(std::min(encoded.size() * units, kMost));
        if (buffer == nullptr) return false;
        const std::size_t room = static_cast<std::size_t>(capacity) / units;
        return CopyPiece(encoded, buffer, room) < encoded.size() || room == 0;
    };
    if constexpr (sizeof(Unit) == 1) {
        return put(std::string_view(ToUtf8(text)));
    } else {
        return put(text);
    }
}

// The same in the units of the text.
template <typename Unit, typename Length>
bool PutText(std::u16string_view text, Unit* buffer, SQLLEN capacity, Length* length) {
    return PutText<Unit>(text, buffer, capacity, length, sizeof(Unit));
}

template <typename Number>
void PutNumber(Number number, SQLPOINTER place) {
    if (place != nullptr) std::memcpy(place, &number, sizeof number);
}

// Puts what a variant holds: a text, whose capacity and length count bytes, or a number or an address, which
// has its own size. Returns whether a text was cut. Throws HY090.
template <typename Unit, typename Answer, typename Length>
bool PutAnswer(const Answer& answer, SQLPOINTER place, SQLLEN capacity, Length* length) {
    return std::visit(
        [=](const auto& found) {
            if constexpr (std::is_convertible_v<decltype(found), std::u16string_view>) {
                return PutText<Unit>(found, place, capacity, length, 1);
            } else {
                PutNumber(found, place);
                PutNumber(static_cast<Length>(sizeof found), length);
                return false;
            }
        },
        answer);
}

}  // namespace NOdbcDriver
