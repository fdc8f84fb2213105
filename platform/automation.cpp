// The part of automation that is the same on every system.
#include "platform/automation.h"

#include "platform/dispatch_object.h"
#include "platform/exception_text.h"

namespace NPlatform {

OleException::OleException(std::int32_t status, std::u16string message)
    : status_(status), message_(std::move(message)), what_(ExceptionText(message_)) {}

DispatchException::DispatchException(std::uint16_t code, std::u16string description, std::u16string source,
                                     std::u16string helpFile)
    : code_(code),
      description_(std::move(description)),
      source_(std::move(source)),
      helpFile_(std::move(helpFile)),
      what_(ExceptionText(description_)) {}

Dispatch::Dispatch(const Dispatch& other) : object_(other.object_) {
    if (object_ != nullptr) object_->AddReference();
}

void Dispatch::Create(std::u16string_view progId) { *this = StartApplication(progId); }

void Dispatch::Release() noexcept {
    DispatchObject* const object = std::exchange(object_, nullptr);
    if (object != nullptr) object->Release();
}

Variant Dispatch::Invoke(DispatchId member, InvokeKind kind, std::span<const Variant> arguments) const {
    return object_ == nullptr ? Variant() : object_->Invoke(member, kind, arguments);
}

Variant Dispatch::Call(DispatchId method, std::initializer_list<Variant> arguments) const {
    return Invoke(method, InvokeKind::Method, {arguments.begin(), arguments.size()});
}

Variant Dispatch::Get(DispatchId property, std::initializer_list<Variant> arguments) const {
    return Invoke(property, InvokeKind::PropertyGet, {arguments.begin(), arguments.size()});
}

void Dispatch::Put(DispatchId property, const Variant& value) const {
    static_cast<void>(Invoke(property, InvokeKind::PropertyPut, {&value, 1}));
}

Variant Variant::Of(const VariantElement& element) {
    switch (element.type) {
        case VariantType::Bool:
            return Bool(element.integer != 0);
        case VariantType::Error:
            return Error(element.integer);
        case VariantType::Int16:
            return Int16(static_cast<std::int16_t>(element.integer));
        case VariantType::Int32:
            return Int32(element.integer);
        case VariantType::Double:
        case VariantType::Date:
            return Double(element.number);
        case VariantType::String:
            return String(element.text);
        default:
            return {};
    }
}

VariantType Variant::Type() const {
    constexpr VariantType kTypes[] = {VariantType::Empty,  VariantType::Error,    VariantType::Bool,
                                      VariantType::Int16,  VariantType::Int32,    VariantType::Double,
                                      VariantType::String, VariantType::Dispatch, VariantType::Array};
    static_assert(std::size(kTypes) == std::variant_size_v<Value>);
    return kTypes[value_.index()];
}

bool Variant::IsMissing() const {
    const auto* const error = std::get_if<ErrorCode>(&value_);
    return error != nullptr && error->code == kParameterNotFound;
}

std::int32_t Variant::AsInteger() const {
    return Type() == VariantType::Int16 ? As<std::int16_t>() : As<std::int32_t>();
}

void Variant::ThrowTypeMismatch() { throw OleException(kTypeMismatch, u"Type mismatch."); }

}  // namespace NPlatform
