#include "xml/buffers.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace NTamriskUtil::NBuffers {

namespace {

template <typename Unit>
Unit* Grow(Unit*& start, Unit*& end, std::size_t size) {
    const auto capacity = static_cast<std::size_t>(end - start);
    if (size <= capacity) return start;
    const std::size_t grown = std::max(size, 2 * capacity);
    if (grown > std::numeric_limits<std::size_t>::max() / sizeof(Unit)) return nullptr;
    auto* const moved = static_cast<Unit*>(std::realloc(start, grown * sizeof(Unit)));
    if (moved == nullptr) return nullptr;
    start = moved;
    end = moved + grown;
    return start;
}

}  // namespace

char* VCommonBuffers::GetCharBuffer(std::size_t size) {
    return Grow(mpCharBufferStart, mpCharBufferEnd, size);
}

char16_t* VCommonBuffers::GetWideBuffer(std::size_t size) {
    return Grow(mpWideBufferStart, mpWideBufferEnd, size);
}

VCommonBuffers::~VCommonBuffers() {
    std::free(mpCharBufferStart);
    std::free(mpWideBufferStart);
}

}  // namespace NTamriskUtil::NBuffers
