// The processes that a handler of signals may have to end.
#pragma once

#include <atomic>
#include <cstddef>

#include "cli/process.h"

namespace NCli {

// Process is the system's number or handle of a process; the value of Process() stands for none. It has to be
// lock-free to be read by a handler.
template <typename Process>
class ProcessSlots {
  public:
    using Slot = std::atomic<Process>;

    // A slot that nobody has; another thread may take the same one meanwhile, and then the next is tried.
    // Whoever takes it clears it before the process's number may become another one's.
    Slot& Take(Process process) {
        for (std::size_t index = 0;; index = (index + 1) % kMostProcesses) {
            Process none{};
            if (slots_[index].compare_exchange_strong(none, process)) return slots_[index];
        }
    }

    [[nodiscard]] const Slot* begin() const { return slots_; }
    [[nodiscard]] const Slot* end() const { return slots_ + kMostProcesses; }

  private:
    static_assert(Slot::is_always_lock_free);
    Slot slots_[kMostProcesses] = {};
};

}  // namespace NCli
