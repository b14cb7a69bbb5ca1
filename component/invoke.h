#pragma once

#include <span>
#include <string>

#include "component/automation.h"

namespace zelkova {

/// A member of an object of the host, reached by name.
class Member {
 public:
  Member(IDispatch* object, const wchar_t* name);
  Member(IDispatch* object, DISPID id) : object_(object), id_(id) {}

  bool exists() const { return id_ != DISPID_UNKNOWN; }
  DISPID id() const { return id_; }

  /// Reads the property, or calls the function; arguments in order. Failure 1004 with the object's own text,
  /// or the system's where the object gives none.
  OwnedVariant get(std::span<OwnedVariant> arguments = {}) const;

  /// Sets the property.
  void put(OwnedVariant value) const;

 private:
  OwnedVariant invoke(WORD flags, std::span<OwnedVariant> arguments) const;

  IDispatch* object_;
  DISPID id_ = DISPID_UNKNOWN;
};

}  // namespace zelkova
