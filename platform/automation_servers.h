// Applications that answer automation inside the process, for systems without automation of their own.
#pragma once

#include <functional>

#include "platform/automation.h"

namespace NPlatform {

// An object that can be driven. It is made with one reference and destroys itself with the last.
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

// Makes an application known under its name for as long as the object lives. Of several under one name the
// latest is started.
class AutomationServer {
  public:
    using Start = std::function<Dispatch()>;

    AutomationServer(std::u16string_view progId, Start start);
    AutomationServer(const AutomationServer&) = delete;
    AutomationServer& operator=(const AutomationServer&) = delete;
    ~AutomationServer();

    // Null where no application has this name.
    static const Start* Find(std::u16string_view progId);

  private:
    std::u16string progId_;
    Start start_;
    AutomationServer* next_;
};

}  // namespace NPlatform
