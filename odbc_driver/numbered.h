// Tables whose entries go by one of ODBC's numbers.
#pragma once

#include <cstddef>

namespace NOdbcDriver {

// Null where the table has no entry of the number.
template <typename Entry, std::size_t count, typename Number>
const Entry* FindNumbered(const Entry (&entries)[count], Number number) {
    for (const Entry& entry : entries) {
        if (entry.number == number) return &entry;
    }
    return nullptr;
}

}  // namespace NOdbcDriver
