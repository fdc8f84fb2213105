// What is wrong with the numbers of a table.
#pragma once

#include <optional>
#include <string>

#include "checks/collector.h"
#include "checks/duplicates.h"
#include "checks/number_form.h"
#include "checks/table.h"
#include "document/row_number.h"

namespace NChecks {

// How many cells of a kind there are, and the row of the first.
struct Tally {
    std::size_t count = 0;
    std::size_t first = kNowhere;

    void Add(std::size_t row) {
        if (count++ == 0) first = row;
    }
};

// The cells of a number column by what they look like. A cell may count more than once.
struct NumberTallies {
    // Those whose numbers the document has exactly.
    Tally codes;           // SAE codes
    Tally codesBySize[4];  // those of 3, 5, 7 and 9 characters
    Tally hexCodes;        // those of them that could be hexadecimal numbers
    Tally prefixed;        // hexadecimal with 0x
    Tally hexWords;        // hexadecimal without 0x, with a letter
    Tally digits;          // digits alone
    Tally leadingZeros;    // those of them that begin with a zero and are read as decimal
    // Digits that are another number in hexadecimal than in decimal, too long ones among them.
    Tally dependentDigits;
    // Hexadecimal without 0x where that is not supported.
    Tally refusedHexWords;
    // Digits, or with 0x, where only SAE codes are supported. They are reported with the column.
    Tally refusedNumbers;
};

// Row by row, and then the columns as a whole.
class NumberChecks {
  public:
    NumberChecks(const Table& table, const Wishes& wishes, Collector& collector)
        : table_(table), wishes_(wishes), collector_(collector), reader_(table.layout, table.notation) {}

    // The rows in their order, without the header.
    void LookAtRow(std::size_t row);
    void Finish();

  private:
    struct Cell {
        Place place;
        std::u16string_view text;
        VSimpleXMLCreation::NumberRole role;
    };

    std::optional<std::uint32_t> ExactNumber(const Cell& cell);
    void Count(const Cell& cell, const VSimpleXMLCreation::NumberReader::Reading& reading);
    [[nodiscard]] const VCSVReader::HeldValue* HeldIn(const Place& place) const;
    void ReportEmpty(const Cell& cell);
    void ReportRange(const Cell& cell, Verdict verdict);
    void ReportUnreadable(const Cell& cell);
    void ReportExponent(const Cell& cell);
    bool ReportHeader(const Cell& cell);
    void ReportAsUnreadable(const Cell& cell);
    void ReportRefusedNumbers();
    std::u16string Outcome(std::size_t row);
    [[nodiscard]] std::u16string Texts(std::size_t row) const;

    const Table& table_;
    const Wishes& wishes_;
    Collector& collector_;
    VSimpleXMLCreation::NumberReader reader_;
    NumberTallies tallies_[2];
    Duplicates duplicates_;
};

}  // namespace NChecks
