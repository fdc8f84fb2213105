#include "workbook/xlsx/cell_value.h"

#include <algorithm>
#include <charconv>

namespace NWorkbook::NXlsx {

namespace {

struct ErrorName {
    std::string_view name;
    CellError error;
};

constexpr ErrorName kErrors[] = {
    {"#NULL!", CellError::Null},       {"#DIV/0!", CellError::DivisionByZero},
    {"#VALUE!", CellError::Value},     {"#REF!", CellError::Reference},
    {"#NAME?", CellError::Name},       {"#NUM!", CellError::Number},
    {"#N/A", CellError::NotAvailable}, {"#GETTING_DATA", CellError::GettingData},
};

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

// The exponent of a decimal number; one that is out of all proportion is a large one of its sign.
int ExponentOf(std::string_view digits) {
    constexpr int kLarge = 1'000'000'000;
    if (digits.starts_with('+')) digits.remove_prefix(1);
    int exponent = 0;
    const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    if (error == std::errc()) return std::clamp(exponent, -kLarge, kLarge);
    return digits.starts_with('-') ? -kLarge : kLarge;
}

// Whether a decimal number is below 1, its sign aside.
bool IsBelowOne(std::string_view text) {
    const std::size_t size = std::min(text.find_first_of("eE"), text.size());
    const std::size_t first = text.find_first_of("123456789");
    if (first >= size) return true;
    const std::size_t point = std::min(text.find('.'), size);
    const int exponent = size == text.size() ? 0 : ExponentOf(text.substr(size + 1));
    return static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first) + exponent <= 0;
}

}  // namespace

std::optional<double> ParseNumber(std::string_view text) {
    const std::size_t first = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
    // Names of infinity and of what is no number are none here.
    if (first == text.size() || (!IsDigit(text[first]) && text[first] != '.')) return std::nullopt;
    if (text[0] == '+') text.remove_prefix(1);
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (stop != end || error == std::errc::invalid_argument) return std::nullopt;
    if (error == std::errc()) return number;
    return IsBelowOne(text) ? std::optional(0.0) : std::nullopt;
}

std::optional<std::size_t> ParseIndex(std::string_view text) {
    std::size_t index = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, index);
    return stop == end && error == std::errc() ? std::optional(index) : std::nullopt;
}

std::optional<bool> ParseBool(std::string_view text) {
    if (text == "1" || text == "true" || text == "TRUE") return true;
    if (text == "0" || text == "false" || text == "FALSE") return false;
    return std::nullopt;
}

std::optional<CellError> ParseError(std::string_view text) {
    if (!text.starts_with('#')) return std::nullopt;
    for (const ErrorName& known : kErrors) {
        if (known.name == text) return known.error;
    }
    return CellError::Value;
}

}  // namespace NWorkbook::NXlsx
