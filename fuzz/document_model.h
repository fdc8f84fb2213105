// From CSV text to the import document in the plainest way: what the library is compared with.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace NFuzz {

using Row = std::vector<std::u16string>;
using Table = std::vector<Row>;

// None: something stands behind a closing quote.
std::optional<Table> ParseCsv(std::u16string_view text, char16_t separator);

// At least one row and two columns, all rows of one length.
bool IsConsistent(const Table& table);

struct Names {
    std::u16string_view diagnosticInstance;
    std::u16string_view variant;
    std::set<std::u16string> vsg;
    std::set<std::u16string> a;
};

// The document of a consistent table; none where a DTC text is malformed.
std::optional<std::u16string> PrintDocument(const Table& table, const Names& names);

}  // namespace NFuzz
