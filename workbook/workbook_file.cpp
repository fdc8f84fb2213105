#include "workbook/workbook_file.h"

#include "platform/format.h"
#include "workbook/utf16.h"

namespace NWorkbook {

WorkbookFile::WorkbookFile(std::u16string_view path) : path_(path), bytes_(path) {
    if (!NPlatform::FindReadableFile(path_, fullPath_) || !bytes_.IsOpen()) throw Error(u"cannot be opened.");
    if (Size() > kMostBytesOfFile) throw Error(u"is too large: it has more than 512 MiB.");
}

void WorkbookFile::Read(std::uint64_t offset, char* bytes, std::size_t count) const {
    std::error_code reason;
    if (!bytes_.ReadAt(offset, bytes, count, &reason)) throw ReadError(reason);
}

WorkbookError WorkbookFile::Error(std::u16string_view what) const {
    return WorkbookError(NPlatform::Format(kMostUnitsOfMessage, u"'%s' %s", {path_, what}));
}

WorkbookError WorkbookFile::ReadError(std::error_code reason) const {
    if (!reason) return Error(u"cannot be read: it has become shorter since it was opened.");
    return Error(u"cannot be read: " + Show(reason.message()) + u".");
}

std::u16string Show(std::string_view text) {
    constexpr std::size_t kMostBytes = 300;
    return ToUtf16(text.substr(0, kMostBytes));
}

}  // namespace NWorkbook
