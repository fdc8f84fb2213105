// Texts and numbers between the driver and an application's memory, whose pointers need no alignment.
#pragma once

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>

#include "odbc_driver/diagnostics.h"
#include "odbc_driver/odbc.h"

namespace NOdbcDriver {

// A text that an application gives: its length in units, or SQL_NTS where it ends with NUL. NULL is empty.
// Throws HY090 for any other length below 0. A view of the application's memory.
inline std::u16string_view GetText(const SQLWCHAR* text, SQLINTEGER length) {
    if (text == nullptr) return {};
    const auto* const units = reinterpret_cast<const char16_t*>(text);
    if (length == SQL_NTS) return units;
    if (length < 0) throw OdbcError(u"HY090", u"The length of a text is below zero.");
    return {units, static_cast<std::size_t>(length)};
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

// Gives a text to the application: what fits into `capacity` units, the terminator among them, and the length
// of the whole in units. Either may be NULL. Returns whether the text was cut. Throws HY090.
template <typename Length>
bool PutText(std::u16string_view text, SQLPOINTER buffer, SQLLEN capacity, Length* length,
             std::size_t unitsOfLength = 1) {
    if (capacity < 0) throw OdbcError(u"HY090", u"The length of a buffer is below zero.");
    constexpr auto kMost = static_cast<std::size_t>(std::numeric_limits<Length>::max());
    if (length != nullptr) *length = static_cast<Length>(std::min(text.size() * unitsOfLength, kMost));
    if (buffer == nullptr) return false;
    return CopyPiece(text, buffer, static_cast<std::size_t>(capacity)) < text.size() || capacity == 0;
}

// The same where the application counts in bytes.
template <typename Length>
bool PutTextInBytes(std::u16string_view text, SQLPOINTER buffer, SQLLEN capacity, Length* length) {
    constexpr SQLLEN kUnit = sizeof(char16_t);
    return PutText(text, buffer, capacity < 0 ? capacity : capacity / kUnit, length, kUnit);
}

template <typename Number>
void PutNumber(Number number, SQLPOINTER place) {
    if (place != nullptr) std::memcpy(place, &number, sizeof number);
}

}  // namespace NOdbcDriver
