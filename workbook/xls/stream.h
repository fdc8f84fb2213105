// A stream: bytes that lie in pieces of a file.
#pragma once

#include <cstdint>
#include <vector>

#include "workbook/workbook_file.h"

namespace NWorkbook::NXls {

// All reading of one stream, so that a file cannot ask for the same bytes again and again.
inline constexpr std::uint64_t kMostBytesRead = std::uint64_t{2} << 30;

class Stream {
  public:
    // Empty. The file has to outlive it.
    explicit Stream(const WorkbookFile& file) : file_(&file) {}

    // Continues the stream with bytes of the file, which has them.
    void Append(std::uint64_t place, std::uint64_t count);

    [[nodiscard]] std::uint64_t Size() const { return size_; }
    // Where the byte at the offset, which is below Size(), lies in the file.
    [[nodiscard]] std::uint64_t PlaceOf(std::uint64_t offset) const;

    // Reads bytes that lie in the stream. Throws WorkbookError when the file cannot be read, PartFault when
    // more than kMostBytesRead were read.
    void Read(std::uint64_t offset, char* bytes, std::size_t count);

  private:
    struct Piece {
        std::uint64_t offset;  // in the stream
        std::uint64_t place;   // in the file
    };

    // The one that holds the byte.
    [[nodiscard]] std::vector<Piece>::const_iterator PieceAt(std::uint64_t offset) const;

    const WorkbookFile* file_;
    std::vector<Piece> pieces_;
    std::uint64_t size_ = 0;
    std::uint64_t left_ = kMostBytesRead;
};

}  // namespace NWorkbook::NXls
