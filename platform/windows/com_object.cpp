#include "platform/windows/com_object.h"

#include <algorithm>
#include <vector>

#include "platform/dispatch_object.h"
#include "platform/windows/variants.h"
#include "platform/windows/wide.h"

namespace NPlatform {

namespace {

// The system expects the last argument first.
class SystemArguments {
  public:
    explicit SystemArguments(std::span<const Variant> arguments) : values_(arguments.size()) {
        for (std::size_t index = 0; index < arguments.size(); ++index) {
            ToSystem(arguments[index], *values_[arguments.size() - 1 - index].Get());
        }
    }

    [[nodiscard]] VARIANT* Values() { return values_.empty() ? nullptr : values_.front().Get(); }
    [[nodiscard]] UINT Count() const { return static_cast<UINT>(values_.size()); }

  private:
    static_assert(sizeof(SystemVariant) == sizeof(VARIANT));
    std::vector<SystemVariant> values_;
};

constexpr char16_t kBusy[] =
    u"The application is busy: finish what is open in it, such as a cell or a dialog.";

// The application does not answer now, as its user has a cell or a dialog open.
bool IsBusy(HRESULT status) {
    constexpr auto kSuspended = static_cast<HRESULT>(0x800AC472);  // Excel's own
    return status == RPC_E_CALL_REJECTED || status == RPC_E_SERVERCALL_RETRYLATER || status == kSuspended;
}

class ComObject : public DispatchObject {
  public:
    explicit ComObject(ComPointer<IDispatch> object) : object_(std::move(object)) {}

    Variant Invoke(DispatchId member, InvokeKind kind, std::span<const Variant> arguments) override {
        SystemArguments given(arguments);
        DISPID newValue = DISPID_PROPERTYPUT;
        DISPPARAMS parameters{given.Values(), nullptr, given.Count(), 0};
        if (kind == InvokeKind::PropertyPut) {
            parameters.rgdispidNamedArgs = &newValue;
            parameters.cNamedArgs = 1;
        }
        SystemVariant result;
        SystemExceptionInfo info;
        UINT wrongArgument = 0;
        const HRESULT status = AskWhileBusy([&] {
            return object_->Invoke(member, IID_NULL, 0, static_cast<WORD>(kind), &parameters, result.Get(),
                                   info.Get(), &wrongArgument);
        });
        if (status == DISP_E_EXCEPTION) throw info.ToException();
        if (IsBusy(status)) throw OleException(status, kBusy);
        CheckOle(status);
        return FromSystem(*result.Get());
    }

  private:
    // Gives up after some seconds.
    template <typename Ask>
    static HRESULT AskWhileBusy(Ask ask) {
        constexpr int kMostTimes = 50;
        constexpr DWORD kPause = 100;  // milliseconds
        HRESULT status = ask();
        for (int times = 1; times < kMostTimes && IsBusy(status); ++times) {
            Sleep(kPause);
            status = ask();
        }
        return status;
    }

    ComPointer<IDispatch> object_;
};

Dispatch StartServer(std::u16string_view progId) {
    CLSID id{};
    CheckOle(CLSIDFromProgID(ToWide(progId).c_str(), &id));
    void* object = nullptr;
    CheckOle(CoCreateInstance(id, nullptr, CLSCTX_LOCAL_SERVER, IID_IDispatch, &object));
    return WrapComObject(ComPointer<IDispatch>(static_cast<IDispatch*>(object)));
}

}  // namespace

Dispatch WrapComObject(ComPointer<IDispatch> object) { return Dispatch(new ComObject(std::move(object))); }

constinit Replaceable<Dispatch(std::u16string_view)> StartApplication{StartServer};

}  // namespace NPlatform
