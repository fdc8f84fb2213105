// What kind of file somebody takes for a workbook.
#pragma once

#include "platform/files.h"

namespace NWorkbook {

enum class FileKind {
    Zip,            // maybe a workbook
    OlderWorkbook,  // .xls
    Encrypted,      // needs a password
    SomethingElse,
};

// Decided by the content, not by the name. A file that cannot be read is something else.
FileKind KindOf(const NPlatform::InputFile& file);

}  // namespace NWorkbook
