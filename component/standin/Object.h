#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "component/Counted.h"

namespace zelkova {

/// An automation object whose members are written down one by one: the surface of the stand-in's workbook.
class Object : public UntypedObject {
 public:
  STDMETHODIMP QueryInterface(REFIID wanted, void** object) override {
    return answer(wanted, object, IID_IDispatch, IID_IDispatch);
  }
  STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters,
                      VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) override;

 protected:
  using Arguments = std::span<const VARIANT>;  ///< in order
  using Get = std::function<OwnedVariant(Arguments)>;
  using Put = std::function<void(const VARIANT&)>;

  /// `source` names the object in failures.
  explicit Object(std::string source) : source_(std::move(source)) {}

  /// How many arguments a member takes.
  struct Count {
    std::size_t least, most;
    Count(std::size_t exactly) : least(exactly), most(exactly) {}  // NOLINT(google-explicit-constructor)
    Count(std::size_t atLeast, std::size_t atMost) : least(atLeast), most(atMost) {}
  };

  /// Adds a property or a function; the first that is added is the default one.
  void add(std::string name, Count count, Get get, Put put = {});

 private:
  struct Entry {
    std::string name;
    Count count;
    Get get;
    Put put;
  };

  std::string source_;
  std::vector<Entry> members_;  ///< a member's dispatch id is its place; 0 is automation's default member
};

}  // namespace zelkova
