#include "platform/windows/com.h"

#include <limits>
#include <new>

#include "platform/format.h"
#include "platform/windows/wide.h"

namespace NPlatform {

SystemExceptionInfo::~SystemExceptionInfo() {
    SysFreeString(info_.bstrSource);
    SysFreeString(info_.bstrDescription);
    SysFreeString(info_.bstrHelpFile);
}

DispatchException SystemExceptionInfo::ToException() {
    if (info_.pfnDeferredFillIn != nullptr) info_.pfnDeferredFillIn(&info_);
    return {info_.wCode, std::u16string(TextOf(info_.bstrDescription)),
            std::u16string(TextOf(info_.bstrSource)), std::u16string(TextOf(info_.bstrHelpFile))};
}

std::u16string_view TextOf(BSTR text) {
    return text == nullptr ? u"" : std::u16string_view(AsUtf16(text), SysStringLen(text));
}

BSTR MakeBstr(std::u16string_view text) {
    const bool fits = text.size() < std::numeric_limits<UINT>::max() / sizeof(char16_t);
    BSTR made = fits ? SysAllocStringLen(AsWide(text.data()), static_cast<UINT>(text.size())) : nullptr;
    if (made == nullptr) throw std::bad_alloc();
    return made;
}

OleException OleFailure(HRESULT status) {
    constexpr DWORD kFlags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    WCHAR message[1024];
    DWORD size = FormatMessageW(kFlags, nullptr, static_cast<DWORD>(status), 0, message,
                                static_cast<DWORD>(std::size(message)), nullptr);
    while (size > 0 && message[size - 1] <= ' ') --size;  // the system ends it with a line end
    if (size == 0) return {status, Format(64, u"Error 0x%08lx.", {static_cast<std::uint32_t>(status)})};
    return {status, FromWide({message, size})};
}

void CheckOle(HRESULT status) {
    if (FAILED(status)) throw OleFailure(status);
}

}  // namespace NPlatform
