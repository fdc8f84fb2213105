#include "workbook/engine_object.h"

namespace NWorkbook {

using NPlatform::DispatchException;
using NPlatform::OleException;
using NPlatform::Variant;
using NPlatform::VariantType;

namespace {

constexpr auto kBadParameterCount = static_cast<std::int32_t>(0x8002000E);
constexpr std::uint16_t kApplicationError = 1004;

}  // namespace

const Variant& Arguments::operator[](std::size_t index) const {
    static const Variant missing = Variant::Missing();
    return index < values_.size() ? values_[index] : missing;
}

bool Arguments::Flag(std::size_t index) const {
    const Variant& value = (*this)[index];
    if (value.IsMissing()) return false;
    return value.Type() == VariantType::Bool ? value.AsBool() : value.AsInteger() != 0;
}

void ThrowNoSuchMember() { throw OleException(NPlatform::kMemberNotFound, u"Member not found."); }

void ThrowWrongCount() { throw OleException(kBadParameterCount, u"Invalid number of parameters."); }

void ThrowFailure(const std::u16string& message) {
    throw DispatchException(kApplicationError, message, u"xls2tki", u"");
}

}  // namespace NWorkbook
