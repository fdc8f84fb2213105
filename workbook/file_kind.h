// What kind of file somebody takes for a workbook.
#pragma once

#include <system_error>

#include "platform/files.h"

namespace NWorkbook {

enum class FileKind {
    Zip,            // maybe a workbook
    OlderWorkbook,  // .xls
    Encrypted,      // needs a password
    SomethingElse,
};

// Thrown while a file's bytes are read.
struct ReadFailure {
    std::error_code reason;  // none: the file has become shorter
};

// Decided by the content, not by the name. Throws ReadFailure.
FileKind KindOf(const NPlatform::InputFile& file);

}  // namespace NWorkbook
