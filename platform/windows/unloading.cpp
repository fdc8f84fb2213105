// The compiler's runtime is part of each library, and expects to stay as long as the process does. A host may
// load and free a library again and again: here is what the runtime would leave behind each time, its memory
// for exceptions and, with handles and memory, its variables that each thread has a copy of.
//
// NOLINTBEGIN(bugprone-reserved-identifier): the names are the runtime's.
#include <windows.h>

#include <cstdlib>
#include <cstring>

namespace __gnu_cxx {
void __freeres();
}

namespace {

// What the compiler makes of such a variable.
struct ThreadVariable {
    std::size_t size;
    std::size_t alignment;
    std::size_t slot;          // the system's number plus 1; 0: it has none yet
    const void* initialValue;  // null: zeros
};

// Those that have a slot of the system.
constexpr std::size_t kMostVariables = 16;
ThreadVariable* variables[kMostVariables];
std::size_t variableCount = 0;
SRWLOCK variablesLock = SRWLOCK_INIT;

// The system calls it when a thread ends, and for all threads when the slot is given back.
void WINAPI FreeCopy(void* copy) { std::free(copy); }

DWORD SlotOf(ThreadVariable& variable) {
    AcquireSRWLockExclusive(&variablesLock);
    if (variable.slot == 0) {
        const DWORD slot = FlsAlloc(FreeCopy);
        if (slot == FLS_OUT_OF_INDEXES || variableCount == kMostVariables) std::abort();
        variable.slot = std::size_t{slot} + 1;
        variables[variableCount++] = &variable;
    }
    ReleaseSRWLockExclusive(&variablesLock);
    return static_cast<DWORD>(variable.slot - 1);
}

void GiveSlotsBack() {
    for (; variableCount > 0; --variableCount) {
        ThreadVariable& variable = *variables[variableCount - 1];
        FlsFree(static_cast<DWORD>(variable.slot - 1));
        variable.slot = 0;
    }
}

void* MakeCopy(const ThreadVariable& variable, DWORD slot) {
    void* const copy = std::calloc(1, variable.size);
    if (copy == nullptr || FlsSetValue(slot, copy) == 0) std::abort();  // as the runtime itself would
    if (variable.initialValue != nullptr) std::memcpy(copy, variable.initialValue, variable.size);
    return copy;
}

}  // namespace

// In the place of the runtime's own.
extern "C" void* __emutls_get_address(ThreadVariable* variable) {
    const DWORD error = GetLastError();
    const DWORD slot = SlotOf(*variable);
    void* copy = FlsGetValue(slot);
    if (copy == nullptr) copy = MakeCopy(*variable, slot);
    SetLastError(error);
    return copy;
}

// In the place of the runtime's own, which makes a record of the thread: the linker leads all calls here.
extern "C" int __wrap_pthread_once(volatile long* state, void (*action)()) {
    constexpr long kBegun = 1;
    constexpr long kDone = 2;
    if (InterlockedCompareExchange(state, kBegun, 0) == 0) {
        action();
        InterlockedExchange(state, kDone);
    }
    while (*state != kDone) SwitchToThread();
    return 0;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* isProcessEnding) {
    if (reason != DLL_PROCESS_DETACH || isProcessEnding != nullptr) return TRUE;
    GiveSlotsBack();
    __gnu_cxx::__freeres();
    return TRUE;
}
// NOLINTEND(bugprone-reserved-identifier)
