// DTC texts to numbers. The input is a byte of options (bit 0 hexadecimal digits, bit 1 SAE codes), then the
// text in UTF-16.
#include "document/cell_text.h"
#include "document/dtc_convert.h"
#include "document/xml_exception.h"
#include "fuzz/memory_file.h"
#include "fuzz/number_model.h"

namespace {

using namespace NFuzz;
using VSimpleXMLCreation::VDTCConvert;

template <typename Convert>
std::optional<std::uint32_t> Outcome(Convert convert) {
    try {
        const VDTCConvert converter = convert();
        const std::string digits = std::to_string(converter.GetValue());
        Require(converter.ToString() == std::u16string(digits.begin(), digits.end()),
                "a number prints in decimal");
        return static_cast<std::uint32_t>(converter.GetValue());
    } catch (const VSimpleXMLCreation::VSimpleXMLException& exception) {
        Require(exception.GetMessage().starts_with(u"Given SAE DTC "), "a refusal says what is wrong");
        return std::nullopt;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::u16string text = Utf16(data + 1, size - 1);
    const bool hexDefault = (data[0] & 1) != 0;
    const bool saeCodes = (data[0] & 2) != 0;
    Require(Outcome([&] { return VDTCConvert(text, hexDefault, saeCodes); }) ==
                DtcNumber(text, hexDefault, saeCodes),
            "a text gives the number that its digits have");
    const auto parse = [&text] {
        VDTCConvert converter({}, false, false);
        converter.ParseSae(text);
        return converter;
    };
    Require(Outcome(parse) == SaeNumber(text), "an SAE code gives the number that its digits have");
    Require(static_cast<std::uint32_t>(VSimpleXMLCreation::DecimalValue(text)) == DecimalNumber(text),
            "a decimal number is read");
    return 0;
}
