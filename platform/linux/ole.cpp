#include "platform/ole.h"

#include <cstdio>

#include "platform/linux/paths.h"

namespace NPlatform {

ModuleState::ModuleState() = default;
ModuleState::~ModuleState() = default;

static bool AutomationNeedsNoStart() { return true; }

static void NoControls() {}

static void WriteMessage(const char16_t* text) { std::fprintf(stderr, "%s\n", PathToBytes(text).c_str()); }

constinit Replaceable<bool()> InitAutomation{AutomationNeedsNoStart};
constinit Replaceable<void()> EnableControls{NoControls};
constinit Replaceable<void(const char16_t*)> ShowMessageBox{WriteMessage};

}  // namespace NPlatform
