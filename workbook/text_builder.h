// Puts the texts of cells together from the pieces in which a parser hands them out.
#pragma once

#include <string_view>

#include "workbook/cells.h"
#include "workbook/part_fault.h"
#include "workbook/text_store.h"

namespace NWorkbook {

// How much one workbook may still ask for: generous limits, so that a small file cannot fill the memory.
struct Budget {
    std::size_t cells = CellTable::kMostCells;
    std::size_t sharedStrings = CellTable::kMostCells;
    std::size_t units = std::size_t{1} << 29;  // of texts that are kept, UTF-16
};

// Takes so much from it. Throws PartFault, which says what there is too much of, where it is not there.
inline void Spend(std::size_t& left, std::size_t count, const char16_t* tooMuch) {
    if (count > left) throw PartFault{Fault::TooLarge, tooMuch};
    left -= count;
}

class TextBuilder {
  public:
    // Both have to outlive it.
    TextBuilder(TextStore& store, Budget& budget) : store_(store), budget_(budget) {}
    TextBuilder(const TextBuilder&) = delete;
    TextBuilder& operator=(const TextBuilder&) = delete;
    ~TextBuilder() { Discard(); }

    // An element of the text begins: Append adds what is in it.
    void BeginElement(bool keepsBlanks) {
        keepsBlanks_ = keepsBlanks;
        elementStart_ = store_.Open().size();
    }
    // It ends: the white space at its ends does not count, unless it is kept. What is escaped stays.
    void EndElement();
    // Takes UTF-8. Throws PartFault for a text that is too long, or when there are too many.
    void Append(std::string_view text);
    // Drops what there is of the text.
    void Discard() { store_.Truncate(0); }
    // Ends the text. `_xHHHH_`, with four hexadecimal digits, has become the UTF-16 unit of this number.
    TextPlace Close();

  private:
    void DecodeEscapes();

    TextStore& store_;
    Budget& budget_;
    std::size_t elementStart_ = 0;  // in the text
    bool keepsBlanks_ = false;
    bool mayHaveEscapes_ = false;
};

// Replaces each `_xHHHH_` of a text in place and returns its new size.
std::size_t DecodeEscapes(char16_t* text, std::size_t size);

}  // namespace NWorkbook
