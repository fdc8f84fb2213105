#include "workbook/xls/record_reader.h"

#include <algorithm>

namespace NWorkbook::NXls {

namespace {

constexpr std::size_t kHeaderSize = 4;
constexpr std::size_t kPiece = std::size_t{1} << 14;

}  // namespace

void RecordReader::Next() {
    offset_ = next_;
    type_ = 0;
    if (!Buffer(kHeaderSize)) throw PartFault{Fault::Damaged, u"the stream ends here"};
    type_ = Load<std::uint16_t>(AtNext());
    const std::size_t size = Load<std::uint16_t>(AtNext() + 2);
    if (!Buffer(kHeaderSize + size)) throw PartFault{Fault::Damaged, u"the stream ends within the record"};
    data_ = {AtNext() + kHeaderSize, size};
    next_ += kHeaderSize + size;
}

bool RecordReader::Continue() {
    if (!Buffer(kHeaderSize) || Load<RecordType>(AtNext()) != RecordType::Continue) return false;
    Next();
    return true;
}

bool RecordReader::Buffer(std::size_t count) {
    const std::uint64_t end = begin_ + bytes_.size();
    if (next_ >= begin_ && next_ + count <= end) return true;
    if (next_ > stream_.Size() || count > stream_.Size() - next_) return false;
    const std::uint64_t left = stream_.Size() - next_;
    bytes_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(std::max(count, kPiece), left)));
    stream_.Read(next_, bytes_.data(), bytes_.size());
    begin_ = next_;
    return true;
}

}  // namespace NWorkbook::NXls
