// The texts of a workbook: many short texts in few large blocks.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

#include "platform/run_store.h"

namespace NWorkbook {

// Where a text of the store begins. Its length is before it, a NUL after it. Stays valid as long as
// the store lives.
using TextPlace = const char16_t*;

// The longest text of one cell, in UTF-16 units: far beyond what spreadsheet programs allow (32,767).
inline constexpr std::size_t kMostUnitsOfText = std::size_t{1} << 24;

class TextStore {
  public:
    TextStore() { Begin(); }
    TextStore(const TextStore&) = delete;
    TextStore& operator=(const TextStore&) = delete;

    // Adds to the text that is being built.
    void Append(std::u16string_view text) { units_.Append(text.data(), text.size()); }
    // Makes room for `count` units, which the caller writes, and returns where they are.
    char16_t* Extend(std::size_t count) { return units_.Extend(count); }
    // Keeps the first `size` units of the text that is being built.
    void Truncate(std::size_t size) { units_.Truncate(size + kLengthUnits); }
    // The text that is being built.
    [[nodiscard]] std::u16string_view Open() const {
        return {units_.Run() + kLengthUnits, units_.RunSize() - kLengthUnits};
    }

    // Ends the text that is being built and begins an empty one. The text has at most kMostUnitsOfText units.
    TextPlace Close() {
        const auto size = static_cast<std::uint32_t>(Open().size());
        units_.Push(u'\0');
        char16_t* const closed = units_.Close();
        std::memcpy(closed, &size, sizeof size);
        Begin();
        return closed + kLengthUnits;
    }

  private:
    static constexpr std::size_t kLengthUnits = sizeof(std::uint32_t) / sizeof(char16_t);

    void Begin() { units_.Extend(kLengthUnits); }

    NPlatform::RunStore<char16_t> units_;
};

inline std::u16string_view TextAt(TextPlace place) {
    std::uint32_t size = 0;
    std::memcpy(&size, place - sizeof size / sizeof(char16_t), sizeof size);
    return {place, size};
}

}  // namespace NWorkbook
