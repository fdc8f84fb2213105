// What ends the reading or writing of a workbook.
#pragma once

#include <string>

namespace NWorkbook {

// Holds one finished sentence for the user, which names the place: the file, the part, the cell.
class WorkbookError {
  public:
    explicit WorkbookError(std::u16string message) : message_(std::move(message)) {}

    [[nodiscard]] const std::u16string& Message() const { return message_; }

  private:
    std::u16string message_;
};

}  // namespace NWorkbook
