// Worksheets as the text of a workbook's part.
#pragma once

#include <string>

#include "workbook/workbook.h"

namespace NWorkbook {

// Appends UTF-8 that is the text when it is read as the value of an attribute. The text has no control
// character and no half surrogate pair.
void AppendXmlAttribute(std::string& xml, std::u16string_view text);

// Makes the text of one worksheet piece by piece. Numbers have as many digits as it takes to read the same
// number again.
class SheetXml {
  public:
    // Throws WorkbookError for a cell that cannot be written. The cells stay as they are while the object
    // lives.
    explicit SheetXml(Worksheet& worksheet);

    // The bytes of the whole text.
    [[nodiscard]] std::size_t Size() const { return size_; }
    // Begins again.
    void Rewind();
    // Writes the next bytes, at most `capacity`, and returns how many; 0 at the end. Allocates nothing.
    std::size_t Read(char* bytes, std::size_t capacity);

  private:
    // Puts the next piece of the text into `piece_`, nothing at its end.
    void MakePiece();
    void OpenRow(std::uint32_t row);
    void CloseRow();

    const Cell* begin_;
    const Cell* end_;
    const Cell* next_ = nullptr;  // null at the very beginning
    std::uint32_t row_ = 0;       // the open one, if any
    bool isDone_ = false;
    std::string piece_;
    std::size_t taken_ = 0;
    std::size_t size_ = 0;
};

}  // namespace NWorkbook
