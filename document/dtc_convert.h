// DTC numbers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace VSimpleXMLCreation {

// How a DTC text is read.
enum class DtcNotation { None, Sae, PrefixedHex, Hex, Decimal };  // None: the empty text

// The 32-bit number of one DTC text. Three notations are supported:
//   SAE J2012    a system letter (P, C, B or U) and 2, 4, 6 or 8 hexadecimal digits, as in P0123; the letter
//                becomes the two top bits of the number, the first digit, at most 3, the next two
//   hexadecimal  with or without a leading 0x
//   decimal      as DecimalValue reads it
// The case of hexadecimal digits does not matter. No other character is rejected: it
// adds its code less 48 (up to U+0040) or less 55 to the number's bits. Digits beyond the eighth from the
// right are lost.
class VDTCConvert {
  public:
    // `hexDefault`: a text without 0x is hexadecimal. `saeCodes`: a text that begins with B, C, P or U is an
    // SAE code. Blanks at both ends do not count, except for the recognition of the notation by the first
    // characters. An empty text gives 0. Throws VSimpleXMLException on a malformed SAE code.
    VDTCConvert(std::u16string_view text, bool hexDefault, bool saeCodes);
    // The same for a text whose notation is known.
    VDTCConvert(std::u16string_view text, DtcNotation notation);
    VDTCConvert(const VDTCConvert&) = default;
    VDTCConvert& operator=(const VDTCConvert&) = default;
    virtual ~VDTCConvert() = default;

    // Which notation the constructor reads the text in.
    static DtcNotation NotationOf(std::u16string_view text, bool hexDefault, bool saeCodes);

    // Makes the number that of the SAE code; any letter but B, C and U counts as P. Throws
    // VSimpleXMLException if the code does not have 3, 5, 7 or 9 characters or its first digit is above 3;
    // the number is 0 then.
    void ParseSae(std::u16string_view text);

    [[nodiscard]] std::int32_t GetValue() const { return value_; }
    // Signed decimal, at most 11 characters.
    [[nodiscard]] std::u16string ToString() const;

  private:
    static std::uint32_t ParseHex(std::u16string_view text);

    std::int32_t value_ = 0;
};

}  // namespace VSimpleXMLCreation
