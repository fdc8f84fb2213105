// .xls workbooks, byte by byte: records that stand alone, and compound files around them.
#include <gtest/gtest.h>

#include "tests/described_workbook.h"
#include "tests/made_workbook.h"

namespace {

using namespace NWorkbook;
using namespace NTest;
using namespace std::string_literals;

template <typename T>
std::string Le(T number) {
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

std::string U16(std::size_t number) { return Le(static_cast<std::uint16_t>(number)); }
std::string U32(std::size_t number) { return Le(static_cast<std::uint32_t>(number)); }

std::string Record(std::size_t type, const std::string& data) { return U16(type) + U16(data.size()) + data; }
std::string Continue(const std::string& data) { return Record(0x3C, data); }

// A record of the cell in this column of the first row.
std::string CellRecord(std::size_t type, const std::string& value, std::size_t column = 0) {
    return Record(type, U16(0) + U16(column) + U16(15) + value);
}
std::string Formula(const std::string& result) { return CellRecord(0x06, result + U16(0) + U32(0) + U16(0)); }
std::string Rk(std::size_t number) { return CellRecord(0x27E, U32(number)); }

constexpr bool kOld = false;
constexpr bool kNew = true;
const std::string kEnd = Record(0x0A, "");
const std::string kOne = Rk(6);

std::string Begin(bool isNew, std::size_t kind) {
    return Record(0x809, U16(isNew ? 0x600 : 0x500) + U16(kind) + U32(0));
}

// A workbook of one sheet; `globals` are what is said in front of it.
std::string Book(bool isNew, const std::string& globals, const std::string& cells, std::size_t kind = 0,
                 const std::string& name = "S") {
    const std::string text = Le(static_cast<char>(name.size())) + (isNew ? "\0"s : "") + name;
    const auto before = [&](std::size_t offset) {
        return Begin(isNew, 5) + globals +
               Record(0x85, U32(offset) + "\0"s + Le(static_cast<char>(kind)) + text) + kEnd;
    };
    return before(before(0).size()) + Begin(isNew, 0x10) + cells;
}

std::string Strings(const std::string& texts, std::size_t count) {
    return Record(0xFC, U32(count) + U32(count) + texts);
}

// A compound file with one stream, whose sectors stand in reverse order.
class CompoundFile {
  public:
    explicit CompoundFile(const std::string& stream, std::size_t sectorSize = 512,
                          std::string name = "WorkBook")
        : sectorSize_(sectorSize) {
        const bool isShort = stream.size() < 4096;
        std::string shorts;
        const std::size_t first = AddChain(isShort ? AddShorts(stream, shorts) : stream);
        directory = sectors_.size();
        AddChain(Entry("Root Entry", 5, 1, isShort ? first : kEndOfChain, stream.size() + 63) +
                 Entry(std::move(name), 2, ~0U, isShort ? (stream.size() - 1) / 64 : first, stream.size()));
        const std::size_t shortTable = AddChain(shorts);
        AddTable(directory, shortTable);
    }

    [[nodiscard]] std::string Bytes() const { return bytes_; }
    // With a number of the file changed.
    [[nodiscard]] std::string With(std::size_t offset, const std::string& number) const {
        return std::string(bytes_).replace(offset, number.size(), number);
    }
    // Where things are in the file.
    [[nodiscard]] std::size_t SectorAt(std::size_t sector) const { return (sector + 1) * sectorSize_; }

    std::size_t directory = 0;  // sectors
    std::size_t table = 0;

  private:
    static constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;

    static std::string Entry(const std::string& name, char kind, std::size_t inside, std::size_t first,
                             std::size_t size) {
        std::string entry;
        for (const char letter : name) entry += U16(static_cast<unsigned char>(letter));
        entry.resize(64);
        entry += U16(2 * name.size() + 2) + kind + '\1' + U32(~0U) + U32(~0U) + U32(inside);
        entry.resize(116);
        return entry + U32(first) + Le(std::uint64_t{size});
    }

    // Returns the first sector.
    std::size_t AddChain(const std::string& content) {
        std::uint32_t next = kEndOfChain;
        for (std::size_t end = (content.size() + sectorSize_ - 1) / sectorSize_; end > 0; --end) {
            sectors_.push_back(content.substr((end - 1) * sectorSize_, sectorSize_));
            sectors_.back().resize(sectorSize_);
            numbers_.push_back(next);
            next = static_cast<std::uint32_t>(sectors_.size() - 1);
        }
        return next;
    }

    // The stream in short sectors, of which this is the table.
    static std::string AddShorts(const std::string& stream, std::string& shortTable) {
        std::string turned;
        for (std::size_t place = (stream.size() + 63) / 64; place > 0; --place) {
            shortTable += U32(turned.empty() ? kEndOfChain : turned.size() / 64 - 1);
            turned += stream.substr((place - 1) * 64, 64);
            turned.resize((turned.size() + 63) / 64 * 64);
        }
        return turned;
    }

    void AddTable(std::size_t directorySector, std::size_t shortTable) {
        const std::size_t perSector = sectorSize_ / 4;
        const std::size_t parts = sectors_.size() / (perSector - 2) + 1;
        const std::size_t lists = parts > 109 ? (parts - 109) / (perSector - 1) + 1 : 0;
        table = sectors_.size();
        std::string header("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1");
        header.resize(24);
        header += U16(0x3E) + U16(sectorSize_ == 512 ? 3 : 4) + "\xFE\xFF" +
                  U16(sectorSize_ == 512 ? 9 : 12) + U16(6);
        header.resize(44);
        header += U32(parts) + U32(directorySector) + U32(0) + U32(4096) + U32(shortTable) + U32(1) +
                  U32(lists > 0 ? table + parts : kEndOfChain) + U32(lists);
        std::string list;
        for (std::size_t part = 0; part < parts; ++part) {
            (part < 109 ? header : list) += U32(table + part);
            const bool endsList = part >= 109 && list.size() % sectorSize_ == sectorSize_ - 4;
            if (endsList) list += U32(table + parts + list.size() / sectorSize_ + 1);
        }
        header.resize(sectorSize_, '\xFF');
        list.resize(lists * sectorSize_, '\xFF');
        numbers_.resize(parts * perSector, kEndOfChain);
        bytes_ = header;
        for (const std::string& sector : sectors_) bytes_ += sector;
        for (const std::uint32_t number : numbers_) bytes_ += U32(number);
        bytes_ += list;
    }

    std::size_t sectorSize_;
    std::vector<std::string> sectors_;
    std::vector<std::uint32_t> numbers_;
    std::string bytes_;
};

struct Row {
    std::string bytes;
    std::string outcome;
};

void Check(const std::vector<Row>& rows) {
    const TempFolder folder;
    for (const Row& row : rows) {
        const std::size_t place = static_cast<std::size_t>(&row - rows.data());
        EXPECT_EQ(Outcome(folder, folder.Put("a", row.bytes)), row.outcome) << "row " << place;
    }
}

TEST(Xls, HasTheValuesOfItsRecords) {
    const auto both = [](const std::string& cells, const std::string& outcome) {
        return std::vector<Row>{{Book(kNew, "", cells + kEnd), outcome},
                                {Book(kOld, "", cells + kEnd), outcome}};
    };
    const std::string text = Formula("\0\0\0\0\0\0\xFF\xFF"s);
    const std::string chart = Begin(kNew, 0x20) + CellRecord(0x203, Le(7.0), 1) + kEnd;
    for (const auto& rows : {
             both(CellRecord(0x203, Le(0.1)), "n 0.10000000000000001 "),
             both(Rk(0xFFFFFFFE), "n -1 "),
             both(Rk(12345 << 2 | 3), "n 123.45 "),
             both(Rk(0x3FF80000), "n 1.5 "),
             both(Rk(0x3FF80001), "n 0.014999999999999999 "),
             both(Record(0xBD, U16(0) + U16(3) + U16(0) + U32(6) + U16(0) + U32(10) + U16(4)), "n 1 n 2 "),
             both(CellRecord(0x205, "\1\0"s) + CellRecord(0x205, "\x2A\1", 1), "b 1 e 2042 "),
             both(CellRecord(0x205, "\x99\1"), "e 2015 "),
             both(Formula(Le(-2.5)), "n -2.5 "),
             both(Formula("\1\0\1\0\0\0\xFF\xFF"s), "b 1 "),
             both(Formula("\2\0\x07\0\0\0\xFF\xFF"s), "e 2007 "),
             both(Formula("\3\0\0\0\0\0\xFF\xFF"s), "t  "),
             both(text + Record(0x207, U16(0)), "t  "),
             both(CellRecord(0x201, "") + kOne + CellRecord(0xBE, U16(1), 1), "n 1 "),
             both(kOne + Rk(10), "n 2 "),
             both(chart + kOne + chart, "n 1 "),
         })
        Check(rows);
    Check({
        {Book(kNew, "",
              text + Record(0x4BC, U32(0)) + Record(0x207, U16(3) + "\0x"s) + Continue("\1\xAC\x20z\0"s) +
                  kEnd),
         "t x€z "},
        {Book(kOld, "", text + Record(0x221, U32(0)) + Record(0x207, U16(3) + "x") + Continue("yz") + kEnd),
         "t xyz "},
        // Formats and pronunciation stand behind the characters.
        {Book(kNew, "",
              CellRecord(0x204, U16(2) + "\x0D" + U16(1) + U32(2) + "\x3D\xD8\0\xDE"s + U32(0) + U16(0)) +
                  kEnd),
         "t 😀 "},
        {Book(kNew, "", CellRecord(0x204, U16(0)) + kEnd), "t  "},
        {Book(kOld, Record(0x42, U16(1251)), CellRecord(0xD6, U16(2) + "\xCF\xF0" + "\1\0\0"s) + kEnd),
         "t Пр "},
        {Book(kOld, Record(0x42, U16(932)), CellRecord(0x204, U16(3) + "a\x83\x5C") + kEnd), "t aソ "},
        {Book(kOld, Record(0x42, U16(10000)), CellRecord(0x204, U16(1) + "\x8A") + kEnd), "t ä "},
        {Book(kOld, "", CellRecord(0x204, U16(1) + "\x80") + kEnd), "t € "},
        {Book(kOld, Record(0x42, U16(1)), CellRecord(0x204, U16(1) + "a") + kEnd), "t a "},
        // Letters and marks as Windows has them: none joined, none lost at the end.
        {Book(kOld, Record(0x42, U16(1255)), CellRecord(0x204, U16(2) + "\xEC\xF9") + kEnd), "t לש "},
        {Book(kOld, Record(0x42, U16(1258)), CellRecord(0x204, U16(2) + "\xE2\xF2") + kEnd),
         "t \u00E2\u0323 "},
        // An empty shared string whose flags are in the next record.
        {Book(kNew, Strings(U16(0), 2) + Continue("\0"s + U16(1) + "\0x"s), CellRecord(0xFD, U32(1)) + kEnd),
         "t x "},
        // Formulas and their texts by the numbers of older versions.
        {Book(kNew, "",
              Record(0x206, U16(0) + U16(0) + U16(0) + Le(1.0)) +
                  Record(0x406, U16(0) + U16(1) + U16(0) + "\0\0\0\0\0\0\xFF\xFF"s) +
                  Record(7, U16(1) + "\0x"s) + kEnd),
         "n 1 t x "},
        // Shared strings: the number of them too large, one cut in its characters, one in its formats.
        {Book(kNew,
              Strings(U16(3) + "\0ab"s, 9) +
                  Continue("\1\xAC\x20"s + U16(1) + "\x08" + U16(2) + "r" + U32(0)) +
                  Continue(U32(0) + U16(2) + "\1x\0"s) + Continue("\0y"s),
              CellRecord(0xFD, U32(2)) + CellRecord(0xFD, U32(0), 1) + CellRecord(0xFD, U32(1), 2) + kEnd),
         "t xy t ab€ t r "},
        {Book(kNew, "", kOne + kEnd, 2), ""},
        {Book(kNew, "", Record(0x81, U16(0x10)) + kOne + kEnd), ""},
    });
}

TEST(Xls, NotesCellsThatShowDates) {
    const auto format = [](std::size_t number) { return Record(0xE0, U16(0) + U16(number)); };
    const auto rk = [](std::size_t column, std::size_t style) {
        return Record(0x27E, U16(0) + U16(column) + U16(style) + U32(6));
    };
    const std::string formats =
        format(0) + format(14) + format(164) + Record(0xE0, "") + format(165) + format(50);
    const std::string cells = rk(0, 0) + rk(1, 1) + rk(2, 2) + rk(3, 3) + rk(4, 4) + rk(5, 99) + rk(8, 5) +
                              Record(0xBD, U16(0) + U16(6) + U16(0) + U32(6) + U16(2) + U32(6) + U16(7)) +
                              kEnd;
    const TempFolder folder;
    for (const bool isNew : {kOld, kNew}) {
        const std::string length = isNew ? U16(2) + "\0"s : "\2"s;
        const std::string codes = Record(0x41E, U16(164) + length + "dd") +
                                  Record(0x41E, U16(165) + length + "0;") +
                                  Record(0x41E, U16(50) + length + "00") + Record(0x41E, U16(166));
        const auto workbook = OpenWorkbook(folder.Put("a", Book(isNew, codes + formats, cells)));
        std::string dates;
        for (const NotedCell& cell : workbook->worksheets.front()->Cells().Notes()) {
            EXPECT_EQ(cell.note, CellNote::ShowsDate);
            dates += Utf8(CellName(cell.row, cell.column)) + " ";
        }
        EXPECT_EQ(dates, "B1 C1 H1 ");
    }
}

TEST(Xls, IsRefusedWhereValuesCouldBeWrong) {
    const std::string infinite = CellRecord(0x203, Le(1e308 * 10));
    const std::string text = Formula("\0\0\0\0\0\0\xFF\xFF"s);
    const auto at = [](std::size_t offset, const std::string& record, const std::string& what) {
        return "'a' is damaged: record 0x" + record + " at offset " + std::to_string(offset) + ": " + what +
               ".";
    };
    // Where the first cell is.
    const std::size_t first = Book(kNew, "", "").size();
    const std::size_t second = first + text.size();
    const std::string longName = Repeat("x", 32);
    Check({
        {Book(kNew, "", kOne), at(first + kOne.size(), "0000", "the stream ends here")},
        {Book(kNew, "", kOne + kEnd.substr(0, 3)), at(first + kOne.size(), "0000", "the stream ends here")},
        {Book(kNew, "", kOne.substr(0, 13)), at(first, "027e", "the stream ends within the record")},
        {Book(kNew, "", Record(0x27E, U32(0)) + kEnd), at(first, "027e", "it is too short")},
        {Book(kNew, "", infinite),
         at(first, "0203", "cell A1 has a number that is infinite or not a number")},
        {Book(kNew, "", CellRecord(0x27E, U32(6), 256)),
         at(first, "027e", "a cell in row 1 is in column 257, of 256")},
        {Book(kNew, "", Record(0xBD, U16(0) + U16(3) + U16(0) + U32(6) + U16(4))),
         at(first, "00bd", "cell D1 is not the last one that the record names")},
        {Book(kNew, "", CellRecord(0xFD, U32(0))),
         at(first, "00fd", "cell A1 refers to a shared string that there is not")},
        {Book(kNew, "", text + kOne),
         at(second, "027e", "cell A1 has a formula without the text that is its result")},
        {Book(kNew, "", text + kEnd),
         at(second, "000a", "cell A1 has a formula without the text that is its result")},
        {Book(kNew, "", Formula("\7\0\0\0\0\0\xFF\xFF"s)),
         at(first, "0006", "cell A1 has a formula with a result of an unknown type")},
        {Book(kNew, "", CellRecord(0x204, U16(2) + "\1a\0b"s)),
         at(first, "0204", "half a character ends it")},
        {Book(kOld, Record(0x42, U16(1252)), CellRecord(0x204, U16(1) + "\x81")),
         at(first + 5, "0204", "it has a text that is none of code page 1252")},
        {Book(kOld, Record(0x42, U16(1)), CellRecord(0x204, U16(1) + "\x80")),
         at(first + 5, "0204", "it has a text that is none of code page 1")},
        {Book(kOld, Record(0x42, U16(1200)), ""),
         at(18, "0085", "it has a text that is none of code page 1200")},
        {Book(kNew, Strings(U16(9) + "\0ab"s, 1), kEnd), at(12, "00fc", "it is too short")},
        {Book(kNew, Record(0x2F, U16(0)), ""), "'a' is encrypted: a password is needed to open it."},
        {Book(kNew, "", kEnd, 0, longName),
         at(12, "0085", "the name of worksheet '" + longName.substr(1) + "...' has more than 31 characters")},
        {Record(0x809, U16(0x700) + U16(5)),
         at(0, "0809", "the version of the format, 0x00000700, is unknown")},
        {Begin(kNew, 0x10), at(0, "0809", "the list of worksheets is missing")},
        {Book(kNew, "", "").substr(0, first - 12) + Begin(kNew, 0x20) + kEnd,
         at(first - 12, "0809", "no worksheet begins here")},
        {Record(0x209, U16(0) + U16(0x10) + U16(0)),
         "'a' is a workbook of Excel 2, 3 or 4, which cannot be read. Save it as .xlsx."},
    });
}

TEST(Xls, LiesInACompoundFile) {
    const std::string padding = Record(0x1, Repeat("x", 4096));
    const std::string little = Book(kNew, "", kOne + kEnd);
    const std::string medium = Book(kNew, padding, kOne + kEnd);
    const CompoundFile shorts(little);
    const CompoundFile file(medium);
    const std::size_t table = file.SectorAt(file.table);
    const std::size_t entry = file.SectorAt(file.directory) + 128;
    const std::size_t first = static_cast<std::uint8_t>(file.Bytes()[entry + 116]);
    const std::string cut =
        "'a' is damaged: stream 'Workbook', record 0x0001 at offset 12: the stream ends within the record.";
    Check({
        {shorts.Bytes(), "n 1 "},
        {file.Bytes(), "n 1 "},
        {CompoundFile(little, 4096).Bytes(), "n 1 "},
        {CompoundFile(medium, 4096).Bytes(), "n 1 "},
        {CompoundFile(Book(kOld, "", kOne + kEnd), 512, "Book").Bytes(), "n 1 "},
        // So large that its table of sectors does not fit the header.
        {CompoundFile(Book(kNew, Repeat(padding, 3600), kOne + kEnd)).Bytes(), "n 1 "},
        {CompoundFile(little, 512, "EncryptedPackage").Bytes(),
         "'a' is encrypted: a password is needed to open it."},
        {CompoundFile(little, 512, "WordDocument").Bytes(), "'a' is not a workbook."},
        {file.With(table + 4 * first, U32(first)),
         "'a' is damaged: sector 0x0000000" + std::to_string(first) + " belongs to two chains."},
        {file.With(table + 4 * first, U32(1 << 20)), cut},
        {file.With(table + 4 * first, U32(file.table)),
         "'a' is damaged: sector 0x0000000a belongs to two chains."},
        {file.With(entry + 120, U32(100)),
         "'a' is damaged: stream 'Workbook', record 0x0000 at offset 0: the stream ends here."},
        {file.With(entry - 128 + 76, U32(99)), "'a' is not a workbook."},
        {file.With(30, U16(7)), "'a' is damaged: its header gives a size of sectors that there is not."},
        {file.With(48, U32(~0U)), "'a' is damaged: its directory is missing."},
        {file.Bytes().substr(0, 511), "'a' is damaged: its header is cut off."},
        // The upper half of a size counts for nothing here; the tree of entries leads back to itself.
        {file.With(entry + 124, U32(~0U)), "n 1 "},
        {file.With(entry + 68, U32(1) + U32(0)), "n 1 "},
    });
}

// Names of blocks, as database programs see them: the blocks of worksheet 1, the second of two.
TEST(Xls, HasDefinedNames) {
    const auto name = [](bool isNew, const std::string& text, std::size_t flags, std::size_t sheet,
                         const std::string& formula) {
        return Record(0x18, U16(flags) + "\0"s + Le(static_cast<char>(text.size())) + U16(formula.size()) +
                                U16(0) + U16(sheet) + U32(0) + (isNew ? "\0"s : "") + text + formula);
    };
    const auto area = [](std::size_t index, const std::string& block) {
        return "\x3B"s + U16(index) + block;
    };
    const std::string block = U16(1) + U16(3) + U16(0) + U16(0xC002);
    const std::string own = Record(0x1AE, U16(2) + U16(0x401));
    const std::string foreign = Record(0x1AE, U16(1) + U16(2) + "\0x"s);
    const std::string tabs = Record(0x17, U16(4) + U16(1) + U16(0) + U16(0) + U16(0) + U16(0) + U16(0) +
                                              U16(1) + U16(1) + U16(1) + U16(1) + U16(0) + U16(1));
    const std::string chart = Record(0x85, U32(0) + "\0\2\1\0C"s);
    const std::string oldTabs = U16(0xFFFF) + std::string(8, '\0') + U16(1) + U16(1);
    const std::string globals =
        chart + foreign + own + tabs + name(kNew, "Local", 0, 2, area(2, block)) +
        name(kNew, "DTC", 0, 0, area(2, block)) +
        name(kNew, "Cell", 0, 0, "\x5A"s + U16(2) + U16(4) + U16(2)) +
        name(kNew, "Columns", 0, 0, area(2, U16(0) + U16(0xFFFF) + U16(1) + U16(1))) +
        name(kNew, "Rows", 0, 0, area(2, U16(7) + U16(6) + U16(0) + U16(255))) +
        name(kNew, "Hidden", 1, 0, area(2, block)) + name(kNew, "BuiltIn", 0x20, 0, area(2, block)) +
        name(kNew, "Chart", 0, 0, area(0, block)) + name(kNew, "Foreign", 0, 0, area(1, block)) +
        name(kNew, "Both", 0, 0, area(3, block)) + name(kNew, "None", 0, 0, area(4, block)) +
        name(kNew, "Sum", 0, 0, area(2, block) + "\x3");
    const std::string old =
        chart + name(kOld, "DTC", 0, 0, "\x3B"s + oldTabs + U16(0x8001) + U16(0xC003) + "\0\2"s) +
        name(kOld, "Cell", 0, 0, "\x3A"s + oldTabs + U16(0) + "\0"s) +
        name(kOld, "Foreign", 0, 0, "\x3A"s + U16(1) + oldTabs.substr(2) + U16(0) + "\0"s);
    const struct {
        bool isNew;
        std::string globals;
        std::string names;
    } kRows[] = {{kNew, globals, "DTC A2:C4 Cell C5:C5 Columns B1:B1048576 Rows A7:XFD8 Local A2:C4 "},
                 {kOld, old, "DTC A2:C4 Cell A1:A1 "}};
    const TempFolder folder;
    for (const auto& row : kRows) {
        std::string names;
        const auto workbook = OpenWorkbook(folder.Put("a", Book(row.isNew, row.globals, kEnd)));
        for (const auto& [text, worksheet, cells] : workbook->readDefinedNames()) {
            EXPECT_EQ(worksheet, 0U);
            names += Utf8(text) + " " + Utf8(CellName(cells.firstRow, cells.firstColumn)) + ":" +
                     Utf8(CellName(cells.lastRow, cells.lastColumn)) + " ";
        }
        EXPECT_EQ(names, row.names);
    }
}

// Cut at each byte or with some bytes changed: another outcome perhaps, but always one.
TEST(Xls, SurvivesDamage) {
    const TempFolder folder;
    const std::string text = CellRecord(0x204, U16(2) + "\0ab"s, 1);
    const std::string whole =
        CompoundFile(Book(kNew, Strings(U16(1) + "\0s"s, 1), CellRecord(0xFD, U32(0)) + text + kEnd)).Bytes();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::string outcome = Outcome(folder, folder.Put("a", whole.substr(0, size)));
        EXPECT_TRUE(outcome == "t s t ab " || outcome.starts_with("'a' is ")) << size << ": " << outcome;
    }
    std::mt19937 random(1);
    for (int round = 0; round < 1000; ++round) {
        std::string damaged = whole;
        for (int count = 0; count < 3; ++count)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        Outcome(folder, folder.Put("damaged", damaged));
    }
}

}  // namespace
