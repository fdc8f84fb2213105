// Excel for the tests: started by the system when an application creates an object of its class, and ended
// when nobody holds one any more. Each application gets a process of its own.
#include <windows.h>
// Behind it:
#include <ole2.h>

#include <thread>

#include "tests/windows/server/served_object.h"
#include "tests/windows/system_object.h"
#include "workbook/application.h"

namespace {

// Excel's own.
constexpr CLSID kApplication = {0x00024500, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

class Factory : public IClassFactory {
  public:
    explicit Factory(NTest::Faults& faults) : faults_(faults) {}
    virtual ~Factory() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override {
        const bool isKnown = id == IID_IUnknown || id == IID_IClassFactory;
        *result = isKnown ? this : nullptr;
        return isKnown ? S_OK : E_NOINTERFACE;
    }
    // It lives as long as the process does.
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** result) override {
        const NPlatform::Dispatch application(
            new NTest::ServedObject(NWorkbook::StartApplication(), faults_));
        return NPlatform::MakeSystemObject(application)->QueryInterface(id, result);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

  private:
    NTest::Faults& faults_;
};

}  // namespace

int main(int count, char** values) {
    NTest::Faults faults({values + 1, static_cast<std::size_t>(count - 1)});
    if (faults.Refuses()) return 1;
    // Where the system starts applications; a path that is not complete means nothing here.
    SetCurrentDirectoryA("C:\\windows\\system32");
    OleInitialize(nullptr);
    Factory factory(faults);
    DWORD registration = 0;
    CoRegisterClassObject(kApplication, &factory, CLSCTX_LOCAL_SERVER, REGCLS_SINGLEUSE, &registration);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
    std::this_thread::sleep_for(faults.Lingers());
    CoRevokeClassObject(registration);
    OleUninitialize();
    return 0;
}
