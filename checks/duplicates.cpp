#include "checks/duplicates.h"

#include <array>

namespace NChecks {

// By number; rows stay in their order.
void Duplicates::Sort() {
    constexpr unsigned kBits = 11;
    constexpr std::size_t kDigits = std::size_t{1} << kBits;
    std::vector<std::uint64_t> sorted(entries_.size());
    for (unsigned shift = 32; shift < 64; shift += kBits) {
        std::array<std::size_t, kDigits + 1> next{};
        for (const std::uint64_t entry : entries_) ++next[(entry >> shift) % kDigits + 1];
        for (std::size_t digit = 1; digit < kDigits; ++digit) next[digit] += next[digit - 1];
        for (const std::uint64_t entry : entries_) sorted[next[(entry >> shift) % kDigits]++] = entry;
        entries_.swap(sorted);
    }
}

std::vector<std::uint32_t> Duplicates::FirstRows(std::size_t rows) {
    Sort();
    std::vector<std::uint32_t> first(rows, kNone);
    std::uint64_t begin = entries_.front();
    for (std::size_t index = 1; index < entries_.size(); ++index) {
        if (NumberOf(entries_[index]) == NumberOf(begin)) {
            first[RowOf(entries_[index])] = RowOf(begin);
        } else {
            begin = entries_[index];
        }
    }
    return first;
}

}  // namespace NChecks
