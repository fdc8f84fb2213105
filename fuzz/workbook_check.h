// What must hold for every workbook that can be opened.
#pragma once

#include <string_view>

namespace NFuzz {

// Opens the bytes as a workbook and reads all of it. Where nothing would be lost, it is saved and opened
// again too.
void CheckWorkbook(std::string_view bytes);

}  // namespace NFuzz
