#include "cli/file_format.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <string_view>

#include "cli/system.h"
#include "cli/text.h"

namespace NCli {

using namespace std::string_view_literals;

namespace {

constexpr std::size_t kLookedAt = std::size_t{1} << 16;

// From where the file is.
std::string ReadPiece(std::FILE* file) {
    std::string piece(kLookedAt, '\0');
    piece.resize(std::fread(piece.data(), 1, piece.size(), file));
    return piece;
}

bool Holds(std::string_view bytes, std::string_view part) {
    return bytes.find(part) != std::string_view::npos;
}

// A zip archive ends with a list of the names of its files.
FileFormat FormatOfZip(std::FILE* file, std::string_view beginning) {
    constexpr std::size_t kFirstName = 30;
    if (beginning.substr(kFirstName).starts_with("mimetypeapplication/vnd.oasis.opendocument.spreadsheet")) {
        return FileFormat::OpenDocument;
    }
    std::fseek(file, -static_cast<long>(kLookedAt), SEEK_END);  // a shorter one stays where it is
    const std::string end = std::string(beginning) + ReadPiece(file);
    if (Holds(end, "xl/workbook.xml")) return FileFormat::Workbook;
    if (Holds(end, "xl/workbook.bin")) return FileFormat::BinaryWorkbook;
    return Holds(end, "Index/Document.iwa") ? FileFormat::Numbers : FileFormat::Unknown;
}

// A compound file has a directory of what is in it, whose place is in its header.
FileFormat FormatOfCompound(std::FILE* file, std::string_view header) {
    constexpr std::size_t kSectorShift = 30;
    constexpr std::size_t kDirectory = 48;
    if (header.size() < 512) return FileFormat::Unknown;
    const auto byte = [header](std::size_t at) {
        return std::uint32_t{static_cast<unsigned char>(header[at])};
    };
    const std::uint32_t shift = byte(kSectorShift);
    const std::uint32_t sector = byte(kDirectory) | byte(kDirectory + 1) << 8 | byte(kDirectory + 2) << 16;
    if (shift > 12 || std::fseek(file, (static_cast<long>(sector) + 1) << shift, SEEK_SET) != 0) {
        return FileFormat::Unknown;
    }
    const std::string directory = ReadPiece(file);
    return Holds(directory, "W\0o\0r\0k\0b\0o\0o\0k\0\0\0"sv) || Holds(directory, "B\0o\0o\0k\0\0\0"sv)
               ? FileFormat::Workbook
               : FileFormat::Unknown;
}

bool IsMarkup(std::string_view beginning) {
    constexpr std::size_t kLongest = 2000;
    const std::string text = LowerCase(beginning.substr(beginning.find('<'), kLongest));
    for (const char* const tag : {"<!doctype html", "<html", "<head", "<meta", "<style", "<body", "<table"}) {
        if (text.starts_with(tag)) return true;
    }
    return text.starts_with("<?xml") && Holds(text, "urn:schemas-microsoft-com:office:spreadsheet");
}

bool IsText(std::string_view beginning) {
    if (beginning.starts_with("\xFF\xFE")) return true;  // UTF-16
    return std::all_of(beginning.begin(), beginning.end(), [](unsigned char byte) {
        return byte >= 0x20 || byte == '\t' || byte == '\n' || byte == '\r';
    });
}

}  // namespace

FileFormat FormatOf(const std::filesystem::path& path) {
    const File file = OpenFile(path, "rb");
    if (!file) return FileFormat::Unknown;
    const std::string beginning = ReadPiece(file.get());
    if (beginning.empty()) return FileFormat::Empty;
    if (beginning.starts_with("PK\3\4")) return FormatOfZip(file.get(), beginning);
    if (beginning.starts_with("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"))
        return FormatOfCompound(file.get(), beginning);
    const std::size_t begin = beginning.find_first_not_of("\xEF\xBB\xBF\t\r\n ");
    if (begin != std::string::npos && beginning[begin] == '<') {
        return IsMarkup(beginning) ? FileFormat::Markup : FileFormat::Unknown;
    }
    return IsText(beginning) ? FileFormat::Text : FileFormat::Unknown;
}

}  // namespace NCli
