#include <wrl/client.h>

#include <iostream>
#include <string>

#include "component/standin/Application.h"
#include "zelkova/frame/RunningObjects.h"

namespace {

using namespace zelkova;

/// Of the stand-in, where no spreadsheet program has given the name an identity of its own.
constexpr const wchar_t* ownIdentity = L"{5B6C7A0E-6C6B-4E0B-9E0B-3B1F7C1D9A52}";

std::wstring programKey() { return L"Software\\Classes\\" + wide(hostName); }

/// The identity behind the host's name. On a machine without a spreadsheet the name is registered while this
/// lives, for all users or, without the right to that, for this one.
class HostIdentity {
 public:
  HostIdentity() {
    const std::wstring name = wide(hostName);
    if (SUCCEEDED(CLSIDFromProgID(name.c_str(), &id_))) return;
    const std::wstring key = programKey() + L"\\CLSID";
    const DWORD size = static_cast<DWORD>((std::wstring_view(ownIdentity).size() + 1) * sizeof(wchar_t));
    for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
      if (RegSetKeyValueW(root, key.c_str(), nullptr, REG_SZ, ownIdentity, size) != ERROR_SUCCESS) continue;
      lentIn_ = root;
      break;
    }
    CLSIDFromString(ownIdentity, &id_);
  }
  HostIdentity(const HostIdentity&) = delete;
  HostIdentity& operator=(const HostIdentity&) = delete;
  ~HostIdentity() {
    if (lentIn_ != nullptr) RegDeleteTreeW(lentIn_, programKey().c_str());
  }

  REFCLSID id() const { return id_; }

 private:
  CLSID id_{};
  HKEY lentIn_ = nullptr;
};

/// Answers every creation with the one application: some script engines cannot ask for what is running.
class ApplicationFactory final : public IClassFactory {
 public:
  explicit ApplicationFactory(IDispatch* application) : application_(application) {}

  STDMETHODIMP QueryInterface(REFIID wanted, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (wanted != IID_IUnknown && wanted != IID_IClassFactory) return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
    return S_OK;
  }
  // Lives as long as the program.
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID wanted, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    return outer != nullptr ? CLASS_E_NOAGGREGATION : application_->QueryInterface(wanted, object);
  }
  STDMETHODIMP LockServer(BOOL) override { return S_OK; }

 private:
  IDispatch* application_;
};

DWORD mainThread = 0;

void quit() { PostThreadMessageW(mainThread, WM_QUIT, 0, 0); }

BOOL WINAPI onConsoleEvent(DWORD) {
  quit();
  return TRUE;
}

int run() {
  const HostIdentity identity;
  Microsoft::WRL::ComPtr<IUnknown> other;
  if (SUCCEEDED(GetActiveObject(identity.id(), nullptr, &other))) {
    std::cerr << "A host is running already.\n";
    return 1;
  }
  Microsoft::WRL::ComPtr<IDispatch> application;
  application = new ApplicationObject(quit);
  DWORD entry = 0;
  const HRESULT outcome = RegisterActiveObject(application.Get(), identity.id(), ACTIVEOBJECT_STRONG, &entry);
  if (FAILED(outcome)) {
    std::cerr << "The table of running objects does not take the stand-in: " << systemText(outcome) << '\n';
    return 1;
  }
  ApplicationFactory factory(application.Get());
  DWORD factoryEntry = 0;
  CoRegisterClassObject(identity.id(), &factory, CLSCTX_LOCAL_SERVER, REGCLS_MULTIPLEUSE, &factoryEntry);
  SetConsoleCtrlHandler(onConsoleEvent, TRUE);
  std::cout << "The stand-in is running as \"" << hostName << "\"; end it with Ctrl+C or its Quit."
            << std::endl;
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
  CoRevokeClassObject(factoryEntry);
  RevokeActiveObject(entry, nullptr);
  return 0;
}

}  // namespace

int wmain() {
  mainThread = GetCurrentThreadId();
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
  const int code = run();
  CoUninitialize();
  return code;
}
