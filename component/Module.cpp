#include "component/Module.h"

#include <wrl/client.h>

namespace zelkova {

HINSTANCE Module::instance = nullptr;

std::wstring Module::path() {
  std::wstring result(32768, L'\0');
  result.resize(GetModuleFileNameW(instance, result.data(), static_cast<DWORD>(result.size())));
  return result;
}

HRESULT Module::typeInfo(const std::wstring& interfaceId, ITypeInfo** info) {
  Microsoft::WRL::ComPtr<ITypeLib> library;
  if (const HRESULT outcome = LoadTypeLibEx(path().c_str(), REGKIND_NONE, &library); FAILED(outcome)) {
    return outcome;
  }
  GUID id;
  if (const HRESULT outcome = IIDFromString(interfaceId.c_str(), &id); FAILED(outcome)) return outcome;
  return library->GetTypeInfoOfGuid(id, info);
}

}  // namespace zelkova
