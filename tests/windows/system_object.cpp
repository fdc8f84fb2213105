#include "tests/windows/system_object.h"

#include <new>
#include <vector>

#include "platform/dispatch_object.h"
#include "platform/windows/variants.h"

namespace NPlatform {

namespace {

SAFEARRAY* MakeSafeArray(const VariantArray& array) {
    const std::int32_t rows = array.UpperBound(1);
    const std::int32_t columns = array.UpperBound(2);
    SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(rows), 1}, {static_cast<ULONG>(columns), 1}};
    SafeArrayPointer made(SafeArrayCreate(VT_VARIANT, 2, bounds));
    if (made == nullptr) throw std::bad_alloc();
    auto* element = static_cast<VARIANT*>(made->pvData);
    for (std::int32_t column = 1; column <= columns; ++column) {
        for (std::int32_t row = 1; row <= rows; ++row, ++element) {
            const VariantElement value = array.At(row, column);
            ToSystem(Variant::Of(value), *element);
            if (value.type == VariantType::Date) element->vt = VT_DATE;  // also a double
        }
    }
    return made.release();
}

void HandOut(const Variant& value, VARIANT& result) {
    switch (value.Type()) {
        case VariantType::Dispatch:
            result.pdispVal =
                value.AsObject().HasObject() ? MakeSystemObject(value.AsObject()).release() : nullptr;
            break;
        case VariantType::Array:
            result.parray = MakeSafeArray(value.AsArray());
            break;
        default:
            return ToSystem(value, result);
    }
    result.vt = static_cast<VARTYPE>(value.Type());
}

// The caller's first argument comes last and stays his.
std::vector<Variant> ReadArguments(const DISPPARAMS& parameters) {
    std::vector<Variant> arguments;
    for (UINT left = parameters.cArgs; left > 0; --left) {
        SystemVariant copy;
        CheckOle(VariantCopyInd(copy.Get(), &parameters.rgvarg[left - 1]));
        arguments.push_back(FromSystem(*copy.Get()));
    }
    return arguments;
}

void Report(const DispatchException& failure, EXCEPINFO& info) {
    info.wCode = failure.Code();
    info.bstrDescription = MakeBstr(failure.Description());
    info.bstrSource = MakeBstr(failure.Source());
    info.bstrHelpFile = MakeBstr(failure.HelpFile());
}

class SystemObject : public IDispatch {
  public:
    explicit SystemObject(Dispatch object) : object_(std::move(object)) {}
    virtual ~SystemObject() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override {
        const bool isKnown = id == IID_IUnknown || id == IID_IDispatch;
        *result = isKnown ? this : nullptr;
        if (isKnown) AddRef();
        return isKnown ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }

    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* info, UINT*) override {
        try {
            const std::vector<Variant> arguments = ReadArguments(*parameters);
            const Variant answer =
                object_.Object()->Invoke(member, static_cast<InvokeKind>(flags), arguments);
            if (result != nullptr) HandOut(answer, *result);
            return S_OK;
        } catch (const DispatchException& failure) {
            if (info != nullptr) Report(failure, *info);
            return DISP_E_EXCEPTION;
        } catch (const OleException& failure) {
            return failure.Status();
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        }
    }

  private:
    Dispatch object_;
    ULONG references_ = 1;
};

}  // namespace

ComPointer<IDispatch> MakeSystemObject(const Dispatch& object) {
    return ComPointer<IDispatch>(new SystemObject(object));
}

}  // namespace NPlatform
