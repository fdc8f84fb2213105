// The sizes with which the structures of the C interface begin. A host that was built with an older header
// gives a smaller one: its structure is the beginning of today's.
#pragma once

#include <cstddef>

namespace NXls2Tki {

// Whether the library knows all members of the host's structure, and the host all of the first version's,
// which has `firstSize` bytes.
template <typename Structure>
bool HasKnownSize(const Structure* structure, std::size_t firstSize) {
    return structure != nullptr && structure->size >= firstSize && structure->size <= sizeof(Structure);
}

}  // namespace NXls2Tki
