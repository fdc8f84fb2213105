// Numbers as the file has them, with their lowest byte first.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace NWorkbook::NXls {

static_assert(std::endian::native == std::endian::little);

template <typename T>
T Load(const char* bytes) {
    T number;
    std::memcpy(&number, bytes, sizeof number);
    return number;
}

}  // namespace NWorkbook::NXls
