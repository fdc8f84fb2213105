// A file that may be a workbook, open for reading.
#pragma once

#include <string>
#include <string_view>
#include <system_error>

#include "platform/files.h"
#include "workbook/error.h"

namespace NWorkbook {

// Far beyond any workbook that people work with.
inline constexpr std::uint64_t kMostBytesOfFile = std::uint64_t{512} << 20;

class WorkbookFile {
  public:
    // Messages name the path as it is given. Throws WorkbookError if the file cannot be opened or is larger
    // than kMostBytesOfFile.
    explicit WorkbookFile(std::u16string_view path);

    [[nodiscard]] const std::u16string& Path() const { return path_; }
    [[nodiscard]] const std::u16string& FullPath() const { return fullPath_; }
    // For a library that reads the file by itself; the others use Read.
    [[nodiscard]] const NPlatform::InputFile& Bytes() const { return bytes_; }
    [[nodiscard]] std::uint64_t Size() const { return bytes_.Size(); }

    // Reads `count` bytes from `offset` on. Throws WorkbookError if they are not all there.
    void Read(std::uint64_t offset, char* bytes, std::size_t count) const;

    // "'path' what", a sentence about this file.
    [[nodiscard]] WorkbookError Error(std::u16string_view what) const;
    // For a failure of Bytes().ReadAt, with the reason it gave.
    [[nodiscard]] WorkbookError ReadError(std::error_code reason) const;

  private:
    std::u16string path_;
    std::u16string fullPath_;
    NPlatform::InputFile bytes_;
};

// The most UTF-16 units of a sentence about a workbook.
inline constexpr std::size_t kMostUnitsOfMessage = 2000;

// Somebody else's words for use in such a sentence: UTF-8, cut where they are very long.
std::u16string Show(std::string_view text);

}  // namespace NWorkbook
