// A workbook's file: a zip archive of parts.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "workbook/part_fault.h"
#include "workbook/workbook_file.h"

struct zip_file;

namespace NWorkbook::NXlsx {

// Limits on what one file may ask for, far beyond any workbook that people work with.
inline constexpr std::uint64_t kMostBytesOfDirectory = std::uint64_t{16} << 20;  // about 200,000 parts
inline constexpr std::uint64_t kMostInflatedBytes = std::uint64_t{2} << 30;      // of all parts that are read
// Worksheets become 10 to 30 times as large when they are unpacked.
inline constexpr std::uint64_t kMostInflation = 100;
inline constexpr std::uint64_t kInflatedBytesForAll = std::uint64_t{256} << 20;  // whatever the file's size
// Elements and pieces of text; the largest table of formulas has 250 million.
inline constexpr std::uint64_t kMostPieces = 300'000'000;

class Package {
  public:
    // Throws WorkbookError if the file is no zip archive or is a known kind of other document.
    explicit Package(std::unique_ptr<WorkbookFile> file);
    Package(const Package&) = delete;
    Package& operator=(const Package&) = delete;
    ~Package();

    // Names are compared as PartKey says; no two parts have the same.
    [[nodiscard]] bool Has(std::string_view part) const;

    [[nodiscard]] std::uint64_t BytesOfFile() const { return file_->Size(); }

    // To be called with the number of elements and pieces of text that were read. False: there are too many.
    bool CountPieces(std::uint64_t count) {
        pieces_ += count;
        return pieces_ <= kMostPieces;
    }

    // The sentences about this file.
    [[nodiscard]] WorkbookError Error(std::u16string_view what) const { return file_->Error(what); }
    [[nodiscard]] WorkbookError PartError(std::string_view part, const PartFault& fault) const;
    [[nodiscard]] WorkbookError LineError(std::string_view part, std::int32_t line,
                                          const PartFault& fault) const;

  private:
    friend class PartReader;
    struct Archive;

    void OpenArchive();
    void ListParts();
    // Of a part, in the zip library's words unless it failed because the file cannot be read.
    [[nodiscard]] WorkbookError ZipError(std::string_view part, const char* words) const;

    std::unique_ptr<WorkbookFile> file_;
    std::unique_ptr<Archive> archive_;
    std::map<std::string, std::uint64_t> parts_;  // by PartKey
    std::uint64_t inflated_ = 0;
    std::uint64_t mostInflated_;
    std::uint64_t pieces_ = 0;
};

// Reads one part from its beginning to its end.
class PartReader {
  public:
    // `part` has to outlive it. Throws WorkbookError, as Read does, for a part that is missing or damaged.
    PartReader(Package& package, std::string_view part);
    PartReader(const PartReader&) = delete;
    PartReader& operator=(const PartReader&) = delete;
    ~PartReader();

    // Returns how many bytes there are, 0 at the end, where the part's checksum has been found to match.
    std::size_t Read(char* bytes, std::size_t capacity);

  private:
    Package& package_;
    std::string_view part_;
    zip_file* file_ = nullptr;
};

}  // namespace NWorkbook::NXlsx
