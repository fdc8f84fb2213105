// Puts the texts of cells together from the pieces in which a parser hands them out.
#pragma once

#include <string_view>

#include "workbook/budget.h"
#include "workbook/text_store.h"

namespace NWorkbook::NXlsx {

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

}  // namespace NWorkbook::NXlsx
