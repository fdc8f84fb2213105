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
        Truth,   // the text of these is empty
        Error,
    };

    std::uint32_t row;
    std::uint32_t column;
    Kind kind;
    double number;              // of a number
    std::u16string_view shown;  // else TRUE, FALSE or as #N/A; lives as long as the program
};

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

    std::vector<HeldValue> values;  // row by row
    BehindEdge below;
    BehindEdge right;        // of the rows of the table alone
    bool isComplete = true;  // false: Excel did not answer all that it was asked
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
