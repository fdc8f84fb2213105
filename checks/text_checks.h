// What is wrong with the characters of a table.
#pragma once

#include "checks/collector.h"
#include "checks/table.h"

namespace NChecks {

class TextChecks {
  public:
    TextChecks(const Table& table, const Wishes& wishes, Collector& collector)
        : table_(table), wishes_(wishes), collector_(collector) {}

    // The rows in any order. A row of ordinary characters costs next to nothing.
    void LookAtRow(std::size_t row);
    void Finish();

  private:
    struct Suspects;

    void LookAtCells(std::size_t row);
    void LookAtCell(Place place, std::u16string_view cell);
    std::size_t LookAtByte(Place place, std::u16string_view cell, std::size_t index, Suspects& suspects);
    void AddStrays(Place place, std::size_t count);
    [[nodiscard]] bool IsEndOfTable(Place place) const;
    // Whether the text is UTF-8 that was read as 8-bit text, except for this number of characters.
    [[nodiscard]] bool IsMostlyUtf8(std::size_t strays) const;
    void Report(Place place, std::u16string_view cell, const Suspects& suspects);
    void LookForRows(Place place, std::u16string_view cell);
    [[nodiscard]] bool IsWritten(Place place) const;

    const Table& table_;
    const Wishes& wishes_;
    Collector& collector_;
    bool isUtf8AsEightBit_ = false;
    std::size_t sequences_ = 0;   // characters of UTF-8 that were read as 8-bit text
    std::size_t strays_ = 0;      // characters that may be bytes, but not of UTF-8
    std::vector<Place> strayAt_;  // cells with the first of them
};

}  // namespace NChecks
