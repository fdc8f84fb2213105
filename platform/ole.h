// Start-up of automation, the library's module state, and the one message box.
#pragma once

#include "platform/replaceable.h"

namespace NPlatform {

// Makes the library's own module state the current one while the object lives, for systems where a library
// that a host loads has to switch. A system without module states has nothing to do here.
class ModuleState {
  public:
    ModuleState();
    ~ModuleState();
    ModuleState(const ModuleState&) = delete;
    ModuleState& operator=(const ModuleState&) = delete;
};

// Prepares automation for the calling thread, unless that has been done already. False: it failed.
extern Replaceable<bool()> InitAutomation;

// What follows a successful InitAutomation: hosting of controls, then the system's own start-up, whose result
// nobody needs. A system without automation of its own has nothing to do here.
extern Replaceable<void()> EnableControls;

// Shows the user a modal message with one OK button; a system without a desktop writes it to standard error.
extern Replaceable<void(const char16_t* text)> ShowMessageBox;

}  // namespace NPlatform
