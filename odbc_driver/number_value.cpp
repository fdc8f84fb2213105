#include "odbc_driver/number_value.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "odbc_driver/application_text.h"
#include "odbc_driver/ascii.h"
#include "platform/format.h"

namespace NOdbcDriver {

namespace {

[[noreturn]] void Refuse(const char16_t* state, std::u16string_view pattern, std::u16string_view text) {
    constexpr std::size_t kMostShown = 40;
    throw OdbcError(state, NPlatform::Format(200, pattern, {NPlatform::Cut(text, kMostShown)}));
}

[[noreturn]] void RefuseText(std::u16string_view text) { Refuse(u"22018", u"\"%s\" is no number.", text); }
[[noreturn]] void RefuseRange(std::u16string_view text) {
    Refuse(u"22003", u"The number %s is beyond the range of the type that it is fetched as.", text);
}

// The text in ASCII; one that is longer than any number is written is none.
class Digits {
  public:
    explicit Digits(std::u16string_view text) : text_(text) {
        const std::u16string_view trimmed = Trim(text);
        if (trimmed.empty() || trimmed.size() > sizeof characters_) RefuseText(text);
        for (const char16_t unit : trimmed) {
            if (unit >= 0x80) RefuseText(text);
            characters_[size_++] = static_cast<char>(unit);
        }
    }

    // The text as an integer, if it is one in the range of the type.
    template <typename Integer>
    [[nodiscard]] bool Read(Integer& integer) const {
        const auto [end, error] = std::from_chars(characters_, characters_ + size_, integer);
        return error == std::errc() && end == characters_ + size_;
    }

    [[nodiscard]] double ReadDouble() const {
        double number = 0;
        const auto [end, error] = std::from_chars(characters_, characters_ + size_, number);
        if (end != characters_ + size_ || error == std::errc::invalid_argument) RefuseText(text_);
        if (error == std::errc::result_out_of_range) RefuseRange(text_);
        if (!std::isfinite(number)) RefuseText(text_);
        return number;
    }

  private:
    std::u16string_view text_;
    char characters_[400]{};
    std::size_t size_ = 0;
};

template <typename Integer>
NumberTransfer PutInteger(std::u16string_view text, SQLPOINTER data,
                          Integer most = std::numeric_limits<Integer>::max()) {
    const Digits digits(text);
    Integer integer = 0;
    bool lostFraction = false;
    if (!digits.Read(integer)) {
        const double number = digits.ReadDouble();
        const double whole = std::trunc(number);
        const double beyond = std::ldexp(1.0, std::numeric_limits<Integer>::digits);
        if (whole < static_cast<double>(std::numeric_limits<Integer>::min()) || whole >= beyond) {
            RefuseRange(text);
        }
        integer = static_cast<Integer>(whole);
        lostFraction = whole != number;
    }
    if (integer > most) RefuseRange(text);
    PutNumber(integer, data);
    return {sizeof(Integer), lostFraction};
}

template <typename Floating>
NumberTransfer PutFloating(std::u16string_view text, SQLPOINTER data) {
    const double number = Digits(text).ReadDouble();
    if (std::fabs(number) > static_cast<double>(std::numeric_limits<Floating>::max())) RefuseRange(text);
    PutNumber(static_cast<Floating>(number), data);
    return {sizeof(Floating), false};
}

}  // namespace

SQLLEN NumberSize(SQLSMALLINT type) {
    switch (type) {
        case SQL_C_BIT:
        case SQL_C_TINYINT:
        case SQL_C_STINYINT:
        case SQL_C_UTINYINT:
            return sizeof(std::int8_t);
        case SQL_C_SHORT:
        case SQL_C_SSHORT:
        case SQL_C_USHORT:
            return sizeof(std::int16_t);
        case SQL_C_LONG:
        case SQL_C_SLONG:
        case SQL_C_ULONG:
        case SQL_C_FLOAT:
            return sizeof(std::int32_t);
        case SQL_C_SBIGINT:
        case SQL_C_UBIGINT:
        case SQL_C_DOUBLE:
            return sizeof(std::int64_t);
        default:
            return 0;
    }
}

NumberTransfer PutNumberValue(std::u16string_view text, SQLSMALLINT type, SQLPOINTER data) {
    switch (type) {
        case SQL_C_BIT:
            return PutInteger<std::uint8_t>(text, data, 1);
        case SQL_C_TINYINT:
        case SQL_C_STINYINT:
            return PutInteger<std::int8_t>(text, data);
        case SQL_C_UTINYINT:
            return PutInteger<std::uint8_t>(text, data);
        case SQL_C_SHORT:
        case SQL_C_SSHORT:
            return PutInteger<std::int16_t>(text, data);
        case SQL_C_USHORT:
            return PutInteger<std::uint16_t>(text, data);
        case SQL_C_LONG:
        case SQL_C_SLONG:
            return PutInteger<std::int32_t>(text, data);
        case SQL_C_ULONG:
            return PutInteger<std::uint32_t>(text, data);
        case SQL_C_SBIGINT:
            return PutInteger<std::int64_t>(text, data);
        case SQL_C_UBIGINT:
            return PutInteger<std::uint64_t>(text, data);
        case SQL_C_FLOAT:
            return PutFloating<float>(text, data);
        case SQL_C_DOUBLE:
            return PutFloating<double>(text, data);
        default:
            throw OdbcError(u"07006", u"The value cannot be fetched as this type: columns are texts.");
    }
}

}  // namespace NOdbcDriver
