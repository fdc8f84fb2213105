// The way of one value into an application's memory.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "odbc_driver/odbc.h"
#include "platform/array.h"

namespace NOdbcDriver {

// Where a value goes.
struct Target {
    SQLSMALLINT type;   // SQL_C_...
    SQLPOINTER data;    // may be NULL: then only the length is returned
    SQLLEN capacity;    // in bytes, for texts
    SQLLEN* length;     // gets the length in bytes; may be NULL
    SQLLEN* indicator;  // gets SQL_NULL_DATA; may be NULL, and the same as `length`
};

enum class Transferred { Whole, Cut, WithoutFraction, NothingLeft };

// Hands out one value, a text in as many pieces as the application takes. Texts are SQL_C_WCHAR, in UTF-16,
// or SQL_C_CHAR, in UTF-8; each piece ends with NUL and fills its buffer, so that it may divide a character,
// and the length is that of everything that was left before it. SQL_C_BINARY gets the bytes of the text in
// UTF-16, without NUL. Numbers go into any C type for numbers.
class ValueTransfer {
  public:
    // The text stays valid until the last piece; nothing is NULL.
    void Begin(std::optional<std::u16string_view> value);

    // NothingLeft: the value was handed out before. Throws OdbcError: 22018 for a text that is no number,
    // 22003 for one that the type cannot hold, 22002 for NULL without an indicator, 07006 for other types,
    // HY090.
    Transferred Continue(const Target& target);

  private:
    Transferred PutNull(const Target& target);
    template <typename Unit>
    Transferred PutTextPiece(std::basic_string_view<Unit> text, const Target& target);
    Transferred PutBytePiece(const Target& target);
    static void TellLeft(std::size_t bytes, const Target& target);
    std::string_view Narrow();

    std::optional<std::u16string_view> value_;
    NPlatform::Array<char> narrow_;  // the value in UTF-8, made for the first piece
    std::optional<std::size_t> narrowSize_;
    std::size_t done_ = 0;  // units that were handed out
    bool isFinished_ = false;
};

}  // namespace NOdbcDriver
