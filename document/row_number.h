// The DTC number of a row.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "document/dtc_convert.h"
#include "document/table_scan.h"
#include "sources/table.h"

namespace VSimpleXMLCreation {

// What a number cell holds.
enum class NumberRole { DtcNumber, Spn, Fmi, BaseDtc, FailureType };

// The role of the number column, which is 0, or 0 or 1 if there are two.
NumberRole RoleOf(TableLayout layout, std::size_t column);

// Reads the number cells of one table.
class NumberReader {
  public:
    NumberReader(TableLayout layout, NumberNotation notation) : layout_(layout), notation_(notation) {}

    // The number of the row as the document has it, made of the number columns of the layout.
    // `withoutFirst`: the first one counts as 0. Throws VSimpleXMLException on a malformed SAE code.
    std::int32_t NumberOf(const VCSVReader::VTableRow& row, bool withoutFirst);

    // How a cell is taken: the text that is converted, valid until the next call and as long as the cell, and
    // the notation. That of a base DTC in a table with SAE codes is Sae for any cell.
    struct Reading {
        std::u16string_view text;
        DtcNotation notation;
    };
    Reading ReadingOf(NumberRole role, std::u16string_view cell);

    // The number of one cell. Throws as above.
    static std::uint32_t Convert(NumberRole role, const Reading& reading);
    std::uint32_t Read(NumberRole role, std::u16string_view cell) {
        return Convert(role, ReadingOf(role, cell));
    }

    // The number of a row, made of those of its number cells; `second` is not used if there is only one.
    [[nodiscard]] std::int32_t Combine(std::uint32_t first, std::uint32_t second) const;

  private:
    TableLayout layout_;
    NumberNotation notation_;
    std::u16string text_;
};

}  // namespace VSimpleXMLCreation
