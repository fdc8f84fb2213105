#include "platform/windows/variants.h"

#include "platform/windows/com_object.h"

namespace NPlatform {

namespace {

VariantElement ElementOf(const VARIANT& value) {
    VariantElement element;
    element.type = static_cast<VariantType>(value.vt);
    switch (element.type) {
        case VariantType::Bool:
            element.integer = value.boolVal != VARIANT_FALSE ? 1 : 0;
            break;
        case VariantType::Error:
            element.integer = value.scode;
            break;
        case VariantType::Int16:
            element.integer = value.iVal;
            break;
        case VariantType::Int32:
            element.integer = value.lVal;
            break;
        case VariantType::Double:
            element.number = value.dblVal;
            break;
        case VariantType::Date:
            element.number = value.date;
            break;
        case VariantType::String:
            element.text = TextOf(value.bstrVal);
            break;
        default:
            break;
    }
    return element;
}

// The system's array as it is; nothing is copied.
class SystemArray : public VariantArray {
  public:
    explicit SystemArray(SafeArrayPointer array) : array_(std::move(array)) {
        VARTYPE type = VT_EMPTY;
        CheckOle(SafeArrayGetVartype(array_.get(), &type));
        if (SafeArrayGetDim(array_.get()) != 2 || type != VT_VARIANT) throw OleFailure(kTypeMismatch);
        rows_ = Count(1);
        columns_ = Count(2);
        void* elements = nullptr;
        CheckOle(SafeArrayAccessData(array_.get(), &elements));
        elements_ = static_cast<const VARIANT*>(elements);
    }
    ~SystemArray() override { SafeArrayUnaccessData(array_.get()); }

    [[nodiscard]] std::int32_t UpperBound(int dimension) const override {
        return dimension == 1 ? rows_ : columns_;
    }
    // The elements of a column are adjacent.
    [[nodiscard]] VariantElement At(std::int32_t row, std::int32_t column) const override {
        return ElementOf(elements_[std::ptrdiff_t{column - 1} * rows_ + row - 1]);
    }

  private:
    [[nodiscard]] std::int32_t Count(UINT dimension) const {
        LONG lower = 0;
        LONG upper = 0;
        CheckOle(SafeArrayGetLBound(array_.get(), dimension, &lower));
        CheckOle(SafeArrayGetUBound(array_.get(), dimension, &upper));
        return upper - lower + 1;
    }

    SafeArrayPointer array_;
    std::int32_t rows_ = 0;
    std::int32_t columns_ = 0;
    const VARIANT* elements_ = nullptr;
};

Variant TakeArray(VARIANT& value) {
    value.vt = VT_EMPTY;
    return Variant::Array(std::make_shared<SystemArray>(SafeArrayPointer(value.parray)));
}

Variant TakeObject(VARIANT& value) {
    value.vt = VT_EMPTY;
    if (value.pdispVal == nullptr) return {};
    return Variant::Object(WrapComObject(ComPointer<IDispatch>(value.pdispVal)));
}

Variant ToDouble(VARIANT& value) {
    SystemVariant number;
    CheckOle(VariantChangeType(number.Get(), &value, 0, VT_R8));
    return Variant::Double(number->dblVal);
}

}  // namespace

void ToSystem(const Variant& value, VARIANT& result) {
    switch (value.Type()) {
        case VariantType::Empty:
            return;
        case VariantType::Bool:
            result.boolVal = value.AsBool() ? VARIANT_TRUE : VARIANT_FALSE;
            break;
        case VariantType::Error:
            result.scode = value.AsErrorCode();
            break;
        case VariantType::Int16:
            result.iVal = static_cast<SHORT>(value.AsInteger());
            break;
        case VariantType::Int32:
            result.lVal = value.AsInteger();
            break;
        case VariantType::Double:
            result.dblVal = value.AsDouble();
            break;
        case VariantType::String:
            result.bstrVal = MakeBstr(value.AsString());
            break;
        default:
            throw OleFailure(kTypeMismatch);
    }
    result.vt = static_cast<VARTYPE>(value.Type());
}

Variant FromSystem(VARIANT& value) {
    switch (value.vt) {
        case VT_EMPTY:
        case VT_NULL:
            return {};
        case VT_BOOL:
            return Variant::Bool(value.boolVal != VARIANT_FALSE);
        case VT_ERROR:
            return Variant::Error(value.scode);
        case VT_I2:
            return Variant::Int16(value.iVal);
        case VT_I4:
            return Variant::Int32(value.lVal);
        case VT_R8:
            return Variant::Double(value.dblVal);
        case VT_BSTR:
            return Variant::String(TextOf(value.bstrVal));
        case VT_DISPATCH:
            return TakeObject(value);
        case VT_ARRAY | VT_VARIANT:
            return TakeArray(value);
        default:
            return ToDouble(value);
    }
}

}  // namespace NPlatform
