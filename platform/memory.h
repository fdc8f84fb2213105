// Memory for large pieces: whole texts, the blocks of a table or a tree.
//
// A small piece comes from the free store. For a large one the system is asked for large pages: touching
// fresh memory page by page otherwise costs more than all the rest of a conversion.
#pragma once

#include <cstddef>
#include <new>
#include <utility>

namespace NPlatform {

// Null when the memory cannot be had. The memory is aligned for every ordinary type and not filled.
void* AllocateMemory(std::size_t size);

// Moves the content to a piece of `newSize`, larger than `size`; null, and all as it was, when it cannot be
// had. A null `memory` has the size 0.
void* GrowMemory(void* memory, std::size_t size, std::size_t newSize);

// Gives back what AllocateMemory or GrowMemory returned, with its size. Null is allowed, with the size 0.
void FreeMemory(void* memory, std::size_t size);

// An owned array of plain elements, not filled. Movable, not copyable.
template <typename T>
class Block {
  public:
    Block() = default;
    // Throws std::bad_alloc when the memory cannot be had.
    explicit Block(std::size_t size)
        : size_(size), elements_(static_cast<T*>(AllocateMemory(size * sizeof(T)))) {
        if (elements_ == nullptr) throw std::bad_alloc();
    }
    Block(Block&& other) noexcept { Swap(other); }
    Block& operator=(Block&& other) noexcept {
        Block(std::move(other)).Swap(*this);
        return *this;
    }
    ~Block() { FreeMemory(elements_, size_ * sizeof(T)); }

    [[nodiscard]] T* Data() const { return elements_; }
    [[nodiscard]] std::size_t Size() const { return size_; }

  private:
    void Swap(Block& other) noexcept {
        std::swap(size_, other.size_);
        std::swap(elements_, other.elements_);
    }

    std::size_t size_ = 0;
    T* elements_ = nullptr;
};

}  // namespace NPlatform
