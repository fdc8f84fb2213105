#include "workbook/file_kind.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace NWorkbook {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kZip = "PK";
constexpr std::string_view kCompound = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv;

// An entry of a compound file's directory begins with its name, of 64 bytes; the size of the name, with its
// NUL, and the kind of the entry (2, a stream) follow.
constexpr std::size_t kEntrySize = 128;
constexpr std::size_t kSizeOffset = 64;
constexpr std::string_view kEncryptedName = "E\0n\0c\0r\0y\0p\0t\0e\0d\0P\0a\0c\0k\0a\0g\0e\0\0\0"sv;
constexpr std::string_view kEncryptedSize = "\x22\0\2"sv;

void Read(const NPlatform::InputFile& file, std::uint64_t offset, char* bytes, std::size_t count) {
    std::error_code reason;
    if (!file.ReadAt(offset, bytes, count, &reason)) throw ReadFailure{reason};
}

bool IsEncryptedEntry(std::string_view entry) {
    return entry.starts_with(kEncryptedName) && entry.substr(kSizeOffset).starts_with(kEncryptedSize);
}

// Looks at every place where an entry can stand rather than following the directory, which may be damaged.
bool HasEncryptedEntry(const NPlatform::InputFile& file) {
    constexpr std::size_t kPiece = std::size_t{1} << 16;
    std::vector<char> bytes(kPiece);
    for (std::uint64_t offset = 0; offset < file.Size(); offset += kPiece) {
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(kPiece, file.Size() - offset));
        Read(file, offset, bytes.data(), count);
        for (std::size_t at = 0; at + kEntrySize <= count; at += kEntrySize) {
            if (IsEncryptedEntry({bytes.data() + at, kEntrySize})) return true;
        }
    }
    return false;
}

}  // namespace

FileKind KindOf(const NPlatform::InputFile& file) {
    char bytes[kCompound.size()];
    if (file.Size() < sizeof bytes) return FileKind::SomethingElse;
    Read(file, 0, bytes, sizeof bytes);
    const std::string_view beginning(bytes, sizeof bytes);
    if (beginning.starts_with(kZip)) return FileKind::Zip;
    if (beginning != kCompound) return FileKind::SomethingElse;
    return HasEncryptedEntry(file) ? FileKind::Encrypted : FileKind::OlderWorkbook;
}

}  // namespace NWorkbook
