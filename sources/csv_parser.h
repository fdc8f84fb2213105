// The states of the CSV parser.
//
// A cell begins at the start of the text, after a separator and after a line feed. A double quote as its
// first character makes it a quoted cell, in which separators and line feeds are text and a doubled quote
// is one quote; anywhere else a quote is text. Nothing is trimmed. There are no other special characters.
//
// Each state consumes one character and returns the next state. States are small and short-lived, so their
// storage is recycled, for one thread at a time like all of the library.
#pragma once

#include <cstddef>

#include "sources/vector_heap.h"

namespace VCSVReader {

class VParserStateInterface {
  public:
    VParserStateInterface(const VParserStateInterface&) = delete;
    VParserStateInterface& operator=(const VParserStateInterface&) = delete;
    virtual ~VParserStateInterface() = default;

    // Consumes the character and returns a new state, never itself. The caller owns the result and destroys
    // the state it called. Throws VParserException if the character is not allowed here.
    virtual VParserStateInterface* HandleChar(const char16_t* character) = 0;

    // Consumes characters at the front of those from `first` up to `last`, as HandleChar would one by one, as
    // long as the state is afterwards what it was. Returns the first that it leaves.
    virtual const char16_t* HandleRun(const char16_t* first, const char16_t* /*last*/) { return first; }

    static void* operator new(std::size_t size);
    static void operator delete(void* state) noexcept;

  protected:
    // `heap` receives the cells and is not owned.
    VParserStateInterface(V2DVectorHeap* heap, char16_t separator) : heap_(heap), separator_(separator) {}

    // Ends the cell, and the row with it, if the character is the separator or a line feed; returns whether
    // it was.
    bool EndsCell(char16_t character);

    V2DVectorHeap* heap_;
    char16_t separator_;
};

// At the start of a cell. Runs of unquoted cells, up to whole tables, are consumed at once.
class VParserStart final : public VParserStateInterface {
  public:
    VParserStart(V2DVectorHeap* heap, char16_t separator) : VParserStateInterface(heap, separator) {}
    VParserStateInterface* HandleChar(const char16_t* character) override;
    const char16_t* HandleRun(const char16_t* first, const char16_t* last) override;
};

// Inside a cell that did not begin with a quote.
class VParserNormal final : public VParserStateInterface {
  public:
    VParserNormal(V2DVectorHeap* heap, char16_t separator) : VParserStateInterface(heap, separator) {}
    VParserStateInterface* HandleChar(const char16_t* character) override;
};

// Inside a cell that began with a quote.
class VParserQuoted final : public VParserStateInterface {
  public:
    VParserQuoted(V2DVectorHeap* heap, char16_t separator) : VParserStateInterface(heap, separator) {}
    VParserStateInterface* HandleChar(const char16_t* character) override;
    const char16_t* HandleRun(const char16_t* first, const char16_t* last) override;
};

// After a quote inside a quoted cell: the next character shows whether it was doubled or closed the cell.
class VParserQuotedPending final : public VParserStateInterface {
  public:
    VParserQuotedPending(V2DVectorHeap* heap, char16_t separator) : VParserStateInterface(heap, separator) {}
    VParserStateInterface* HandleChar(const char16_t* character) override;
};

}  // namespace VCSVReader
