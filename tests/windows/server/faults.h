// What the server is told to do wrong, by the arguments that its entry in the registry has.
#pragma once

#include <chrono>
#include <span>

#include "platform/automation.h"

namespace NTest {

// --fail MEMBER    the member reports a failure, with all that a failure can have
// --busy MEMBER N  the first N calls of the member are turned away
// --die MEMBER     the process ends in the midst of the call
// --refuse         the process ends before it has anything to offer
// --linger MS      the process is still there for that long after its last object went
//
// A member is named by its number. Other arguments, which the system adds, are passed over.
class Faults {
  public:
    explicit Faults(std::span<const char* const> arguments);

    [[nodiscard]] bool Refuses() const { return refuses_; }
    [[nodiscard]] std::chrono::milliseconds Lingers() const { return lingers_; }

    // Does what is to go wrong in this call. Throws DispatchException or OleException.
    void Commit(NPlatform::DispatchId member);

  private:
    static constexpr NPlatform::DispatchId kNone = -1;

    NPlatform::DispatchId failing_ = kNone;
    NPlatform::DispatchId busy_ = kNone;
    NPlatform::DispatchId deadly_ = kNone;
    int busyCalls_ = 0;
    bool refuses_ = false;
    std::chrono::milliseconds lingers_{0};
};

}  // namespace NTest
