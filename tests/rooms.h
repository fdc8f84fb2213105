// What the tests of the rooms share.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/replaceable.h"
#include "sources/vector_heap.h"
#include "xml/text_conv.h"

namespace NTest {

// Puts a function in the place of a system's service while the object lives.
template <typename Signature>
class Replacement {
  public:
    Replacement(NPlatform::Replaceable<Signature>& service, Signature* function)
        : service_(service), system_(service.Replace(function)) {}
    Replacement(const Replacement&) = delete;
    ~Replacement() { service_.Replace(system_); }

  private:
    NPlatform::Replaceable<Signature>& service_;
    Signature* system_;
};

// While it lives, there is no memory for text conversions.
class NoBuffers : public NTamriskUtil::IBuffers {
  public:
    NoBuffers() : shared_(NTamriskUtil::ReplaceSharedBuffers(this)) {}
    NoBuffers(const NoBuffers&) = delete;
    char* GetCharBuffer(std::size_t) override { return nullptr; }
    char16_t* GetWideBuffer(std::size_t) override { return nullptr; }
    ~NoBuffers() override { NTamriskUtil::ReplaceSharedBuffers(shared_); }

  private:
    NTamriskUtil::IBuffers* shared_;
};

using Row = std::vector<std::u16string>;
using Table = std::vector<Row>;

// "a|b" and "c|d" in two lines are two rows of two cells.
inline Table MakeTable(std::u16string_view text) {
    Table table{{u""}};
    for (const char16_t unit : text) {
        if (unit == u'\n') {
            table.push_back({u""});
        } else if (unit == u'|') {
            table.back().emplace_back();
        } else {
            table.back().back().push_back(unit);
        }
    }
    return table;
}

// A source with nothing but the shared table, filled cell by cell.
class TestHeap : public VCSVReader::V2DVectorHeap {
  public:
    TestHeap(std::u16string_view fileName, VCSVReader::VLogObject* log, Table table)
        : V2DVectorHeap(fileName, log), table_(std::move(table)) {}
    void ReadData() override {
        for (const Row& row : table_) {
            for (const std::u16string& cell : row) AddCell(cell.c_str());
            EndRow(false);
        }
    }

  private:
    Table table_;
};

// All rows, from the first.
inline Table RowsOf(VCSVReader::VHeapInterface& source) {
    Table table;
    VCSVReader::VHeapIterator& iterator = *source.GetIterator();
    for (iterator.Reset(); iterator.HasMoreRows();) {
        const VCSVReader::VTableRow& row = *iterator.GetNextRow();
        Row& cells = table.emplace_back();
        for (std::size_t column = 0; column < row.size(); ++column) cells.emplace_back(row[column]);
    }
    return table;
}

}  // namespace NTest
