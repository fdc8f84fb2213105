#include "platform/memory.h"

#include <sys/mman.h>

#include <cstdlib>
#include <cstring>

namespace NPlatform {

namespace {

constexpr std::size_t kLargePage = std::size_t{1} << 21;
constexpr std::size_t kSmallestLargePiece = 2 * kLargePage;

bool IsLarge(std::size_t size) { return size >= kSmallestLargePiece; }

// Whether the pages are large is the system's choice; the memory serves either way.
void* WithLargePages(void* memory, std::size_t size) {
    if (memory == MAP_FAILED) return nullptr;
    madvise(memory, size, MADV_HUGEPAGE);
    return memory;
}

}  // namespace

void* AllocateMemory(std::size_t size) {
    if (!IsLarge(size)) return std::malloc(size == 0 ? 1 : size);
    return WithLargePages(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0),
                          size);
}

void* GrowMemory(void* memory, std::size_t size, std::size_t newSize) {
    if (!IsLarge(newSize)) return std::realloc(memory, newSize);
    if (IsLarge(size)) return WithLargePages(mremap(memory, size, newSize, MREMAP_MAYMOVE), newSize);
    void* const grown = AllocateMemory(newSize);
    if (grown == nullptr) return nullptr;
    if (memory != nullptr) std::memcpy(grown, memory, size);
    std::free(memory);
    return grown;
}

void FreeMemory(void* memory, std::size_t size) {
    if (IsLarge(size)) {
        munmap(memory, size);
    } else {
        std::free(memory);
    }
}

}  // namespace NPlatform
