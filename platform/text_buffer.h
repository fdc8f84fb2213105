// One long text in one piece of memory that is not filled before it is written: whole files, whole documents.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include "platform/array.h"

namespace NPlatform {

// Owns its text. Movable, not copyable. Views stay valid until the text next grows or is cleared.
class TextBuffer {
  public:
    TextBuffer() = default;
    TextBuffer(TextBuffer&& other) noexcept
        : units_(std::move(other.units_)), size_(std::exchange(other.size_, 0)) {}
    TextBuffer& operator=(TextBuffer&& other) noexcept {
        units_ = std::move(other.units_);
        size_ = std::exchange(other.size_, 0);
        return *this;
    }
    ~TextBuffer() = default;

    [[nodiscard]] std::u16string_view View() const { return {units_.Data(), size_}; }
    [[nodiscard]] std::size_t Size() const { return size_; }

    // Makes room for `capacity` units in all.
    void Reserve(std::size_t capacity) {
        if (capacity > units_.Size()) units_.Grow(capacity);
    }

    void Append(std::u16string_view text) { std::copy_n(text.data(), text.size(), Extend(text.size())); }

    // Adds `count` units and returns where they are; the caller writes them.
    char16_t* Extend(std::size_t count) {
        if (count > units_.Size() - size_) units_.Grow(std::max(size_ + count, 2 * units_.Size()));
        size_ += count;
        return units_.Data() + size_ - count;
    }

    // Drops what is after the first `size` units.
    void Truncate(std::size_t size) { size_ = std::min(size, size_); }

    // Hands out the memory, with the text at its beginning, and leaves an empty text.
    Array<char16_t> Take() {
        size_ = 0;
        return std::move(units_);
    }

  private:
    Array<char16_t> units_;
    std::size_t size_ = 0;
};

}  // namespace NPlatform
