// A compound file: folders and streams in one file, in sectors that form chains.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "workbook/xls/stream.h"

namespace NWorkbook::NXls {

inline constexpr std::size_t kMostBytesOfDirectory = std::size_t{16} << 20;  // 131,072 entries

// A chain that leaves the file or its table of sectors ends there, so that the stream is shorter than it
// should be: a file that was cut off is read as far as it goes. A sector that belongs to a chain twice, or to
// two chains, is refused.
class CompoundFile {
  public:
    // Reads the tables and the directory. The file has to outlive it. Throws PartFault for what is damaged,
    // WorkbookError when the file cannot be read.
    explicit CompoundFile(const WorkbookFile& file);

    [[nodiscard]] bool Has(std::u16string_view name) const { return FindEntry(name).has_value(); }
    // The stream of this name in the outermost folder, without regard to the case of ASCII letters; nothing
    // if there is none. To be called once for a stream. Throws as the constructor.
    [[nodiscard]] std::optional<Stream> Find(std::u16string_view name);

  private:
    // For each sector the next one of its chain.
    using Table = std::vector<std::uint32_t>;

    // Where sectors lie: the file behind its header, or the stream of short sectors.
    struct Space {
        Stream bytes;
        std::size_t sectorSize;
        Table table;
        std::vector<bool> isTaken;  // whether a chain has the sector
    };

    struct Entry;

    static Space MakeSpace(Stream bytes, std::size_t sectorSize);
    static void Take(Space& space, std::uint32_t sector);
    static Stream Follow(Space& space, std::uint32_t first, std::uint64_t size, Stream chain);
    // Of one sector; what a file that is cut off lacks is the end of a chain.
    Table ReadNumbers(std::uint32_t sector);
    void ReadTable(const char* header);
    [[nodiscard]] Entry EntryAt(std::uint32_t index) const;
    [[nodiscard]] std::uint32_t EntryCount() const;
    // The index of the stream's entry.
    [[nodiscard]] std::optional<std::uint32_t> FindEntry(std::u16string_view name) const;
    Space ReadShortSectors();

    const WorkbookFile& file_;
    Space sectors_;
    std::vector<char> directory_;
    std::uint32_t shortTable_ = 0;    // the first sector of the table of short ones
    std::uint32_t longestShort_ = 0;  // streams of fewer bytes are in short sectors
};

}  // namespace NWorkbook::NXls
