// Whole text files, 8-bit and UTF-8.
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <memory>

#include "platform/files.h"
#include "platform/linux/file_descriptor.h"
#include "platform/linux/paths.h"
#include "platform/linux/utf8.h"

namespace NPlatform {

namespace {

constexpr std::size_t kPiece = std::size_t{1} << 18;

// Turns the bytes of a piece of the file into UTF-16. Returns how many bytes at the end it leaves for the
// next piece because they may be the beginning of a character; none when it is the last piece.
using Decoder = std::size_t (*)(const char* bytes, std::size_t count, bool isLast, TextBuffer& text);

std::size_t Widen(const char* bytes, std::size_t count, bool, TextBuffer& text) {
    char16_t* const out = text.Extend(count);
    for (std::size_t index = 0; index < count; ++index) out[index] = static_cast<unsigned char>(bytes[index]);
    return 0;
}

// Widens the ASCII characters at the front, most of them many at a time. `out` has room for `count` units.
std::size_t WidenAscii(const char* bytes, std::size_t count, char16_t* out) {
    constexpr std::size_t kStride = 16;
    std::size_t done = 0;
    for (; count - done >= kStride; done += kStride) {
        unsigned char all = 0;
        for (std::size_t index = 0; index < kStride; ++index)
            all |= static_cast<unsigned char>(bytes[done + index]);
        if (all >= 0x80) break;
        for (std::size_t index = 0; index < kStride; ++index) {
            out[done + index] = static_cast<unsigned char>(bytes[done + index]);
        }
    }
    for (; done < count && static_cast<unsigned char>(bytes[done]) < 0x80; ++done) {
        out[done] = static_cast<unsigned char>(bytes[done]);
    }
    return done;
}

std::size_t DecodeUtf8Piece(const char* bytes, std::size_t count, bool isLast, TextBuffer& text) {
    const std::size_t sizeBefore = text.Size();
    char16_t* const begin = text.Extend(count);  // no sequence has more units than bytes
    char16_t* out = begin;
    const char* const last = bytes + count;
    while (bytes != last) {
        const std::size_t ascii = WidenAscii(bytes, static_cast<std::size_t>(last - bytes), out);
        bytes += ascii;
        out += ascii;
        if (bytes == last) break;
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

// Takes out every carriage return that stands before a line feed and returns how many bytes are left.
std::size_t DropCarriageReturns(char* bytes, std::size_t count) {
    const char* const end = bytes + count;
    const char* next = bytes;
    char* out = bytes;
    while (next != end) {
        const auto* found =
            static_cast<const char*>(std::memchr(next, '\r', static_cast<std::size_t>(end - next)));
        const char* const kept = found == nullptr ? end : found;
        const auto size = static_cast<std::size_t>(kept - next);
        if (out != next) std::memmove(out, next, size);
        out += size;
        if (found == nullptr) break;
        next = found + 1;
        if (next == end || *next != '\n') *out++ = '\r';
    }
    return static_cast<std::size_t>(out - bytes);
}

void DropCarriageReturns(TextBuffer& text) {
    char16_t* const units = text.Extend(0) - text.Size();
    std::size_t kept = 0;
    for (std::size_t index = 0; index < text.Size(); ++index) {
        const bool endsLine = units[index] == u'\r' && index + 1 < text.Size() && units[index + 1] == u'\n';
        if (!endsLine) units[kept++] = units[index];
    }
    text.Truncate(kept);
}

// Reads to the end of the file. False: the system reported an error on the way.
bool ReadPieces(const FileDescriptor& file, Decoder decode, bool isBytes, TextBuffer& text) {
    const auto buffer = std::make_unique_for_overwrite<char[]>(kPiece);
    std::size_t used = 0;
    for (bool isLast = false; !isLast;) {
        const ssize_t count = read(file.Get(), buffer.get() + used, kPiece - used);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        isLast = count == 0;
        used += static_cast<std::size_t>(count);
        // The carriage return at the end waits for the next piece, which may begin with a line feed.
        const bool holdsReturn = isBytes && !isLast && buffer[used - 1] == '\r';
        std::size_t size = holdsReturn ? used - 1 : used;
        if (isBytes) size = DropCarriageReturns(buffer.get(), size);
        const std::size_t left = decode(buffer.get(), size, isLast, text);
        std::memmove(buffer.get(), buffer.get() + size - left, left);
        used = left;
        if (holdsReturn) buffer[used++] = '\r';
    }
    return true;
}

struct Format {
    Decoder decode;
    bool isBytes;  // else units of two bytes
    off_t begin;   // where the text begins, behind the byte-order mark
};

Format DetectFormat(const FileDescriptor& file, TextEncoding encoding) {
    if (encoding == TextEncoding::EightBit) return {Widen, true, 0};
    char mark[3] = {};
    const ssize_t size = pread(file.Get(), mark, sizeof mark, 0);
    if (size >= 2 && std::memcmp(mark, "\xFF\xFE", 2) == 0) return {DecodeUtf16Piece, false, 2};
    const bool isMarked = size == 3 && std::memcmp(mark, "\xEF\xBB\xBF", 3) == 0;
    return {DecodeUtf8Piece, true, isMarked ? 3 : 0};
}

TextFileResult ReadFile(std::u16string_view path, TextEncoding encoding, TextBuffer& text) {
    text.Release();
    const FileDescriptor file = OpenRegularFile(PathToBytes(path));
    struct stat status {};
    if (!file.IsOpen() || fstat(file.Get(), &status) != 0) return TextFileResult::NotOpened;
    if (status.st_size > static_cast<off_t>(kLargestTextFile)) return TextFileResult::TooLarge;
    const Format format = DetectFormat(file, encoding);
    text.Reserve(static_cast<std::size_t>(status.st_size) + 1);
    if (lseek(file.Get(), format.begin, SEEK_SET) < 0 ||
        !ReadPieces(file, format.decode, format.isBytes, text)) {
        return TextFileResult::Failed;
    }
    if (!format.isBytes) DropCarriageReturns(text);
    if (text.Size() > 0 && text.View().back() != u'\n') text.Append(u"\n");
    return TextFileResult::Read;
}

}  // namespace

constinit Replaceable<TextFileResult(std::u16string_view, TextEncoding, TextBuffer&)> ReadTextFile{ReadFile};

}  // namespace NPlatform
