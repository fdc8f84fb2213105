// The implementation behind a reference to an automation object.
#pragma once

#include <cstddef>

#include "platform/automation.h"

namespace NPlatform {

// An object in this process, or one that speaks to an object of another. It is made with one reference and
// destroys itself with the last.
class DispatchObject {
  public:
    DispatchObject(const DispatchObject&) = delete;
    DispatchObject& operator=(const DispatchObject&) = delete;
    virtual ~DispatchObject() = default;

    // Throws DispatchException for a failure of the application, OleException for a member that the object
    // does not have or an argument of the wrong type.
    virtual Variant Invoke(DispatchId member, InvokeKind kind, std::span<const Variant> arguments) = 0;

    void AddReference() noexcept { ++references_; }
    void Release() noexcept {
        if (--references_ == 0) delete this;
    }

  protected:
    DispatchObject() = default;

  private:
    std::size_t references_ = 1;
};

}  // namespace NPlatform
