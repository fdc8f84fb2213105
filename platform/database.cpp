// Written once, over the part of ODBC that is the same on every system.
#include "platform/database.h"

#ifdef _WIN32
#include <windows.h>
#endif

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>

#include "platform/exception_text.h"
#include "platform/format.h"
#include "platform/utf8.h"

namespace NPlatform {

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));

namespace {

// In units, the terminator included: the most that ODBC can count in one text.
constexpr std::size_t kTextCapacity = 0x7FFF;

template <typename Unit>
constexpr SQLLEN Bytes(std::size_t units) {
    return static_cast<SQLLEN>(units * sizeof(Unit));
}

SQLWCHAR* Units(char16_t* text) { return reinterpret_cast<SQLWCHAR*>(text); }

std::u16string ReadDiagnostics(SQLSMALLINT kind, SQLHANDLE handle) {
    constexpr SQLSMALLINT kMostRecords = 20;
    std::u16string lines;
    const Array<char16_t> text(kTextCapacity);
    SQLWCHAR state[6];
    SQLINTEGER nativeCode = 0;
    SQLSMALLINT length = 0;
    for (SQLSMALLINT record = 1; record <= kMostRecords; ++record) {
        if (!SQL_SUCCEEDED(SQLGetDiagRecW(kind, handle, record, state, &nativeCode, Units(text.Data()),
                                          static_cast<SQLSMALLINT>(kTextCapacity), &length))) {
            break;
        }
        if (record > 1) lines += u'\n';
        lines += text.Data();
    }
    return lines.empty() ? u"The driver gives no reason." : lines;
}

// Checks every result. Returns that of a call that succeeded or found no more data.
SQLRETURN Check(SQLRETURN result, SQLSMALLINT kind, SQLHANDLE handle) {
    if (SQL_SUCCEEDED(result) || result == SQL_NO_DATA) return result;
    throw DatabaseException(ReadDiagnostics(kind, handle));
}

SQLRETURN CheckConnection(SQLRETURN result, SQLHANDLE connection) {
    return Check(result, SQL_HANDLE_DBC, connection);
}

SQLRETURN CheckStatement(SQLRETURN result, SQLHANDLE statement) {
    return Check(result, SQL_HANDLE_STMT, statement);
}

SQLHANDLE Allocate(SQLSMALLINT kind, SQLSMALLINT parentKind, SQLHANDLE parent) {
    SQLHANDLE handle = SQL_NULL_HANDLE;
    Check(SQLAllocHandle(kind, parent, &handle), parentKind, parent);
    return handle;
}

// Whether the driver has refused the C type of a value.
bool RefusesType(SQLHANDLE statement) {
    SQLWCHAR state[6] = {};
    SQLGetDiagRecW(SQL_HANDLE_STMT, statement, 1, state, nullptr, nullptr, 0, nullptr);
    constexpr std::u16string_view kStates[] = {u"07006", u"HY003", u"HYC00"};
    return std::find(std::begin(kStates), std::end(kStates), reinterpret_cast<const char16_t*>(state)) !=
           std::end(kStates);
}

// A driver's narrow text, which ends with NUL: UTF-8, or ISO 8859-1 where it is malformed.
void Widen(std::string_view bytes, Array<char16_t>& text) {
    if (text.Size() <= bytes.size()) text.Grow(bytes.size() + 1);
    char16_t* out = text.Data();
    for (const char* next = bytes.data(); next != bytes.data() + bytes.size();) {
        const Utf8Sequence sequence = DecodeUtf8(next, bytes.data() + bytes.size());
        if (!sequence.wellFormed) {
            out = std::transform(bytes.begin(), bytes.end(), text.Data(),
                                 [](char byte) { return static_cast<unsigned char>(byte); });
            break;
        }
        out = EncodeUtf16(sequence.character, out);
        next += sequence.length;
    }
    *out = 0;
}

[[noreturn]] void RefuseText(std::u16string_view what, std::int32_t limit) {
    throw DatabaseException(Format(128, u"%s has more than %d characters.", {what, limit}));
}

}  // namespace

DatabaseException::DatabaseException(std::u16string message)
    : message_(std::move(message)), what_(ExceptionText(message_)) {}

void FreeEnvironment::operator()(void* handle) const noexcept { SQLFreeHandle(SQL_HANDLE_ENV, handle); }

void FreeConnection::operator()(void* handle) const noexcept {
    SQLDisconnect(handle);
    SQLFreeHandle(SQL_HANDLE_DBC, handle);
}

void FreeStatement::operator()(void* handle) const noexcept { SQLFreeHandle(SQL_HANDLE_STMT, handle); }

