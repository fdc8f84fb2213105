// The texts that cells share, by number.
#pragma once

#include <string>

#include "platform/array.h"
#include "workbook/xlsx/package.h"
#include "workbook/xlsx/text_builder.h"
#include "workbook/xlsx/xml_part.h"

namespace NWorkbook::NXlsx {

class SharedStrings {
  public:
    // Reads the part into the store. Without such a part there are none. Throws WorkbookError.
    SharedStrings(Package& package, std::string_view part, TextStore& store, Budget& budget);

    // NULL where there is no such text.
    [[nodiscard]] TextPlace Find(std::size_t index) const {
        return index < size_ ? texts_.Data()[index] : nullptr;
    }

  private:
    class Reader;

    void Add(TextPlace text);

    NPlatform::Array<TextPlace> texts_;
    std::size_t size_ = 0;
};

// The elements inside a text that cells share or one that a cell holds itself: plain text or runs of it, each
// with a format; what it sounds like is left out. `level` is 1 for the elements right in it. Returns whether
// to go into an element.
bool IsTextElement(int level, std::string_view name);
// Whether the characters in such an element are text: those of a run are not.
inline bool HoldsText(std::string_view name) { return name == "t"; }

}  // namespace NWorkbook::NXlsx
