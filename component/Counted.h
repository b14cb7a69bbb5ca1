#pragma once

#include <atomic>

#include "component/automation.h"

namespace zelkova {

/// An object that counts its owners, the first included, and goes with the last.
template <class Interface>
class Counted : public Interface {
 public:
  Counted() = default;
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~Counted() = default;

  /// Answers `QueryInterface`: this for `IUnknown` and the two interfaces given.
  HRESULT answer(REFIID wanted, void** object, REFIID first, REFIID second) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (wanted != IID_IUnknown && wanted != first && wanted != second) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<Interface*>(this);
    return S_OK;
  }

 private:
  std::atomic<ULONG> references_{0};
};

/// An automation object that no type library describes.
class UntypedObject : public Counted<IDispatch> {
 public:
  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
  }

  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    return DISP_E_BADINDEX;
  }
};

}  // namespace zelkova
