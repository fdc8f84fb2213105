// Any bytes to the cells of an .xls workbook: its records alone, or the compound file around them.
#include "fuzz/memory_file.h"
#include "fuzz/workbook_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    NFuzz::CheckWorkbook(NFuzz::Bytes(data, size));
    return 0;
}
