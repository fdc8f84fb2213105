// Texts in records, as each version of the format has them.
#pragma once

#include <string>

#include "platform/code_page_text.h"
#include "workbook/budget.h"
#include "workbook/text_store.h"
#include "workbook/xls/record_reader.h"

namespace NWorkbook::NXls {

enum class Version : std::uint8_t {
    Biff5,  // Excel 5.0 and 95: texts are bytes of the workbook's code page
    Biff8,  // Excel 97 to 2003: UTF-16, with or without its upper bytes
};

// Each operation reads what is behind the length, with the formats and the pronunciation that belong to the
// text and are left out. Throws PartFault for what is damaged or too large.
class TextReader {
  public:
    // The store and the budget have to outlive it.
    TextReader(Version version, std::uint16_t codePage, TextStore& store, Budget& budget)
        : version_(version), codePage_(codePage), page_(codePage), store_(store), budget_(budget) {}
    TextReader(const TextReader&) = delete;
    TextReader& operator=(const TextReader&) = delete;
    ~TextReader() { store_.Truncate(0); }

    // Of a cell or one that cells share; `length` as the record gives it.
    TextPlace Read(Fields& fields, std::size_t length);
    TextPlace Empty() { return store_.Close(); }
    // Of a worksheet or of a block of cells.
    std::u16string ReadName(Fields& fields, std::size_t length);

  private:
    // Adds to the open text of the store.
    void Append(Fields& fields, std::size_t length);
    void AppendUnicode(Fields& fields, std::size_t length);
    void AppendUnits(Fields& fields, std::size_t count, bool areWide);
    void AppendBytes(Fields& fields, std::size_t count);

    Version version_;
    std::uint16_t codePage_;
    NPlatform::CodePageText page_;
    TextStore& store_;
    Budget& budget_;
    std::string bytes_;
    std::u16string units_;
};

}  // namespace NWorkbook::NXls
