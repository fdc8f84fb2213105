// What the application's objects have in common.
#pragma once

#include <new>

#include "platform/automation_servers.h"
#include "workbook/error.h"

namespace NWorkbook {

// The arguments of a call. Those left out at the end are missing, as if marked so.
class Arguments {
  public:
    explicit Arguments(std::span<const NPlatform::Variant> values) : values_(values) {}

    [[nodiscard]] std::size_t Count() const { return values_.size(); }
    const NPlatform::Variant& operator[](std::size_t index) const;

    // Each throws OleException, with kTypeMismatch, for a value of another type.
    [[nodiscard]] const std::u16string& Text(std::size_t index) const { return (*this)[index].AsString(); }
    // A truth value or an integer; false if missing.
    [[nodiscard]] bool Flag(std::size_t index) const;
    [[nodiscard]] std::int32_t Integer(std::size_t index) const { return (*this)[index].AsInteger(); }

  private:
    std::span<const NPlatform::Variant> values_;
};

[[noreturn]] void ThrowNoSuchMember();
[[noreturn]] void ThrowWrongCount();
// The failure that automation knows: code 1004, and the sentence as its description.
[[noreturn]] void ThrowFailure(const std::u16string& message);

// An object with a table of members, `Object::kMembers`, whose handlers throw WorkbookError for a failure.
template <typename Object>
class EngineObject : public NPlatform::DispatchObject {
  public:
    struct Member {
        NPlatform::DispatchId id;
        NPlatform::InvokeKind kind;
        std::size_t fewest;  // arguments
        std::size_t most;
        NPlatform::Variant (Object::*handler)(const Arguments& arguments);
    };

    NPlatform::Variant Invoke(NPlatform::DispatchId id, NPlatform::InvokeKind kind,
                              std::span<const NPlatform::Variant> values) final {
        const Member& member = Find(id, kind);
        if (values.size() < member.fewest || values.size() > member.most) ThrowWrongCount();
        try {
            return (static_cast<Object&>(*this).*member.handler)(Arguments(values));
        } catch (const WorkbookError& error) {
            ThrowFailure(error.Message());
        } catch (const std::bad_alloc&) {
            ThrowFailure(u"There is not enough memory for the workbook.");
        }
    }

  protected:
    static constexpr NPlatform::InvokeKind kMethod = NPlatform::InvokeKind::Method;
    static constexpr NPlatform::InvokeKind kGet = NPlatform::InvokeKind::PropertyGet;
    static constexpr NPlatform::InvokeKind kPut = NPlatform::InvokeKind::PropertyPut;

  private:
    static const Member& Find(NPlatform::DispatchId id, NPlatform::InvokeKind kind) {
        for (const Member& member : Object::kMembers) {
            if (member.id == id && member.kind == kind) return member;
        }
        ThrowNoSuchMember();
    }
};

// A reference to a new object.
template <typename Object, typename... Parts>
NPlatform::Variant MakeObject(Parts&&... parts) {
    return NPlatform::Variant::Object(NPlatform::Dispatch(new Object(std::forward<Parts>(parts)...)));
}

}  // namespace NWorkbook
