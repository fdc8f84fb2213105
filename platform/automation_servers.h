// Applications that answer automation inside the process: all there are on systems without automation of
// their own, and those of tests.
#pragma once

#include <functional>

#include "platform/dispatch_object.h"

namespace NPlatform {

// Makes an application known under its name for as long as the object lives. Of several under one name the
// latest is started.
class AutomationServer {
  public:
    using Start = std::function<Dispatch()>;

    AutomationServer(std::u16string_view progId, Start start);
    AutomationServer(const AutomationServer&) = delete;
    AutomationServer& operator=(const AutomationServer&) = delete;
    ~AutomationServer();

    // Starts the application of this name and gives its first object. Throws OleException where there is
    // none.
    static Dispatch Run(std::u16string_view progId);

  private:
    std::u16string progId_;
    Start start_;
    AutomationServer* next_;
};

}  // namespace NPlatform
