// The cell table that all sources share.
#pragma once

#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "log/log_object.h"
#include "platform/run_store.h"
#include "platform/text_buffer.h"
#include "sources/heap_interface.h"

namespace VCSVReader {

class VDefaultHeapIterator : public VHeapIterator {
  public:
    explicit VDefaultHeapIterator(const std::vector<VTableRow>& rows) : rows_(&rows) {}

    const VTableRow* GetNextRow() override { return &(*rows_)[static_cast<std::size_t>(next_++)]; }
    void Reset() override { next_ = 0; }
    [[nodiscard]] bool HasMoreRows() const override {
        return static_cast<std::size_t>(next_) < rows_->size();
    }
    [[nodiscard]] bool IsHeaderRow() const override { return next_ == 1; }

  private:
    std::int32_t next_ = 0;
    const std::vector<VTableRow>* rows_;
};

// Holds the table. The characters of the cells are in few large blocks, row by row; a cell is the place where
// it ends. Limits, each with a message of its own, so that no input exhausts the memory: 20.5 million rows
// (no document that could be written has more), a million columns, 2^32 - 1 characters in a row.
class V2DVectorHeap : public VHeapInterface {
  public:
    // `log` is not owned and outlives the source.
    V2DVectorHeap(std::u16string_view fileName, VLogObject* log);
    V2DVectorHeap(const V2DVectorHeap&) = delete;
    V2DVectorHeap& operator=(const V2DVectorHeap&) = delete;
    ~V2DVectorHeap() override;

    void AppendChar(const char16_t& character) final { units_.Push(character); }
    void AddCell(const char16_t* text) final {
        if (*text != 0) ReplacePendingCell(text);
        EndCell();
    }
    void EndRow(bool closeCell) final;
    void CheckConsistency() final;
    // Checks that the input can be opened and replaces its name by its full path.
    void OpenSource() override;
    VHeapIterator* GetIterator() final { return iterator_.get(); }
    void GetParsePosition(std::int32_t& line, std::int32_t& column, std::int32_t& position) const final;
    // The characters of the cell that was not ended yet, until the table next changes.
    [[nodiscard]] std::u16string_view PendingCell() const {
        return {units_.Run() + EndedSize(), units_.RunSize() - EndedSize()};
    }

    // Adds the characters from `first` up to `last` to the pending cell, as AppendChar does one by one.
    void AppendRun(const char16_t* first, const char16_t* last) {
        units_.Append(first, static_cast<std::size_t>(last - first));
    }

  protected:
    // Keeps the cells that follow in the text's own memory, from its beginning on. For a parser that walks
    // over the text and never adds more characters than it has passed: what it has not passed stays as it is.
    // Call it while there are no pending characters.
    void BuildCellsIn(NPlatform::TextBuffer text) { units_.Adopt(text.Take()); }

    void Log(std::u16string_view message) { log_->LogMessage(message); }
    [[nodiscard]] const std::u16string& FileName() const { return fileName_; }

  private:
    // How many characters of the open row belong to cells that are ended already.
    [[nodiscard]] std::size_t EndedSize() const {
        return ends_.RunSize() == 0 ? 0 : ends_.Run()[ends_.RunSize() - 1];
    }
    void EndCell() {
        if (units_.RunSize() > kMostUnits || ends_.RunSize() == kMostColumns) RefuseCell();
        ends_.Push(static_cast<std::uint32_t>(units_.RunSize()));
    }
    void ReplacePendingCell(std::u16string_view text);
    [[noreturn]] void RefuseCell() const;

    static constexpr std::size_t kMostUnits = std::numeric_limits<std::uint32_t>::max();  // of a row
    static constexpr std::size_t kMostColumns = 1'000'000;

    VLogObject* log_;
    std::u16string fileName_;
    NPlatform::RunStore<char16_t> units_;      // the open run: the current row, then the pending cell
    NPlatform::RunStore<std::uint32_t> ends_;  // the open run: the current row
    std::vector<VTableRow> rows_;
    std::unique_ptr<VHeapIterator> iterator_;
};

}  // namespace VCSVReader
