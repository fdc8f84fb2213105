// The heap of hosts that Microsoft's compiler built. There is none on other systems.
#pragma once

#include <cstddef>

namespace NPlatform {

// A block that such a host can free. Throws std::bad_alloc, also in a process without their runtime library.
void* AllocateForHost(std::size_t bytes);

// Frees a block of the host's or of AllocateForHost.
void FreeOfHost(void* block) noexcept;

}  // namespace NPlatform
