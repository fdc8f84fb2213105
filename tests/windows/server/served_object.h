// The workbook engine's objects as those of an application in a process of its own.
#pragma once

#include "platform/dispatch_object.h"
#include "tests/windows/server/faults.h"

namespace NTest {

// Passes calls on, paths as the engine has them; what comes back is served likewise. The process is done with
// the last of these objects: its message loop is told to end.
class ServedObject : public NPlatform::DispatchObject {
  public:
    ServedObject(NPlatform::Dispatch object, Faults& faults);
    ServedObject(const ServedObject&) = delete;
    ServedObject& operator=(const ServedObject&) = delete;
    ~ServedObject() override;

    NPlatform::Variant Invoke(NPlatform::DispatchId member, NPlatform::InvokeKind kind,
                              std::span<const NPlatform::Variant> arguments) override;

  private:
    NPlatform::Dispatch object_;
    Faults& faults_;
};

}  // namespace NTest
