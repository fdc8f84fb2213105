// Whole text files, 8-bit and UTF-8.
#include <algorithm>
#include <cstring>
#include <memory>

#include "platform/files.h"
#include "platform/utf8.h"

namespace NPlatform {

namespace {

constexpr std::size_t kPiece = std::size_t{1} << 18;

// Turns the bytes of a piece of the file into UTF-16. Returns how many bytes at the end it leaves for the
// next piece because more may belong to them; none when it is the last piece.
using Decoder = std::size_t (*)(const char* bytes, std::size_t count, bool isLast, TextBuffer& text);

template <TextEncoding encoding>
bool IsPlain(char byte) {
    return byte != '\r' && (encoding == TextEncoding::EightBit || static_cast<unsigned char>(byte) < 0x80);
}

// The same for eight bytes in one number: a byte of `returns` is zero where the text has a carriage return,
// and the subtraction borrows from the highest bit of the first such byte.
template <TextEncoding encoding>
bool AreEightPlain(const char* bytes) {
    constexpr std::uint64_t kOnes = 0x0101010101010101;
    std::uint64_t all = 0;
    std::memcpy(&all, bytes, sizeof all);
    const std::uint64_t returns = all ^ '\r' * kOnes;
    const std::uint64_t special =
        ((returns - kOnes) & ~returns) | (encoding == TextEncoding::EightBit ? 0 : all);
    return (special & 0x80 * kOnes) == 0;
}

// Widens the characters at the front that need no closer look. `out` has room for `count` units.
template <TextEncoding encoding>
std::size_t WidenPlain(const char* bytes, std::size_t count, char16_t* out) {
    std::size_t done = 0;
    for (; count - done >= 8 && AreEightPlain<encoding>(bytes + done); done += 8) {
        for (std::size_t index = done; index < done + 8; ++index)
            out[index] = static_cast<unsigned char>(bytes[index]);
    }
    for (; done < count && IsPlain<encoding>(bytes[done]); ++done)
        out[done] = static_cast<unsigned char>(bytes[done]);
    return done;
}

template <TextEncoding encoding>
std::size_t DecodeBytes(const char* bytes, std::size_t count, bool isLast, TextBuffer& text) {
    const std::size_t sizeBefore = text.Size();
    char16_t* const begin = text.Extend(count);  // no sequence has more units than bytes
    char16_t* out = begin;
    const char* const last = bytes + count;
    while (true) {
        const std::size_t plain = WidenPlain<encoding>(bytes, static_cast<std::size_t>(last - bytes), out);
        bytes += plain;
        out += plain;
        if (bytes == last) break;
        if (*bytes == '\r') {
            if (bytes + 1 == last && !isLast) break;
            if (bytes + 1 == last || bytes[1] != '\n') *out++ = u'\r';
            ++bytes;
            continue;
        }
        const Utf8Sequence sequence = DecodeUtf8(bytes, last);
        if (sequence.cutShort && !isLast) break;
        out = EncodeUtf16(sequence.character, out);
        bytes += sequence.length;
    }
    text.Truncate(sizeBefore + static_cast<std::size_t>(out - begin));
    return static_cast<std::size_t>(last - bytes);
}

// Little-endian UTF-16; half a unit at the end of the file is malformed.
std::size_t DecodeUtf16Piece(const char* bytes, std::size_t count, bool isLast, TextBuffer& text) {
    char16_t* out = text.Extend(count / 2);
    for (std::size_t index = 0; index + 1 < count; index += 2) {
        const auto low = static_cast<unsigned char>(bytes[index]);
        const auto high = static_cast<unsigned char>(bytes[index + 1]);
        *out++ = static_cast<char16_t>(low | high << 8);
    }
    if (count % 2 == 0) return 0;
    if (isLast) *text.Extend(1) = static_cast<char16_t>(kReplacementCharacter);
    return isLast ? 0 : 1;
}

// For UTF-16, whose pieces are not cut at lines.
void DropCarriageReturns(TextBuffer& text) {
    char16_t* const units = text.Extend(0) - text.Size();
    std::size_t kept = 0;
    for (std::size_t index = 0; index < text.Size(); ++index) {
        const bool endsLine = units[index] == u'\r' && index + 1 < text.Size() && units[index + 1] == u'\n';
        if (!endsLine) units[kept++] = units[index];
    }
    text.Truncate(kept);
}

struct TextFormat {
    Decoder decode;
    std::uint64_t begin;  // where the text begins, after the byte-order mark
};

TextFormat DetectFormat(const InputFile& file, TextEncoding encoding) {
    if (encoding == TextEncoding::EightBit) return {DecodeBytes<TextEncoding::EightBit>, 0};
    char mark[3] = {};
    if (!file.ReadAt(0, mark, std::min<std::uint64_t>(file.Size(), sizeof mark))) return {};
    if (std::memcmp(mark, "\xFF\xFE", 2) == 0) return {DecodeUtf16Piece, 2};
    const bool isMarked = std::memcmp(mark, "\xEF\xBB\xBF", 3) == 0;
    return {DecodeBytes<TextEncoding::Utf8>, isMarked ? 3U : 0U};
}

// Reads all of the text. False: the system reported an error on the way, or the file is not as long any more.
bool ReadPieces(const InputFile& file, const TextFormat& format, TextBuffer& text) {
    const auto buffer = std::make_unique_for_overwrite<char[]>(kPiece);
    std::size_t used = 0;
    std::uint64_t offset = format.begin;
    do {
        const std::size_t count = std::min<std::uint64_t>(file.Size() - offset, kPiece - used);
        if (!file.ReadAt(offset, buffer.get() + used, count)) return false;
        offset += count;
        used += count;
        const std::size_t left = format.decode(buffer.get(), used, offset == file.Size(), text);
        std::memmove(buffer.get(), buffer.get() + used - left, left);
        used = left;
    } while (offset < file.Size());
    return true;
}

bool HasGrown(const InputFile& file) {
    char byte = 0;
    return file.ReadAt(file.Size(), &byte, 1);
}

TextFileResult ReadFile(std::u16string_view path, TextEncoding encoding, TextBuffer& text) {
    text.Truncate(0);
    const InputFile file(path);
    if (!file.IsOpen()) return TextFileResult::NotOpened;
    if (file.Size() > kLargestTextFile) return TextFileResult::TooLarge;
    const TextFormat format = DetectFormat(file, encoding);
    text.Reserve(static_cast<std::size_t>(file.Size()) + 1);
    if (format.decode == nullptr || !ReadPieces(file, format, text) || HasGrown(file)) {
        return TextFileResult::Failed;
    }
    if (format.decode == DecodeUtf16Piece) DropCarriageReturns(text);
    if (text.Size() > 0 && text.View().back() != u'\n') text.Append(u"\n");
    return TextFileResult::Read;
}

}  // namespace

constinit Replaceable<TextFileResult(std::u16string_view, TextEncoding, TextBuffer&)> ReadTextFile{ReadFile};

}  // namespace NPlatform
