#include "platform/ole.h"

#include <windows.h>
// Behind it:
#include <ole2.h>

#include "platform/windows/wide.h"

namespace NPlatform {

// The library brings no framework whose state would have to be switched.
ModuleState::ModuleState() = default;
ModuleState::~ModuleState() = default;

// Where the host has done so already, the system only counts.
static bool InitOle() { return SUCCEEDED(OleInitialize(nullptr)); }

static void InitOleAgain() { static_cast<void>(OleInitialize(nullptr)); }

static void ShowBox(const char16_t* text) {
    MessageBoxW(nullptr, AsWide(text), L"xls2tki", MB_OK | MB_ICONEXCLAMATION | MB_TASKMODAL);
}

constinit Replaceable<bool()> InitAutomation{InitOle};
constinit Replaceable<void()> EnableControls{InitOleAgain};
constinit Replaceable<void(const char16_t*)> ShowMessageBox{ShowBox};

}  // namespace NPlatform
