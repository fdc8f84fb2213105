#include "workbook/xls/texts.h"

#include <algorithm>

#include "platform/format.h"

namespace NWorkbook::NXls {

namespace {

// What the byte in front of the characters says.
constexpr unsigned kIsWide = 0x01;
constexpr unsigned kHasPronunciation = 0x04;
constexpr unsigned kHasFormats = 0x08;

constexpr std::size_t kBytesOfFormat = 4;

}  // namespace

TextPlace TextReader::Read(Fields& fields, std::size_t length) {
    Append(fields, length);
    Spend(budget_.units, store_.Open().size(), u"the workbook's texts have too many characters");
    return store_.Close();
}

std::u16string TextReader::ReadName(Fields& fields, std::size_t length) {
    Append(fields, length);
    std::u16string name(store_.Open());
    store_.Truncate(0);
    return name;
}

void TextReader::Append(Fields& fields, std::size_t length) {
    if (version_ == Version::Biff8) {
        AppendUnicode(fields, length);
    } else {
        AppendBytes(fields, length);
    }
}

void TextReader::AppendUnicode(Fields& fields, std::size_t length) {
    // Some programs end an empty text with its length.
    if (length == 0 && fields.AreAtEnd()) return;
    const unsigned flags = fields.Take<std::uint8_t>();
    const std::size_t formats = (flags & kHasFormats) != 0 ? fields.Take<std::uint16_t>() : 0;
    const std::size_t pronunciation = (flags & kHasPronunciation) != 0 ? fields.Take<std::uint32_t>() : 0;
    AppendUnits(fields, length, (flags & kIsWide) != 0);
    fields.Skip(kBytesOfFormat * formats + pronunciation);
}

// Where another record continues the characters, it begins with a byte that says whether they are wide there.
void TextReader::AppendUnits(Fields& fields, std::size_t count, bool areWide) {
    while (count > 0) {
        if (fields.Left() == 0) areWide = (fields.Take<std::uint8_t>() & kIsWide) != 0;
        const std::size_t unitSize = areWide ? sizeof(char16_t) : 1;
        const std::size_t part = std::min(count, fields.Left() / unitSize);
        if (part == 0 && fields.Left() > 0) throw PartFault{Fault::Damaged, u"half a character ends it"};
        if (part == 0) continue;
        const std::string_view bytes = fields.TakePiece(part * unitSize);
        char16_t* const units = store_.Extend(part);
        if (areWide) {
            std::memcpy(units, bytes.data(), bytes.size());
        } else {
            std::transform(bytes.begin(), bytes.end(), units,
                           [](char byte) { return static_cast<unsigned char>(byte); });
        }
        count -= part;
    }
}

void TextReader::AppendBytes(Fields& fields, std::size_t count) {
    bytes_.clear();
    while (bytes_.size() < count) bytes_ += fields.TakePiece(count - bytes_.size());
    if (!page_.ToUtf16(bytes_, units_)) {
        throw PartFault{Fault::Damaged, NPlatform::Format(100, u"it has a text that is none of code page %d",
                                                          {std::int32_t{codePage_}})};
    }
    store_.Append(units_);
}

}  // namespace NWorkbook::NXls
