// The numbers of a worksheet by their cells.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace VCSVReader {

// An ordered map in one piece of memory: it is filled in its own order, row by row.
class NumberMap {
  public:
    void Clear() { entries_.clear(); }

    // The cell must come after all cells in the map.
    void Append(std::uint32_t row, std::uint32_t column, double number) {
        entries_.push_back({Key(row, column), number});
    }

    // The number of the cell; null where it has none. Valid until the map changes.
    [[nodiscard]] const double* Find(std::uint32_t row, std::uint32_t column) const {
        const std::uint64_t key = Key(row, column);
        const auto entry = std::ranges::lower_bound(entries_, key, {}, &Entry::key);
        return entry == entries_.end() || entry->key != key ? nullptr : &entry->number;
    }

  private:
    struct Entry {
        std::uint64_t key;
        double number;
    };

    static std::uint64_t Key(std::uint32_t row, std::uint32_t column) {
        return (std::uint64_t{row} << 32) | column;
    }

    std::vector<Entry> entries_;
};

}  // namespace VCSVReader
