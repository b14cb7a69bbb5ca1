#pragma once

#include <gtest/gtest.h>
#include <wrl/client.h>

#include <string>
#include <vector>

#include "component/automation.h"

namespace zelkova {

using Microsoft::WRL::ComPtr;

/// How a call ended, as a client sees it.
struct Ending {
  HRESULT code = S_OK;
  long number = 0;  ///< of a failure, as a script shows it
  std::string text, source;
};

inline DISPID idOf(IDispatch* object, const wchar_t* name) {
  auto* text = const_cast<wchar_t*>(name);
  DISPID id = DISPID_UNKNOWN;
  object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
  return id;
}

/// Calls `id` with arguments in the order of automation: the last first, the named ones before all others.
inline Ending invoke(IDispatch* object, DISPID id, DISPPARAMS parameters, VARIANT* result = nullptr) {
  EXCEPINFO exception{};
  UINT wrong = 0;
  Ending ending;
  ending.code = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, result,
                               &exception, &wrong);
  if (ending.code != DISP_E_EXCEPTION) return ending;
  EXPECT_EQ(static_cast<unsigned long>(exception.scode) & 0xFFFF0000U, 0x800A0000U);
  ending.number = exception.scode & 0xFFFF;
  ending.text = utf8(exception.bstrDescription);
  ending.source = utf8(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrSource);
  return ending;
}

/// Calls a method with arguments in their own order.
inline Ending call(IDispatch* object, const wchar_t* name, std::vector<VARIANT> arguments,
                   VARIANT* result = nullptr) {
  const std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
  return invoke(object, idOf(object, name),
                {const_cast<VARIANT*>(reversed.data()), nullptr, static_cast<UINT>(reversed.size()), 0},
                result);
}

inline HRESULT create(const wchar_t* program, ComPtr<IDispatch>& object) {
  CLSID id;
  const HRESULT found = CLSIDFromProgID(program, &id);
  return FAILED(found) ? found : CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&object));
}

/// References, as clients pass them.
template <class T>
VARIANT referenceTo(T& target, VARTYPE type) {
  VARIANT result;
  VariantInit(&result);
  result.vt = static_cast<VARTYPE>(VT_BYREF | type);
  result.byref = &target;
  return result;
}
inline VARIANT referenceTo(VARIANT& target) { return referenceTo(target, VT_VARIANT); }

/// A typed vector with any lower bound.
template <class T>
OwnedVariant typed(VARTYPE type, const std::vector<T>& elements, LONG lowerBound = 1) {
  SAFEARRAYBOUND bound = {static_cast<ULONG>(elements.size()), lowerBound};
  SAFEARRAY* array = SafeArrayCreate(type, 1, &bound);
  std::copy(elements.begin(), elements.end(), static_cast<T*>(array->pvData));
  return OwnedVariant::array(array, type);
}

/// The number at `index` of a vector of doubles or of variants.
inline double at(const VARIANT& array, LONG index) {
  if (array.vt == (VT_ARRAY | VT_R8)) {
    double value = 0;
    EXPECT_EQ(SafeArrayGetElement(array.parray, &index, &value), S_OK) << index;
    return value;
  }
  OwnedVariant value;
  EXPECT_EQ(array.vt, VT_ARRAY | VT_VARIANT);
  EXPECT_EQ(SafeArrayGetElement(array.parray, &index, &value), S_OK) << index;
  EXPECT_EQ(value.vt, VT_R8);
  return value.dblVal;
}

inline std::pair<LONG, LONG> bounds(SAFEARRAY* array) {
  LONG lower = 0, upper = 0;
  EXPECT_EQ(SafeArrayGetLBound(array, 1, &lower), S_OK);
  EXPECT_EQ(SafeArrayGetUBound(array, 1, &upper), S_OK);
  return {lower, upper};
}

/// Tests that talk to the registered server, on a thread of their own apartment.
class Client : public testing::Test {
 protected:
  Client() { CoInitialize(nullptr); }
  ~Client() override { CoUninitialize(); }
};

}  // namespace zelkova
