// Databases, through the ODBC drivers that are installed.
//
// Texts are UTF-16 throughout. Where the driver itself has only the narrow functions, the driver manager
// converts; unixODBC takes such a driver's texts for ISO 8859-1, but not the values, which the driver
// converts. Everything happens on the calling thread. Every failure is a DatabaseException.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/array.h"
#include "platform/replaceable.h"

namespace NPlatform {

// The descriptions of the installed drivers, in the installer library's order; none if it fails. Its
// list is looked at up to `capacity` characters; a description that is not complete there does not count.
extern Replaceable<std::vector<std::u16string>(std::size_t capacity)> InstalledDrivers;

// A failure that a driver or the driver manager reports.
class DatabaseException : public std::exception {
  public:
    explicit DatabaseException(std::u16string message);

    // The texts of all diagnostic records as they are, who speaks in brackets at their beginning, without
    // SQLSTATE and native codes; one a line, no line feed at the end.
    [[nodiscard]] const std::u16string& Message() const { return message_; }
    [[nodiscard]] const char* what() const noexcept override { return what_.c_str(); }  // UTF-8

  private:
    std::u16string message_;
    std::string what_;
};

// One owner for each kind of handle.
struct FreeEnvironment {
    void operator()(void* handle) const noexcept;
};
struct FreeConnection {
    void operator()(void* handle) const noexcept;
};
struct FreeStatement {
    void operator()(void* handle) const noexcept;
};

// A connection, which is closed at the latest with the object.
class Database {
  public:
    // Call it once. Connects without asking the user anything. "ODBC;" at the beginning of the connect string
    // is left out; the rest reaches the driver manager as it is. ODBC's cursor library is not used: reading
    // forward needs none, and with that of unixODBC even the first record cannot be fetched. Refused are
    // strings of more than 32766 units, the most that ODBC can count.
    void Open(std::u16string_view connectString);
    // Its recordsets have to be gone.
    void Close();

  private:
    friend class Recordset;

    std::unique_ptr<void, FreeEnvironment> environment_;
    std::unique_ptr<void, FreeConnection> connection_;
};

// The result of a query: read-only, walked once from the first record to the last.
class Recordset {
  public:
    static constexpr std::size_t kLongestValue = std::size_t{1} << 24;  // in UTF-16 units

    // The database is open and outlives the recordset.
    explicit Recordset(Database& database);

    // Runs the statement and goes to the first record. One that gives no columns is at its end.
    void Open(std::u16string_view sql);
    [[nodiscard]] std::int16_t ColumnCount() const { return columnCount_; }

    // Columns count from 0. The texts end with NUL and stay valid until the next call. A name of more
    // than 32765 units is refused: ODBC cannot say whether it is complete.
    const char16_t* ColumnName(std::int16_t column);
    // Of the current record; NULL is the empty text. Numbers and dates are as the driver renders them. Ask
    // for each column once, in ascending order. A value of more than kLongestValue units is refused. A driver
    // that refuses the wide type is asked for narrow text: UTF-8, or ISO 8859-1 where it is malformed.
    const char16_t* Value(std::int16_t column);

    [[nodiscard]] bool IsAtEnd() const { return isAtEnd_; }
    void MoveNext();

  private:
    // How much of a value is there, and how much is left where the driver counts; in units.
    struct Fetched {
        std::size_t size = 0;
        std::optional<std::size_t> left;
    };

    template <typename Unit>
    bool FetchValue(std::int16_t column, std::int16_t type, Array<Unit>& text);
    template <typename Unit>
    static bool AddPiece(std::int16_t column, std::int16_t result, std::ptrdiff_t length, Array<Unit>& text,
                         Fetched& fetched);

    std::unique_ptr<void, FreeStatement> statement_;
    std::int16_t columnCount_ = 0;
    bool isAtEnd_ = true;
    Array<char16_t> text_;  // the latest name or value
    Array<char> bytes_;     // the latest value of a driver that has no wide type
};

}  // namespace NPlatform
