#pragma once

#include <memory>
#include <string>
#include <vector>

#include "component/Counted.h"
#include "zelkova/catalogue/Catalogue.h"
#include "zelkova/frame/Failure.h"

namespace zelkova {

/// Fills in what a client learns of the C++ exception that is being handled: the number of its failure as
/// 0x800A0000 and the number, its text, its source. Answers `DISP_E_EXCEPTION`.
HRESULT reportCurrent(const std::string& source, EXCEPINFO* exception) noexcept;

/// The code under which a failure crosses.
inline HRESULT codeOf(const Failure& failure) {
  return static_cast<HRESULT>(0x800A0000U | (static_cast<unsigned>(failure.number()) & 0xFFFFU));
}

/// An instance of a class of the catalogue as an automation object: its methods by name, in any case, with
/// arguments by position and by name.
///
/// Outputs must be passed, and by reference. An array that is left out was never filled; any other argument
/// without a default is not optional. Outputs that the method had assigned when a failure ended it are
/// written back too.
class Dispatch : public UntypedObject {
 public:
  /// `source` names the object in failures: "zelkova.yHTest".
  Dispatch(const Class& description, std::shared_ptr<void> instance, std::string source);

  STDMETHODIMP QueryInterface(REFIID wanted, void** object) override {
    return answer(wanted, object, IID_IDispatch, interface_);
  }
  STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters,
                      VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) override;

 protected:
  const Class& description() const { return description_; }

 private:
  const Class& description_;
  std::shared_ptr<void> instance_;
  std::string source_;
  GUID interface_{};  ///< the default interface's
};

}  // namespace zelkova
