// Numbers that several rows have.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace NChecks {

// Sorts, by digits, so that no choice of numbers makes it slow.
class Duplicates {
  public:
    // `row`: above those that were added before, and below 2^32.
    void Add(std::int32_t number, std::size_t row) {
        entries_.push_back(std::uint64_t{static_cast<std::uint32_t>(number)} << 32 | row);
    }

    // For each row that has the number of an earlier one, in the order of the rows: calls `visit` with the
    // row and the first that has the number. Once.
    template <typename Visit>
    void ForEach(Visit visit) {
        if (entries_.empty()) return;
        const std::size_t last = RowOf(entries_.back());
        const std::vector<std::uint32_t> first = FirstRows(last + 1);
        for (std::size_t row = 0; row <= last; ++row) {
            if (first[row] != kNone) visit(row, std::size_t{first[row]});
        }
    }

  private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    static std::uint32_t RowOf(std::uint64_t entry) { return static_cast<std::uint32_t>(entry); }
    static std::uint32_t NumberOf(std::uint64_t entry) { return static_cast<std::uint32_t>(entry >> 32); }
    void Sort();
    std::vector<std::uint32_t> FirstRows(std::size_t rows);

    std::vector<std::uint64_t> entries_;
};

}  // namespace NChecks
