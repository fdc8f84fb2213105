// Automation: objects of another application, driven by dispatch identifiers.
//
// The meaning is that of COM. An object lives as long as somebody holds a reference to it. Members are
// invoked by number, as method, property get or property put. Arguments are in the order in which the
// member declares them. Texts are UTF-16 and may hold NUL. Arrays have two dimensions, rows and columns, each
// counted from 1. All calls happen on one thread and return when the work is done.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "platform/replaceable.h"

namespace NPlatform {

using DispatchId = std::int32_t;

enum class InvokeKind : std::uint16_t { Method = 1, PropertyGet = 2, PropertyPut = 4 };

// The system's own numbers.
enum class VariantType : std::uint16_t {
    Empty = 0,
    Int16 = 2,
    Int32 = 3,
    Double = 5,
    Date = 7,  // in arrays alone; a number
    String = 8,
    Dispatch = 9,
    Error = 10,
    Bool = 11,
    Array = 0x200C,  // of variants
};

inline constexpr auto kMemberNotFound = static_cast<std::int32_t>(0x80020003);
inline constexpr auto kParameterNotFound = static_cast<std::int32_t>(0x80020004);  // the missing marker
inline constexpr auto kTypeMismatch = static_cast<std::int32_t>(0x80020005);

// A failure of automation itself: no such application, no such member, a value of another type.
class OleException : public std::exception {
  public:
    OleException(std::int32_t status, std::u16string message);

    [[nodiscard]] std::int32_t Status() const { return status_; }
    [[nodiscard]] const std::u16string& Message() const { return message_; }
    [[nodiscard]] const char* what() const noexcept override { return what_.c_str(); }  // UTF-8

  private:
    std::int32_t status_;
    std::u16string message_;
    std::string what_;
};

// A failure that the application reports for a call.
class DispatchException : public std::exception {
  public:
    DispatchException(std::uint16_t code, std::u16string description, std::u16string source,
                      std::u16string helpFile);

    [[nodiscard]] std::uint16_t Code() const { return code_; }
    [[nodiscard]] const std::u16string& Description() const { return description_; }
    [[nodiscard]] const std::u16string& Source() const { return source_; }
    [[nodiscard]] const std::u16string& HelpFile() const { return helpFile_; }
    [[nodiscard]] const char* what() const noexcept override { return what_.c_str(); }  // UTF-8

  private:
    std::uint16_t code_;
    std::u16string description_;
    std::u16string source_;
    std::u16string helpFile_;
    std::string what_;
};

// One element of an array; which member counts follows from the type.
struct VariantElement {
    VariantType type = VariantType::Empty;
    std::int32_t integer = 0;  // Bool (0 or 1), Error (its code), Int16, Int32
    double number = 0;         // Double; Date: days as the application counts them
    // String: belongs to the array and is followed by a NUL.
    std::u16string_view text;
};

class VariantArray {
  public:
    VariantArray() = default;
    VariantArray(const VariantArray&) = delete;
    VariantArray& operator=(const VariantArray&) = delete;
    virtual ~VariantArray() = default;

