#include "workbook/xls/compound_file.h"

#include <algorithm>

#include "platform/format.h"
#include "workbook/name_index.h"
#include "workbook/part_fault.h"
#include "workbook/xls/bytes.h"

namespace NWorkbook::NXls {

namespace {

// The header, and where its numbers stand.
constexpr std::size_t kHeaderSize = 512;
constexpr std::size_t kSectorShift = 0x1E;
constexpr std::size_t kDirectory = 0x30;
constexpr std::size_t kLongestShort = 0x38;
constexpr std::size_t kShortTable = 0x3C;
constexpr std::size_t kMoreOfTable = 0x44;
constexpr std::size_t kPartsOfTable = 0x4C;
constexpr std::size_t kPartsInHeader = 109;

constexpr std::size_t kShortSectorSize = 64;
constexpr std::uint32_t kEndOfChain = 0xFFFF'FFFE;

constexpr std::size_t kEntrySize = 128;
constexpr std::size_t kMostBytesOfName = 64;
constexpr std::uint8_t kStreamKind = 2;

std::vector<std::uint32_t> LoadNumbers(const char* bytes, std::size_t count) {
    std::vector<std::uint32_t> numbers(count);
    if (count > 0) std::memcpy(numbers.data(), bytes, count * sizeof numbers[0]);
    return numbers;
}

std::size_t LoadSectorSize(const char* header) {
    const auto shift = Load<std::uint16_t>(header + kSectorShift);
    if (shift == 9 || shift == 12) return std::size_t{1} << shift;
    throw PartFault{Fault::Damaged, u"its header gives a size of sectors that there is not"};
}

// What is behind the header, which takes a whole sector.
Stream BehindHeader(const WorkbookFile& file, std::size_t sectorSize) {
    Stream bytes(file);
    if (file.Size() > sectorSize) bytes.Append(sectorSize, file.Size() - sectorSize);
    return bytes;
}

}  // namespace

struct CompoundFile::Entry {
    std::u16string name;
    std::uint8_t kind;
    std::uint32_t before;  // the entries of a folder are a tree
    std::uint32_t behind;
    std::uint32_t inside;
    std::uint32_t firstSector;
    std::uint64_t size;
};

CompoundFile::CompoundFile(const WorkbookFile& file) : file_(file), sectors_{Stream(file), 0, {}, {}} {
    char header[kHeaderSize];
    if (file.Size() < kHeaderSize) throw PartFault{Fault::Damaged, u"its header is cut off"};
    file.Read(0, header, kHeaderSize);
    const std::size_t sectorSize = LoadSectorSize(header);
    sectors_ = MakeSpace(BehindHeader(file, sectorSize), sectorSize);
    shortTable_ = Load<std::uint32_t>(header + kShortTable);
    longestShort_ = Load<std::uint32_t>(header + kLongestShort);
    ReadTable(header);
    Stream directory =
        Follow(sectors_, Load<std::uint32_t>(header + kDirectory), kMostBytesOfDirectory, Stream(file));
    directory_.resize(directory.Size() - directory.Size() % kEntrySize);
    directory.Read(0, directory_.data(), directory_.size());
    if (directory_.empty()) throw PartFault{Fault::Damaged, u"its directory is missing"};
}

std::optional<Stream> CompoundFile::Find(std::u16string_view name) {
    const std::optional<std::uint32_t> index = FindEntry(name);
    if (!index) return std::nullopt;
    const Entry entry = EntryAt(*index);
    if (entry.size >= longestShort_) return Follow(sectors_, entry.firstSector, entry.size, Stream(file_));
    Space shortSectors = ReadShortSectors();
    return Follow(shortSectors, entry.firstSector, entry.size, Stream(file_));
}

CompoundFile::Space CompoundFile::MakeSpace(Stream bytes, std::size_t sectorSize) {
    const std::uint64_t count = (bytes.Size() + sectorSize - 1) / sectorSize;
    return {std::move(bytes), sectorSize, {}, std::vector<bool>(static_cast<std::size_t>(count))};
}

void CompoundFile::Take(Space& space, std::uint32_t sector) {
    if (space.isTaken[sector]) {
        throw PartFault{Fault::Damaged,
                        NPlatform::Format(100, u"sector 0x%08lx belongs to two chains", {sector})};
    }
    space.isTaken[sector] = true;
}

// Adds at most `size` bytes to the empty stream `chain`.
Stream CompoundFile::Follow(Space& space, std::uint32_t first, std::uint64_t size, Stream chain) {
    for (std::uint32_t sector = first; chain.Size() < size && sector < space.isTaken.size();) {
        Take(space, sector);
        const std::uint64_t offset = std::uint64_t{sector} * space.sectorSize;
        const std::uint64_t there = std::min<std::uint64_t>(space.sectorSize, space.bytes.Size() - offset);
        chain.Append(space.bytes.PlaceOf(offset), std::min(there, size - chain.Size()));
        if (there < space.sectorSize || sector >= space.table.size()) break;
        sector = space.table[sector];
    }
    return chain;
}

CompoundFile::Table CompoundFile::ReadNumbers(std::uint32_t sector) {
    std::vector<char> bytes(sectors_.sectorSize);
    const std::uint64_t offset = std::uint64_t{sector} * sectors_.sectorSize;
    const auto there =
        static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), sectors_.bytes.Size() - offset));
    sectors_.bytes.Read(offset, bytes.data(), there);
    Table numbers = LoadNumbers(bytes.data(), there / sizeof(std::uint32_t));
    numbers.resize(bytes.size() / sizeof(std::uint32_t), kEndOfChain);
    return numbers;
}

