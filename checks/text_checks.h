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
    std::size_t LookAtByte(std::u16string_view cell, std::size_t index, Suspects& suspects);
    void Report(Place place, std::u16string_view cell, const Suspects& suspects);
    void LookForRows(Place place, std::u16string_view cell);
    [[nodiscard]] bool IsWritten(Place place) const;

    const Table& table_;
    const Wishes& wishes_;
    Collector& collector_;
    bool isUtf8AsEightBit_ = false;
    bool isOtherEncoding_ = false;  // some character cannot come from UTF-8
};

}  // namespace NChecks
