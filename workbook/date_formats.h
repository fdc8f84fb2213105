// Which formats of numbers show them as a date or a time.
#pragma once

#include <cstddef>
#include <string_view>

namespace NWorkbook {

// Whether one that every workbook has without naming it does so, the East Asian ones included.
bool IsUsualDateFormat(std::size_t id);

// Whether a format such as "dd.mm.yyyy" does so. Its first section counts.
bool IsDateFormat(std::string_view code);

}  // namespace NWorkbook
