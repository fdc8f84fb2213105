// What is wrong with a part of a workbook's file, found by somebody who does not know which part it is.
#pragma once

#include <string>

namespace NWorkbook {

enum class Fault { Damaged, TooLarge };

// Whoever reads the part makes a WorkbookError of it, which names the file, the part and the line. `what` is
// the end of that sentence, without the full stop.
struct PartFault {
    Fault fault;
    std::u16string what;
};

}  // namespace NWorkbook
