// One long text in one piece of memory that is not filled before it is written: whole files, whole documents.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace NPlatform {

// Owns its text. Movable, not copyable. Views stay valid until the text next grows or is cleared.
class TextBuffer {
  public:
    TextBuffer() = default;
    TextBuffer(TextBuffer&& other) noexcept { Swap(other); }
    TextBuffer& operator=(TextBuffer&& other) noexcept {
        TextBuffer(std::move(other)).Swap(*this);
        return *this;
    }

    [[nodiscard]] std::u16string_view View() const { return {units_.get(), size_}; }
    [[nodiscard]] std::size_t Size() const { return size_; }

    // Makes room for `capacity` units in all.
    void Reserve(std::size_t capacity) {
        if (capacity > capacity_) Reallocate(capacity);
    }

    void Append(std::u16string_view text) { std::copy_n(text.data(), text.size(), Extend(text.size())); }

    // Adds `count` units and returns where they are; the caller writes them.
    char16_t* Extend(std::size_t count) {
        if (count > capacity_ - size_) Reallocate(std::max(size_ + count, 2 * capacity_));
        size_ += count;
        return units_.get() + size_ - count;
    }

    // Drops what is behind the first `size` units.
    void Truncate(std::size_t size) { size_ = std::min(size, size_); }

    // Hands out the memory, with the text at its beginning, and leaves an empty text. Ask for the capacity
    // first.
    [[nodiscard]] std::size_t Capacity() const { return capacity_; }
    std::unique_ptr<char16_t[]> Take() {
        size_ = 0;
        capacity_ = 0;
        return std::move(units_);
    }

  private:
    void Swap(TextBuffer& other) noexcept {
        std::swap(units_, other.units_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
    }

    void Reallocate(std::size_t capacity) {
        auto larger = std::make_unique_for_overwrite<char16_t[]>(capacity);
        std::copy_n(units_.get(), size_, larger.get());
        units_ = std::move(larger);
        capacity_ = capacity;
    }

    std::unique_ptr<char16_t[]> units_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

}  // namespace NPlatform
