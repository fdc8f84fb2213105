// Many small sequences in few large blocks: the cells of a table, the parts of a document tree.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "platform/array.h"

namespace NPlatform {

// Builds one run of elements at a time. A closed run lies in one piece and stays where it is until the store
// goes back to before it, or is destroyed. T is a plain type.
template <typename T>
class RunStore {
  public:
    // The open run.
    [[nodiscard]] const T* Run() const { return run_; }
    [[nodiscard]] std::size_t RunSize() const { return static_cast<std::size_t>(end_ - run_); }

    // Adds `count` elements, which the caller writes, and returns where they are.
    T* Extend(std::size_t count) {
        if (count > static_cast<std::size_t>(limit_ - end_)) Grow(count);
        end_ += count;
        return end_ - count;
    }

    void Push(T element) { *Extend(1) = element; }

    // The elements may lie in this store's adopted block, at or after the end of the open run.
    void Append(const T* elements, std::size_t count) {
        std::copy(elements, elements + count, Extend(count));
    }

    // Drops what is after the first `size` elements of the open run.
    void Truncate(std::size_t size) { end_ = run_ + size; }

    // Ends the open run, starts an empty one and returns where the closed one is.
    T* Close() {
        T* const closed = run_;
        run_ = end_;
        return closed;
    }

    // Continues in this block, from its beginning. What is in it stays readable until it is written over.
    void Adopt(Array<T> block) {
        const std::size_t size = RunSize();
        const T* const run = run_;
        run_ = block.Data();
        limit_ = run_ + block.Size();
        blocks_.push_back(std::move(block));
        end_ = std::copy(run, run + size, run_);
    }

    // A state to come back to.
    struct Mark {
        std::size_t blocks;
        std::size_t blockSize;
        std::size_t used;  // of the last block
    };

    // The open run has to be empty here and when it is gone back to.
    [[nodiscard]] Mark MarkHere() const {
        return {blocks_.size(), blockSize_,
                blocks_.empty() ? 0 : static_cast<std::size_t>(end_ - blocks_.back().Data())};
    }

    // Drops the runs that were closed since; their memory is used again.
    void GoBack(const Mark& mark) {
        blocks_.resize(mark.blocks);
        blockSize_ = mark.blockSize;
        run_ = end_ = blocks_.empty() ? nullptr : blocks_.back().Data() + mark.used;
        limit_ = blocks_.empty() ? nullptr : blocks_.back().Data() + blocks_.back().Size();
    }

  private:
    static constexpr std::size_t kFirstBlock = (std::size_t{1} << 14) / sizeof(T);
    static constexpr std::size_t kLargestBlock = (std::size_t{1} << 25) / sizeof(T);

    // Moves the open run to a new block that has room for `count` more.
    void Grow(std::size_t count) {
        blockSize_ = std::clamp(2 * blockSize_, kFirstBlock, kLargestBlock);
        // A block that holds the open run alone is not used after the move.
        Array<T> old;
        if (!blocks_.empty() && blocks_.back().Data() == run_) {
            old = std::move(blocks_.back());
            blocks_.pop_back();
        }
        Adopt(Array<T>(std::max(blockSize_, 2 * (RunSize() + count))));
    }

    std::vector<Array<T>> blocks_;
    std::size_t blockSize_ = 0;
    T* run_ = nullptr;
    T* end_ = nullptr;
    T* limit_ = nullptr;
};

}  // namespace NPlatform
