// Names and their places in a list, without regard to the case of ASCII letters.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "workbook/ascii_case.h"

namespace NWorkbook {

class NameIndex {
  public:
    // False: the name is there, with the place it was first added with.
    bool Add(std::u16string_view name, std::size_t place) {
        return places_.try_emplace(WithoutAsciiCase(name), place).second;
    }

    [[nodiscard]] std::optional<std::size_t> Find(std::u16string_view name) const {
        const auto found = places_.find(WithoutAsciiCase(name));
        if (found == places_.end()) return std::nullopt;
        return found->second;
    }

  private:
    std::unordered_map<std::u16string, std::size_t> places_;
};

}  // namespace NWorkbook