    // Of dimension 1, the rows, or 2, the columns. The lower bound of both is 1.
    [[nodiscard]] virtual std::int32_t UpperBound(int dimension) const = 0;
    // The caller stays within the bounds.
    [[nodiscard]] virtual VariantElement At(std::int32_t row, std::int32_t column) const = 0;
};

class DispatchObject;  // platform/dispatch_object.h
class Variant;

// Holds one reference to an object, or none, and lets go of it when it is destroyed.
class Dispatch {
  public:
    Dispatch() = default;
    // Takes the reference over.
    explicit Dispatch(DispatchObject* object) : object_(object) {}
    Dispatch(const Dispatch& other);
    Dispatch(Dispatch&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Dispatch& operator=(Dispatch other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Dispatch() { Release(); }

    // Starts the application of this name and holds its first object. Throws as StartApplication.
    void Create(std::u16string_view progId);
    void Release() noexcept;
    [[nodiscard]] bool HasObject() const { return object_ != nullptr; }
    // Without a further reference.
    [[nodiscard]] DispatchObject* Object() const { return object_; }

    // Without an object they do nothing, and the result is empty. Throw DispatchException where the
    // application reports a failure, OleException where the call does not reach it. A method's result is
    // often of no interest.
    // NOLINTNEXTLINE(modernize-use-nodiscard)
    Variant Call(DispatchId method, std::initializer_list<Variant> arguments = {}) const;
    [[nodiscard]] Variant Get(DispatchId property, std::initializer_list<Variant> arguments = {}) const;
    void Put(DispatchId property, const Variant& value) const;

  private:
    [[nodiscard]] Variant Invoke(DispatchId member, InvokeKind kind,
                                 std::span<const Variant> arguments) const;

    DispatchObject* object_ = nullptr;
};

// Starts the application of this name, in a process of its own where the system has such applications, and
// gives its first object. Throws OleException.
extern Replaceable<Dispatch(std::u16string_view progId)> StartApplication;

// A value as it goes into a call or comes out of one.
class Variant {
  public:
    Variant() = default;  // empty
    static Variant Missing() { return Error(kParameterNotFound); }
    static Variant Error(std::int32_t code) { return {std::in_place_type<ErrorCode>, code}; }
    static Variant Bool(bool value) { return {std::in_place_type<bool>, value}; }
    static Variant Int16(std::int16_t value) { return {std::in_place_type<std::int16_t>, value}; }
    static Variant Int32(std::int32_t value) { return {std::in_place_type<std::int32_t>, value}; }
    static Variant Double(double value) { return {std::in_place_type<double>, value}; }
    static Variant String(std::u16string_view value) { return {std::in_place_type<std::u16string>, value}; }
    static Variant Object(Dispatch value) { return {std::in_place_type<Dispatch>, std::move(value)}; }
    static Variant Array(std::shared_ptr<const VariantArray> value) {
        return {std::in_place_type<std::shared_ptr<const VariantArray>>, std::move(value)};
    }
    // A copy, of a date as a number; empty for an element that is neither a number, a text, a truth value nor
    // an error.
    static Variant Of(const VariantElement& element);

    [[nodiscard]] VariantType Type() const;
    [[nodiscard]] bool IsEmpty() const { return Type() == VariantType::Empty; }
    [[nodiscard]] bool IsMissing() const;

    // Each throws OleException, with kTypeMismatch, for a value of another type; AsInteger takes both sizes.
    // References live as long as the variant does.
    [[nodiscard]] std::int32_t AsErrorCode() const { return As<ErrorCode>().code; }
    [[nodiscard]] bool AsBool() const { return As<bool>(); }
    [[nodiscard]] std::int32_t AsInteger() const;
    [[nodiscard]] double AsDouble() const { return As<double>(); }
    [[nodiscard]] const std::u16string& AsString() const { return As<std::u16string>(); }
    [[nodiscard]] const Dispatch& AsObject() const { return As<Dispatch>(); }
    [[nodiscard]] const VariantArray& AsArray() const { return *As<std::shared_ptr<const VariantArray>>(); }

  private:
    struct ErrorCode {
        explicit ErrorCode(std::int32_t given) : code(given) {}
        std::int32_t code;
    };
    using Value = std::variant<std::monostate, ErrorCode, bool, std::int16_t, std::int32_t, double,
                               std::u16string, Dispatch, std::shared_ptr<const VariantArray>>;

    template <typename T, typename Part>
    Variant(std::in_place_type_t<T> type, Part&& part) : value_(type, std::forward<Part>(part)) {}

    template <typename T>
    [[nodiscard]] const T& As() const {
        const T* const value = std::get_if<T>(&value_);
        if (value == nullptr) ThrowTypeMismatch();
        return *value;
    }
    [[noreturn]] static void ThrowTypeMismatch();

    Value value_;
};

}  // namespace NPlatform
