// Keeps the library in the process, once it is loaded. The compiler's runtime is part of it and expects to
// stay as long as the process does: a host that loads and frees the library again and again would lose memory
// and handles each time.
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
    if (reason != DLL_PROCESS_ATTACH) return TRUE;
    HMODULE library = nullptr;
    constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS;
    return GetModuleHandleExW(kFlags, reinterpret_cast<const wchar_t*>(&DllMain), &library);
}
