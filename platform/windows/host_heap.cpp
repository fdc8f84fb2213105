#include "platform/host_heap.h"

#include <windows.h>

#include <new>

namespace NPlatform {

template <typename Function>
static Function* FindInRuntime(const char* name) {
    const HMODULE runtime = GetModuleHandleW(L"ucrtbase.dll");
    if (runtime == nullptr) return nullptr;
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(runtime, name)));
}

void* AllocateForHost(std::size_t bytes) {
    auto* const allocate = FindInRuntime<void*(std::size_t)>("malloc");
    void* const block = allocate == nullptr ? nullptr : allocate(bytes);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

void FreeOfHost(void* block) noexcept {
    if (auto* const release = FindInRuntime<void(void*)>("free"); release != nullptr) release(block);
}

}  // namespace NPlatform
