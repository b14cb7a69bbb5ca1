#include "component/standin/Object.h"

#include <algorithm>
#include <new>

#include "component/Dispatch.h"
#include "zelkova/frame/numberText.h"

namespace zelkova {

STDMETHODIMP Object::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (names == nullptr || ids == nullptr) return E_POINTER;
  std::fill(ids, ids + count, DISPID_UNKNOWN);
  if (count != 1 || names[0] == nullptr) return DISP_E_UNKNOWNNAME;
  try {
    const std::string name = utf8(std::wstring_view(names[0]));
    const auto found = std::find_if(members_.begin(), members_.end(),
                                    [&](const Entry& m) { return sameIgnoringCase(m.name, name); });
    if (found == members_.end()) return DISP_E_UNKNOWNNAME;
    ids[0] = static_cast<DISPID>(found - members_.begin());
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

STDMETHODIMP Object::Invoke(DISPID member, REFIID reserved, LCID, WORD flags, DISPPARAMS* parameters,
                            VARIANT* result, EXCEPINFO* exception, UINT*) {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (parameters == nullptr || (parameters->cArgs > 0 && parameters->rgvarg == nullptr)) return E_INVALIDARG;
  if (member < 0 || static_cast<std::size_t>(member) >= members_.size()) return DISP_E_MEMBERNOTFOUND;
  const Entry& entry = members_[static_cast<std::size_t>(member)];
  try {
    std::vector<VARIANT> arguments(parameters->rgvarg, parameters->rgvarg + parameters->cArgs);
    std::reverse(arguments.begin(), arguments.end());
    if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
      if (!entry.put) return DISP_E_MEMBERNOTFOUND;
      if (arguments.size() != 1) return DISP_E_BADPARAMCOUNT;
      entry.put(arguments.front());
      return S_OK;
    }
    while (!arguments.empty() && isMissing(arguments.back())) arguments.pop_back();
    if (arguments.size() < entry.count.least || arguments.size() > entry.count.most) {
      return DISP_E_BADPARAMCOUNT;
    }
    OwnedVariant answer = entry.get(arguments);
    if (result != nullptr) *result = answer.release();
    return S_OK;
  } catch (...) {
    return reportCurrent(source_, exception);
  }
}

void Object::add(std::string name, Count count, Get get, Put put) {
  members_.push_back({std::move(name), count, std::move(get), std::move(put)});
}

}  // namespace zelkova
