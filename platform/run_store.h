// Many small sequences in few large blocks: the cells of a table, the texts of a document tree.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace NPlatform {

// Builds one run of elements at a time. A closed run lies in one piece and stays where it is as long as the
// store lives; nothing is released before that. T is a plain number or character type.
template <typename T>
class RunStore {
  public:
    // The open run.
    [[nodiscard]] const T* Run() const { return run_; }
    [[nodiscard]] std::size_t RunSize() const { return static_cast<std::size_t>(end_ - run_); }

    void Push(T element) {
        if (end_ == limit_) Grow(1);
        *end_++ = element;
    }

    void Append(const T* elements, std::size_t count) {
        if (count > static_cast<std::size_t>(limit_ - end_)) Grow(count);
        end_ = std::copy_n(elements, count, end_);
    }

    // Drops what is behind the first `size` elements of the open run.
    void Truncate(std::size_t size) { end_ = run_ + size; }

    // Ends the open run, starts an empty one and returns where the closed one is.
    const T* Close() {
        const T* closed = run_;
        run_ = end_;
        return closed;
    }

  private:
    static constexpr std::size_t kFirstBlock = std::size_t{1} << 12;
    static constexpr std::size_t kLargestBlock = std::size_t{1} << 20;

    // Moves the open run to a new block that has room for `count` more.
    void Grow(std::size_t count) {
        const std::size_t size = RunSize();
        blockSize_ = std::clamp(2 * blockSize_, kFirstBlock, kLargestBlock);
        const std::size_t capacity = std::max(blockSize_, 2 * (size + count));
        auto block = std::make_unique_for_overwrite<T[]>(capacity);
        end_ = std::copy_n(run_, size, block.get());
        limit_ = block.get() + capacity;
        // A block that held the open run alone is of no more use.
        if (!blocks_.empty() && blocks_.back().get() == run_) blocks_.pop_back();
        run_ = block.get();
        blocks_.push_back(std::move(block));
    }

    std::vector<std::unique_ptr<T[]>> blocks_;
    std::size_t blockSize_ = 0;
    T* run_ = nullptr;
    T* end_ = nullptr;
    T* limit_ = nullptr;
};

}  // namespace NPlatform
