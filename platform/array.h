// Memory for texts and tables.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>
#include <utility>

namespace NPlatform {

// An owned array of plain elements that is not filled, and grows without copying where the system can move
// memory. Movable, not copyable.
template <typename T>
class Array {
  public:
    Array() = default;
    explicit Array(std::size_t size) { Grow(size); }
    Array(Array&& other) noexcept { Swap(other); }
    Array& operator=(Array&& other) noexcept {
        Array(std::move(other)).Swap(*this);
        return *this;
    }
    ~Array() { std::free(elements_); }

    [[nodiscard]] T* Data() const { return elements_; }
    [[nodiscard]] std::size_t Size() const { return size_; }

    // Keeps the elements. Throws std::bad_alloc if there is no memory; the array is then unchanged.
    void Grow(std::size_t size) {
        if (size > std::numeric_limits<std::size_t>::max() / sizeof(T)) throw std::bad_alloc();
        void* const grown = std::realloc(elements_, size * sizeof(T));
        if (grown == nullptr && size > 0) throw std::bad_alloc();
        elements_ = static_cast<T*>(grown);
        size_ = size;
    }

  private:
    void Swap(Array& other) noexcept {
        std::swap(elements_, other.elements_);
        std::swap(size_, other.size_);
    }

    T* elements_ = nullptr;
    std::size_t size_ = 0;
};

}  // namespace NPlatform
