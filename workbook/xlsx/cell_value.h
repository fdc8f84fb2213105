// The values of cells, from the text by which a part gives them.
#pragma once

#include <optional>
#include <string_view>

#include "workbook/cells.h"

namespace NWorkbook::NXlsx {

// Each takes a whole text without blanks around it and gives nothing for what it does not know.

// A decimal number; one too small for a double is 0, one too large is none.
std::optional<double> ParseNumber(std::string_view text);
// A whole number from 0 on.
std::optional<std::size_t> ParseIndex(std::string_view text);
std::optional<bool> ParseBool(std::string_view text);
// An error this does not know is CellError::Value: programs of later years have more of them.
std::optional<CellError> ParseError(std::string_view text);

}  // namespace NWorkbook::NXlsx
