// The installer library's list of drivers.
#pragma once

#include <string>
#include <vector>

namespace NPlatform {

// The texts of a list in which each ends with a NUL, and an empty one ends the list. What is not complete
// does not count.
template <typename Text>
std::vector<Text> TextsIn(const Text& list) {
    std::vector<Text> texts;
    std::size_t begin = 0;
    for (std::size_t end = 0;
         (end = list.find(typename Text::value_type{}, begin)) != Text::npos && end > begin;) {
        texts.push_back(list.substr(begin, end - begin));
        begin = end + 1;
    }
    return texts;
}

}  // namespace NPlatform