// Reads no more of it than the file has sectors, whatever the header says.
void CompoundFile::ReadTable(const char* header) {
    const std::size_t sectorCount = sectors_.isTaken.size();
    const std::size_t numbersInPart = sectors_.sectorSize / sizeof(std::uint32_t);
    const std::size_t partCount = (sectorCount + numbersInPart - 1) / numbersInPart;
    Table parts = LoadNumbers(header + kPartsOfTable, kPartsInHeader);
    auto more = Load<std::uint32_t>(header + kMoreOfTable);
    while (parts.size() < partCount && more < sectorCount) {
        Take(sectors_, more);
        const Table numbers = ReadNumbers(more);
        parts.insert(parts.end(), numbers.begin(), numbers.end() - 1);
        more = numbers.back();
    }
    parts.resize(std::min(parts.size(), partCount));
    for (const std::uint32_t part : parts) {
        Table numbers(numbersInPart, kEndOfChain);
        if (part < sectorCount) {
            Take(sectors_, part);
            numbers = ReadNumbers(part);
        }
        sectors_.table.insert(sectors_.table.end(), numbers.begin(), numbers.end());
    }
}

std::uint32_t CompoundFile::EntryCount() const {
    return static_cast<std::uint32_t>(directory_.size() / kEntrySize);
}

CompoundFile::Entry CompoundFile::EntryAt(std::uint32_t index) const {
    const char* const bytes = directory_.data() + index * kEntrySize;
    // With its NUL.
    const auto nameBytes = std::clamp<std::size_t>(Load<std::uint16_t>(bytes + 0x40), 2, kMostBytesOfName);
    std::u16string name(nameBytes / sizeof(char16_t) - 1, u'\0');
    std::memcpy(name.data(), bytes, name.size() * sizeof(char16_t));
    // Files of the third version do not use the upper half of the size.
    const bool isLong = sectors_.sectorSize > kHeaderSize;
    const std::uint64_t size = isLong ? Load<std::uint64_t>(bytes + 0x78) : Load<std::uint32_t>(bytes + 0x78);
    return {.name = std::move(name),
            .kind = Load<std::uint8_t>(bytes + 0x42),
            .before = Load<std::uint32_t>(bytes + 0x44),
            .behind = Load<std::uint32_t>(bytes + 0x48),
            .inside = Load<std::uint32_t>(bytes + 0x4C),
            .firstSector = Load<std::uint32_t>(bytes + 0x74),
            .size = size};
}

// Looks at the whole tree: not every program sorts it.
std::optional<std::uint32_t> CompoundFile::FindEntry(std::u16string_view name) const {
    const std::u16string wanted = WithoutAsciiCase(name);
    std::vector<bool> isSeen(EntryCount());
    std::vector<std::uint32_t> open{EntryAt(0).inside};
    while (!open.empty()) {
        const std::uint32_t index = open.back();
        open.pop_back();
        if (index >= isSeen.size() || isSeen[index]) continue;
        isSeen[index] = true;
        const Entry entry = EntryAt(index);
        if (entry.kind == kStreamKind && WithoutAsciiCase(entry.name) == wanted) return index;
        open.push_back(entry.before);
        open.push_back(entry.behind);
    }
    return std::nullopt;
}

CompoundFile::Space CompoundFile::ReadShortSectors() {
    const Entry root = EntryAt(0);
    Space space = MakeSpace(Follow(sectors_, root.firstSector, root.size, Stream(file_)), kShortSectorSize);
    Stream table = Follow(sectors_, shortTable_, space.isTaken.size() * sizeof(std::uint32_t), Stream(file_));
    std::vector<char> bytes(static_cast<std::size_t>(table.Size()));
    table.Read(0, bytes.data(), bytes.size());
    space.table = LoadNumbers(bytes.data(), bytes.size() / sizeof(std::uint32_t));
    return space;
}

}  // namespace NWorkbook::NXls
