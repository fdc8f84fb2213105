// Values on their way between applications. What the library's own objects send is tested with the sources;
// here it is what other applications may send.
#include "platform/windows/variants.h"

#include <gtest/gtest.h>

#include "platform/dispatch_object.h"
#include "platform/windows/com_object.h"
#include "tests/host.h"

namespace {

using namespace NPlatform;

// The value as text, or the status of the exception.
std::string Read(VARIANT value) {
    try {
        const Variant read = FromSystem(value);
        switch (read.Type()) {
            case VariantType::Double:
                return std::to_string(read.AsDouble());
            case VariantType::String:
                return std::string("'").append(NTest::Utf8(read.AsString())).append("'");
            case VariantType::Empty:
                return "empty";
            default:
                return "another";
        }
    } catch (const OleException& failure) {
        return failure.Status() == kTypeMismatch ? "mismatch" : "failure";
    }
}

template <typename Fill>
VARIANT Make(VARTYPE type, Fill fill) {
    VARIANT value{};
    value.vt = type;
    fill(value);
    return value;
}

TEST(Windows, ReadsValuesOfOtherTypes) {
    const auto nothing = [](VARIANT&) {};
    const std::pair<VARIANT, const char*> rows[] = {
        {Make(VT_NULL, nothing), "empty"},
        {Make(VT_BSTR, nothing), "''"},
        {Make(VT_DISPATCH, nothing), "empty"},
        {Make(VT_UI1, [](VARIANT& value) { value.bVal = 200; }), "200.000000"},
        {Make(VT_R4, [](VARIANT& value) { value.fltVal = 0.5F; }), "0.500000"},
        {Make(VT_CY, [](VARIANT& value) { value.cyVal.int64 = 15000; }), "1.500000"},
        {Make(VT_DATE, [](VARIANT& value) { value.date = 2.25; }), "2.250000"},
        {Make(VT_UNKNOWN, nothing), "mismatch"},
        {Make(VT_ARRAY | VT_VARIANT,
              [](VARIANT& value) { value.parray = SafeArrayCreateVector(VT_VARIANT, 1, 4); }),
         "mismatch"},
        {Make(VT_ARRAY | VT_I4, [](VARIANT& value) { value.parray = SafeArrayCreateVector(VT_I4, 1, 4); }),
         "mismatch"},
    };
    for (const auto& [value, text] : rows) EXPECT_EQ(Read(value), text) << value.vt;
}

}  // namespace
