#include "workbook/xls/stream.h"

#include <algorithm>

#include "workbook/part_fault.h"

namespace NWorkbook::NXls {

void Stream::Append(std::uint64_t place, std::uint64_t count) {
    const bool goesOn = !pieces_.empty() && pieces_.back().place + (size_ - pieces_.back().offset) == place;
    if (!goesOn) pieces_.push_back({size_, place});
    size_ += count;
}

std::vector<Stream::Piece>::const_iterator Stream::PieceAt(std::uint64_t offset) const {
    const auto behind =
        std::upper_bound(pieces_.begin(), pieces_.end(), offset,
                         [](std::uint64_t wanted, const Piece& piece) { return wanted < piece.offset; });
    return behind - 1;
}

std::uint64_t Stream::PlaceOf(std::uint64_t offset) const {
    const auto piece = PieceAt(offset);
    return piece->place + (offset - piece->offset);
}

void Stream::Read(std::uint64_t offset, char* bytes, std::size_t count) {
    if (count > left_) throw PartFault{Fault::TooLarge, u"more than 2 GiB of records would have to be read"};
    left_ -= count;
    if (count == 0) return;
    for (auto piece = PieceAt(offset); count > 0; ++piece) {
        const std::uint64_t end = piece + 1 == pieces_.end() ? size_ : piece[1].offset;
        const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(count, end - offset));
        file_->Read(piece->place + (offset - piece->offset), bytes, part);
        offset += part;
        bytes += part;
        count -= part;
    }
}

}  // namespace NWorkbook::NXls
