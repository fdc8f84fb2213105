// Owners of what automation hands out, one for each kind.
#pragma once

#include <windows.h>
// Behind it:
#include <oleauto.h>

#include <memory>
#include <string>
#include <string_view>

#include "platform/automation.h"

namespace NPlatform {

struct ReleaseComObject {
    void operator()(IUnknown* object) const noexcept { object->Release(); }
};
template <typename Interface>
using ComPointer = std::unique_ptr<Interface, ReleaseComObject>;

struct DestroySafeArray {
    void operator()(SAFEARRAY* array) const noexcept { SafeArrayDestroy(array); }
};
using SafeArrayPointer = std::unique_ptr<SAFEARRAY, DestroySafeArray>;

// A VARIANT with what it holds.
class SystemVariant {
  public:
    SystemVariant() = default;
    SystemVariant(const SystemVariant&) = delete;
    SystemVariant& operator=(const SystemVariant&) = delete;
    ~SystemVariant() { VariantClear(&value_); }

    VARIANT* operator->() { return &value_; }
    [[nodiscard]] const VARIANT* operator->() const { return &value_; }
    VARIANT* Get() { return &value_; }

  private:
    VARIANT value_{};  // empty
};

// An EXCEPINFO with its texts.
class SystemExceptionInfo {
  public:
    SystemExceptionInfo() = default;
    SystemExceptionInfo(const SystemExceptionInfo&) = delete;
    SystemExceptionInfo& operator=(const SystemExceptionInfo&) = delete;
    ~SystemExceptionInfo();

    EXCEPINFO* Get() { return &info_; }
    // What the application reported, which may be filled in only now.
    DispatchException ToException();

  private:
    EXCEPINFO info_{};
};

// The text of a BSTR; a null pointer is the empty text. Followed by a NUL.
std::u16string_view TextOf(BSTR text);
// Throws std::bad_alloc.
BSTR MakeBstr(std::u16string_view text);

// The exception for a call that did not reach the application, with the system's message.
OleException OleFailure(HRESULT status);
// Throws it where the call failed.
void CheckOle(HRESULT status);

}  // namespace NPlatform
