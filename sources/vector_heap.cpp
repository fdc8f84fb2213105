#include "sources/vector_heap.h"

#include "platform/files.h"
#include "platform/format.h"
#include "sources/parser_exception.h"

namespace VCSVReader {

using NPlatform::Format;

namespace {

constexpr std::size_t kMostRows = 20'500'000;

// The count as messages print it.
std::int32_t Number(std::size_t count) { return static_cast<std::int32_t>(count); }

[[noreturn]] void RefuseHeader(std::size_t rowCount, std::size_t columnCount) {
    const std::u16string area = Format(64, u"Z1S1:Z%dS%d", {Number(rowCount), Number(columnCount)});
    throw VParserException(
        Format(1024,
               u"The Header (first row in excel sheet) does not define enough columns. It should define at "
               u"least two columns containing DTC and Description. (Data-Area in Excel is assumed as '%s')",
               {area}));
}

[[noreturn]] void RefuseRow(std::size_t index, const VTableRow& row, std::size_t columnCount) {
    constexpr std::size_t kCapacity = 1024;
    std::u16string values;
    for (std::size_t column = 0; column < row.size() && values.size() < kCapacity; ++column) {
        values.append(row[column].substr(0, kCapacity));
        values.push_back(u'\n');
    }
    throw VParserException(Format(kCapacity, u"Row [%d] defines %d columns. Header defines %d\nValues:\n%s",
                                  {Number(index), Number(row.size()), Number(columnCount), values}));
}

}  // namespace

V2DVectorHeap::V2DVectorHeap(std::u16string_view fileName, VLogObject* log)
    : log_(log), fileName_(fileName), iterator_(std::make_unique<VDefaultHeapIterator>(rows_)) {}

V2DVectorHeap::~V2DVectorHeap() = default;

void V2DVectorHeap::ReplacePendingCell(std::u16string_view text) {
    units_.Truncate(EndedSize());
    units_.Append(text.data(), text.size());
}

void V2DVectorHeap::RefuseCell() const {
    const std::int32_t row = Number(rows_.size());
    if (units_.RunSize() > kMostUnits) throw VParserException(Format(128, u"Row [%d] is too long.", {row}));
    throw VParserException(
        Format(128, u"Row [%d] has too many columns, at most %d are possible.", {row, Number(kMostColumns)}));
}

void V2DVectorHeap::EndRow(bool closeCell) {
    if (closeCell) EndCell();
    if (rows_.size() == kMostRows) {
        throw VParserException(
            Format(128, u"The table has too many rows, at most %d are possible.", {Number(kMostRows)}));
    }
    // Pending characters go on into the next row.
    const std::size_t size = EndedSize();
    const std::u16string pending(units_.Run() + size, units_.RunSize() - size);
    units_.Truncate(size);
    const std::size_t cells = ends_.RunSize();
    rows_.emplace_back(units_.Close(), ends_.Close(), cells);
    units_.Append(pending.data(), pending.size());
}

void V2DVectorHeap::CheckConsistency() {
    Log(u"Checking consistency of data ... ");
    if (rows_.empty()) throw VParserException(u"Empty data given ?!");
    const std::size_t columnCount = rows_.front().size();
    if (columnCount < 2) RefuseHeader(rows_.size(), columnCount);
    for (std::size_t index = 1; index < rows_.size(); ++index) {
        if (rows_[index].size() != columnCount) RefuseRow(index, rows_[index], columnCount);
    }
    Log(Format(512, u"Target Array has %d rows and %d columns", {Number(rows_.size()), Number(columnCount)}));
    Log(u"Checking consistency of data ... done");
}

void V2DVectorHeap::OpenSource() {
    Log(u"Trying to acces file ... ");
    std::u16string fullPath;
    if (!NPlatform::FindReadableFile(fileName_, fullPath)) {
        throw VParserException(Format(512, u"Error opening inputfile:\n'%s'", {fileName_}));
    }
    fileName_ = std::move(fullPath);
    Log(Format(1024, u"Using infile '%s'", {fileName_}));
}

void V2DVectorHeap::GetParsePosition(std::int32_t& line, std::int32_t& column, std::int32_t& position) const {
    line = Number(rows_.size()) + 1;
    column = Number(ends_.RunSize()) + 1;
    position = Number(units_.RunSize() - EndedSize()) + 1;
}

}  // namespace VCSVReader
