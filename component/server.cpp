#include <wrl/client.h>

#include <algorithm>
#include <new>
#include <utility>

#include "component/Dispatch.h"
#include "component/Module.h"
#include "component/identities.h"
#include "component/registration.h"

namespace {

using namespace zelkova;

/// An instance that a client created.
///
/// The library must stay loaded until the host has been let go, which may let the client's code in: so the
/// use is a base, which ends after all else.
class Instance final : private Module::Use, public Dispatch {
 public:
  Instance(const Class& description, std::shared_ptr<void> instance)
      : Dispatch(description, std::move(instance), identities::programId(description.name)) {}

  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }

  STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    try {
      return Module::typeInfo(wide(identities::ofInterface(description().name)), info);
    } catch (...) {
      return E_OUTOFMEMORY;
    }
  }
};

/// Gives the failure of a creation to clients that ask for more than its code.
void offer(const Failure& failure, const Class& description) noexcept {
  Microsoft::WRL::ComPtr<ICreateErrorInfo> creator;
  if (FAILED(CreateErrorInfo(&creator))) return;
  try {
    creator->SetSource(wide(identities::programId(description.name)).data());
    creator->SetDescription(wide(failure.text()).data());
  } catch (...) {
    return;  // no memory for words: the code alone has to do
  }
  Microsoft::WRL::ComPtr<IErrorInfo> info;
  if (SUCCEEDED(creator.As(&info))) SetErrorInfo(0, info.Get());
}

class Factory final : public Counted<IClassFactory> {
 public:
  explicit Factory(const Class& description) : description_(description) {}

  STDMETHODIMP QueryInterface(REFIID wanted, void** object) override {
    return answer(wanted, object, IID_IClassFactory, IID_IClassFactory);
  }

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID wanted, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    try {
      Microsoft::WRL::ComPtr<Instance> instance;
      instance = new Instance(description_, description_.create());
      return instance->QueryInterface(wanted, object);
    } catch (const Failure& failure) {
      offer(failure, description_);
      return codeOf(failure);
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    } catch (...) {
      return E_UNEXPECTED;
    }
  }

  STDMETHODIMP LockServer(BOOL lock) override {
    lock ? Module::lock() : Module::unlock();
    return S_OK;
  }

 private:
  const Class& description_;
  Module::Use use_;
};

/// The class of that identity, or nothing.
const Class* findClass(REFCLSID id) {
  wchar_t text[40];
  if (StringFromGUID2(id, text, static_cast<int>(std::size(text))) == 0) return nullptr;
  const std::string wanted = utf8(std::wstring_view(text));
  for (const Class& c : Catalogue::get().classes()) {
    if (identities::ofClass(c.name) == wanted) return &c;
  }
  return nullptr;
}

}  // namespace

/// The C++ run-time library's own way to give back what it keeps for exceptions without memory: some 70 kB
/// that each unloading would lose.
namespace __gnu_cxx {
void __freeres() noexcept;  // NOLINT(bugprone-reserved-identifier): the library's name for it
}

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID endOfProcess) {
  if (reason == DLL_PROCESS_ATTACH) Module::instance = instance;
  if (reason == DLL_PROCESS_DETACH && endOfProcess == nullptr) __gnu_cxx::__freeres();
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID id, REFIID wanted, LPVOID* object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  try {
    const Class* description = findClass(id);
    if (description == nullptr) return CLASS_E_CLASSNOTAVAILABLE;
    Microsoft::WRL::ComPtr<Factory> factory;
    factory = new Factory(*description);
    return factory->QueryInterface(wanted, object);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

STDAPI DllCanUnloadNow() { return Module::isUsed() ? S_FALSE : S_OK; }

STDAPI DllRegisterServer() {
  try {
    return registerServer();
  } catch (...) {
    return E_UNEXPECTED;
  }
}

STDAPI DllUnregisterServer() {
  try {
    return unregisterServer();
  } catch (...) {
    return E_UNEXPECTED;
  }
}
}
