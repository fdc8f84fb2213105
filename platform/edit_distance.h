// How much two texts differ.
#pragma once

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string_view>
#include <utility>
#include <vector>

namespace NPlatform {

// How many characters have to be changed, put in or left out, to make one text of the other. For short texts:
// it takes as long as the product of their lengths.
template <typename Character, typename Equal>
std::size_t EditDistance(std::basic_string_view<Character> one, std::basic_string_view<Character> other,
                         Equal areEqual) {
    std::vector<std::size_t> row(other.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < one.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < other.size(); ++j) {
            const std::size_t change = diagonal + (areEqual(one[i], other[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({change, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

}  // namespace NPlatform
