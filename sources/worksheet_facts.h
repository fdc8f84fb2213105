// What a worksheet has besides the texts of its table. It does not reach the document; it shows what the
// document does not say.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace VCSVReader {

// Rows and columns count from 0.

// A cell whose text in the table is not what the worksheet shows.
struct HeldValue {
    enum class Kind : std::uint8_t {
        Number,  // its text has an exponent, or is another number
        Date,    // or a time; its text is the number by which the workbook counts it
        Truth,   // the text of these is empty
        Error,
        Formula,  // its result was not saved with the workbook
    };

    std::uint32_t row;
    std::uint16_t column;
    Kind kind;
    double number;  // of a number or date; of a truth value 0 or 1, of an error Excel's number for it
};

// As a worksheet shows it: "TRUE", "FALSE", "#N/A".
std::u16string_view ShownTruth(bool truth);
std::u16string_view ShownError(std::int32_t number);

// Cells with a value beyond an edge of the table.
struct BehindEdge {
    std::size_t count = 0;  // of the rows, or columns, that have some
    std::uint32_t row = 0;  // of the first cell
    std::uint32_t column = 0;
    std::u16string text;   // of that cell
    bool isTable = false;  // some row has several cells; or, of columns, one has a cell in the first row
};

struct WorksheetFacts {
    // Null where the text is what the worksheet shows.
    [[nodiscard]] const HeldValue* Find(std::size_t row, std::size_t column) const;

    static constexpr std::size_t kMostValues = 50'000;

    std::vector<HeldValue> values;  // row by row, the first kMostValues
    BehindEdge below;
    BehindEdge right;        // of the rows of the table alone
    bool isComplete = true;  // false: there are more values, or Excel did not answer all that it was asked
};

// For sources that read worksheets.
class WorksheetSource {
  public:
    // From now on reading a worksheet finds its facts, for which it asks Excel for more than the table.
    // If that fails, the table is still read.
    void WantFacts() { facts_.emplace(); }
    // Of the worksheet that was read last; null unless requested.
    [[nodiscard]] const WorksheetFacts* Facts() const { return facts_ ? &*facts_ : nullptr; }

  protected:
    WorksheetSource() = default;
    ~WorksheetSource() = default;
    [[nodiscard]] WorksheetFacts* FactsToFind() { return facts_ ? &*facts_ : nullptr; }

  private:
    std::optional<WorksheetFacts> facts_;
};

}  // namespace VCSVReader
