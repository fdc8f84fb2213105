#include "workbook/xlsx/date_serial.h"

#include <charconv>
#include <chrono>

namespace NWorkbook::NXlsx {

namespace {

using std::chrono::day;
using std::chrono::month;
using std::chrono::sys_days;
using std::chrono::year;

constexpr int kMostMinutesOfZone = 14 * 60;

// Takes the fields of a date from the front of a text; after the first thing that is not there, none.
class Fields {
  public:
    explicit Fields(std::string_view text) : text_(text) {}

    // Exactly this number of digits.
    int Number(std::size_t digits) {
        int value = 0;
        const char* const end = text_.data() + digits;
        isGood_ = isGood_ && text_.size() >= digits && text_[0] != '-' &&
                  std::from_chars(text_.data(), end, value).ptr == end;
        if (isGood_) text_.remove_prefix(digits);
        return value;
    }

    // The digits after a decimal point, if there is one.
    double Fraction() {
        double value = 0;
        if (!isGood_ || !text_.starts_with('.')) return 0;
        const auto [end, error] =
            std::from_chars(text_.data(), text_.data() + text_.size(), value, std::chars_format::fixed);
        isGood_ = error == std::errc();
        text_.remove_prefix(static_cast<std::size_t>(end - text_.data()));
        return value;
    }

    bool Take(char mark) {
        const bool isThere = isGood_ && text_.starts_with(mark);
        if (isThere) text_.remove_prefix(1);
        return isThere;
    }

    void Require(bool condition) { isGood_ = isGood_ && condition; }
    [[nodiscard]] bool IsAtEnd() const { return isGood_ && text_.empty(); }

  private:
    std::string_view text_;
    bool isGood_ = true;
};

double TakeDate(Fields& fields, bool isFrom1904) {
    const int years = fields.Number(4);
    fields.Require(fields.Take('-'));
    const auto months = static_cast<unsigned>(fields.Number(2));
    fields.Require(fields.Take('-'));
    const auto days = static_cast<unsigned>(fields.Number(2));
    const std::chrono::year_month_day date(year{years}, month{months}, day{days});
    fields.Require(date.ok());
    if (!date.ok()) return 0;
    const sys_days first = isFrom1904 ? sys_days(year{1904} / 1 / 1) : sys_days(year{1899} / 12 / 31);
    const sys_days afterLeapDay = year{1900} / 3 / 1;
    const int leapDay = !isFrom1904 && sys_days(date) >= afterLeapDay ? 1 : 0;
    const auto serial = (sys_days(date) - first).count() + leapDay;
    fields.Require(serial >= 0);
    return static_cast<double>(serial);
}

double TakeTime(Fields& fields) {
    const int hours = fields.Number(2);
    fields.Require(fields.Take(':'));
    const int minutes = fields.Number(2);
    const int seconds = fields.Take(':') ? fields.Number(2) : 0;
    const double fraction = fields.Fraction();
    fields.Require(hours < 24 && minutes < 60 && seconds < 60);
    return ((hours * 60 + minutes) * 60 + seconds + fraction) / 86400;
}

void TakeZone(Fields& fields) {
    if (fields.Take('Z') || !(fields.Take('+') || fields.Take('-'))) return;
    const int hours = fields.Number(2);
    fields.Require(fields.Take(':'));
    const int minutes = fields.Number(2);
    fields.Require(minutes < 60 && hours * 60 + minutes <= kMostMinutesOfZone);
}

}  // namespace

std::optional<double> DateSerial(std::string_view text, bool isFrom1904) {
    Fields fields(text);
    double serial = 0;
    const bool isTime = text.size() > 2 && text[2] == ':';
    if (!isTime) serial = TakeDate(fields, isFrom1904);
    if (isTime || fields.Take('T')) {
        serial += TakeTime(fields);
        TakeZone(fields);
    }
    return fields.IsAtEnd() ? std::optional(serial) : std::nullopt;
}

}  // namespace NWorkbook::NXlsx
