#include "component/invoke.h"

#include <algorithm>
#include <vector>

#include "zelkova/frame/Failure.h"

namespace zelkova {

namespace {

/// As the host's own macros call it: names and texts are in English whatever the user's settings, and a
/// spreadsheet whose language is not the user's refuses others.
constexpr LCID language = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);

}  // namespace

Member::Member(IDispatch* object, const wchar_t* name) : object_(object) {
  auto* text = const_cast<wchar_t*>(name);
  if (FAILED(object->GetIDsOfNames(IID_NULL, &text, 1, language, &id_))) id_ = DISPID_UNKNOWN;
}

OwnedVariant Member::get(std::span<OwnedVariant> arguments) const {
  return invoke(DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments);
}

void Member::put(OwnedVariant value) const { invoke(DISPATCH_PROPERTYPUT, {&value, 1}); }

OwnedVariant Member::invoke(WORD flags, std::span<OwnedVariant> arguments) const {
  std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
  DISPID assigned = DISPID_PROPERTYPUT;
  const bool puts = flags == DISPATCH_PROPERTYPUT;
  DISPPARAMS parameters = {reversed.data(), puts ? &assigned : nullptr, static_cast<UINT>(reversed.size()),
                           puts ? 1U : 0U};
  OwnedVariant result;
  EXCEPINFO exception{};
  UINT wrong = 0;
  const HRESULT outcome = object_->Invoke(id_, IID_NULL, language, flags, &parameters,
                                          puts ? nullptr : &result, &exception, &wrong);
  if (SUCCEEDED(outcome)) return result;
  if (outcome == DISP_E_EXCEPTION && exception.pfnDeferredFillIn != nullptr) {
    exception.pfnDeferredFillIn(&exception);
  }
  const std::string text = exception.bstrDescription != nullptr ? utf8(exception.bstrDescription)
                           : outcome == DISP_E_EXCEPTION && exception.scode != 0 ? systemText(exception.scode)
                                                                                 : systemText(outcome);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrHelpFile);
  throw Failure(static_cast<int>(FailureNumber::HostRefused), text);
}

Member HostObject::member(const wchar_t* name) const {
  const Member found(object_.Get(), name);
  if (!found.exists()) raise(FailureNumber::HostRefused, "the host has no " + utf8(std::wstring_view(name)));
  return found;
}

HostObject HostObject::objectIn(const OwnedVariant& answer, const wchar_t* name) {
  if (answer.vt != VT_DISPATCH || answer.pdispVal == nullptr) {
    raise(FailureNumber::HostRefused, "the host has no such " + utf8(std::wstring_view(name)));
  }
  return HostObject(answer.pdispVal);
}

}  // namespace zelkova
