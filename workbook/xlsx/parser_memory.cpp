#include "workbook/xlsx/parser_memory.h"

#include <cstddef>
#include <cstdlib>
#include <new>

#include "workbook/xlsx/xml_part.h"

namespace NWorkbook::NXlsx {

namespace {

// In front of each block.
union Header {
    std::size_t size;
    std::max_align_t alignment;
};

thread_local std::size_t inUse = 0;

void* Resize(void* block, std::size_t size) {
    Header* const header = block == nullptr ? nullptr : static_cast<Header*>(block) - 1;
    const std::size_t oldSize = header == nullptr ? 0 : header->size;
    if (size > kMostParserMemory - (inUse - oldSize)) return nullptr;
    auto* const resized = static_cast<Header*>(std::realloc(header, sizeof(Header) + size));
    if (resized == nullptr) return nullptr;
    resized->size = size;
    inUse += size - oldSize;
    return resized + 1;
}

void* Allocate(std::size_t size) { return Resize(nullptr, size); }

void Free(void* block) {
    if (block == nullptr) return;
    Header* const header = static_cast<Header*>(block) - 1;
    inUse -= header->size;
    std::free(header);
}

constexpr XML_Memory_Handling_Suite kMemory = {Allocate, Resize, Free};

}  // namespace

LimitedParser MakeLimitedParser() {
    LimitedParser parser(XML_ParserCreate_MM(nullptr, &kMemory, nullptr));
    if (parser == nullptr) throw std::bad_alloc();
    return parser;
}

}  // namespace NWorkbook::NXlsx