void Database::Open(std::u16string_view connectString) {
    constexpr std::u16string_view kPrefix = u"ODBC;";
    if (connectString.starts_with(kPrefix)) connectString.remove_prefix(kPrefix.size());
    if (connectString.size() >= kTextCapacity) RefuseText(u"The connect string", kTextCapacity - 1);
    std::u16string text(connectString);
    environment_.reset(Allocate(SQL_HANDLE_ENV, SQL_HANDLE_ENV, SQL_NULL_HANDLE));
    // NOLINTNEXTLINE(performance-no-int-to-ptr): this attribute travels as a pointer
    auto* const version = reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3);
    Check(SQLSetEnvAttr(environment_.get(), SQL_ATTR_ODBC_VERSION, version, 0), SQL_HANDLE_ENV,
          environment_.get());
    connection_.reset(Allocate(SQL_HANDLE_DBC, SQL_HANDLE_ENV, environment_.get()));
    CheckConnection(SQLDriverConnectW(connection_.get(), nullptr, Units(text.data()), SQL_NTS, nullptr, 0,
                                      nullptr, SQL_DRIVER_NOPROMPT),
                    connection_.get());
}

void Database::Close() {
    CheckConnection(SQLDisconnect(connection_.get()), connection_.get());
    connection_.reset();
    environment_.reset();
}

Recordset::Recordset(Database& database)
    : statement_(Allocate(SQL_HANDLE_STMT, SQL_HANDLE_DBC, database.connection_.get())) {
    text_.Grow(kTextCapacity);
}

// A new statement is read forward and read-only; to ask for it would only trouble drivers that know no other.
void Recordset::Open(std::u16string_view sql) {
    std::u16string text(sql);
    CheckStatement(SQLExecDirectW(statement_.get(), Units(text.data()), SQL_NTS), statement_.get());
    CheckStatement(SQLNumResultCols(statement_.get(), &columnCount_), statement_.get());
    if (columnCount_ > 0) MoveNext();
}

const char16_t* Recordset::ColumnName(std::int16_t column) {
    SQLSMALLINT length = 0;
    text_.Data()[0] = 0;
    CheckStatement(
        SQLDescribeColW(statement_.get(), static_cast<SQLUSMALLINT>(column + 1), Units(text_.Data()),
                        static_cast<SQLSMALLINT>(kTextCapacity), &length, nullptr, nullptr, nullptr, nullptr),
        statement_.get());
    // Drivers cut a longer name without a word.
    constexpr std::int32_t kLongestName = kTextCapacity - 2;
    const bool isWhole = length >= 0 && length <= kLongestName;
    if (!isWhole) RefuseText(Format(64, u"The name of column %d", {column + 1}), kLongestName);
    return text_.Data();
}

const char16_t* Recordset::Value(std::int16_t column) {
    if (FetchValue(column, SQL_C_WCHAR, text_)) return text_.Data();
    if (bytes_.Size() == 0) bytes_.Grow(kTextCapacity);
    FetchValue(column, SQL_C_CHAR, bytes_);
    Widen(bytes_.Data(), text_);
    return text_.Data();
}

// False: the driver does not have values of the wide type.
template <typename Unit>
bool Recordset::FetchValue(std::int16_t column, std::int16_t type, Array<Unit>& text) {
    Fetched fetched;
    for (;;) {
        const std::size_t room = text.Size() - fetched.size;
        text.Data()[fetched.size] = 0;
        SQLLEN length = 0;  // of the rest, in bytes
        const SQLRETURN result = SQLGetData(statement_.get(), static_cast<SQLUSMALLINT>(column + 1), type,
                                            text.Data() + fetched.size, Bytes<Unit>(room), &length);
        if (result == SQL_ERROR && type == SQL_C_WCHAR && RefusesType(statement_.get())) return false;
        if (!AddPiece(column, CheckStatement(result, statement_.get()), length, text, fetched)) return true;
    }
}

// Appends the piece. False: it was the last.
template <typename Unit>
bool Recordset::AddPiece(std::int16_t column, std::int16_t result, std::ptrdiff_t length, Array<Unit>& text,
                         Fetched& fetched) {
    if (result == SQL_NO_DATA || length == SQL_NULL_DATA) return false;
    const std::size_t room = text.Size() - fetched.size;
    Unit* const piece = text.Data() + fetched.size;
    const bool isCounted = length != SQL_NO_TOTAL;
    const bool isCut = isCounted ? length >= Bytes<Unit>(room) : result == SQL_SUCCESS_WITH_INFO;
    const std::size_t left = isCounted ? static_cast<std::size_t>(length) / sizeof(Unit)
                                       : std::basic_string_view<Unit>(piece).size();
    if (fetched.size + left > kLongestValue) {
        RefuseText(Format(64, u"The value in column %d", {column + 1}), kLongestValue);
    }
    // Where the lengths disagree, the NUL before this piece was the value's own.
    if (isCounted && fetched.left.value_or(left) != left) {
        *piece = 0;
        return false;
    }
    if (!isCut) return false;
    // Some drivers leave one unit free rather than divide a surrogate pair.
    const std::size_t size = room - (piece[room - 2] == 0 ? 2 : 1);
    text.Grow(std::max(fetched.size + left + 1, 2 * text.Size()));
    fetched.size += size;
    if (isCounted) fetched.left = left - size;
    return true;
}

void Recordset::MoveNext() {
    isAtEnd_ = CheckStatement(SQLFetch(statement_.get()), statement_.get()) == SQL_NO_DATA;
}

}  // namespace NPlatform
