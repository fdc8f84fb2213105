#include "fuzz/memory_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace NFuzz {

MemoryFile::MemoryFile(std::string_view bytes) : descriptor_(memfd_create("input", 0)) {
    const auto size = static_cast<ssize_t>(bytes.size());
    Require(descriptor_ >= 0 && write(descriptor_, bytes.data(), bytes.size()) == size,
            "there is room for a file");
}

MemoryFile::~MemoryFile() { close(descriptor_); }

std::u16string MemoryFile::Path() const {
    const std::string number = std::to_string(descriptor_);
    return u"/proc/self/fd/" + std::u16string(number.begin(), number.end());
}

void Require(bool holds, const char* promise) {
    if (holds) return;
    std::fprintf(stderr, "Broken: %s\n", promise);
    std::abort();
}

}  // namespace NFuzz
