#pragma once

#include <wrl/client.h>

#include <array>
#include <span>
#include <string>
#include <utility>

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

/// An object of the host. Failure 1004 where it has no member of the name that is asked for, and where the
/// member itself fails.
class HostObject {
 public:
  explicit HostObject(IDispatch* object) : object_(object) {}

  IDispatch* pointer() const { return object_.Get(); }
  Member member(const wchar_t* name) const;

  /// Reads the property, or calls the function.
  template <class... Arguments>
  OwnedVariant get(const wchar_t* name, Arguments... arguments) const {
    std::array<OwnedVariant, sizeof...(Arguments)> passed = {std::move(arguments)...};
    return member(name).get(passed);
  }

  /// The same for an object; failure 1004 where the answer is none.
  template <class... Arguments>
  HostObject object(const wchar_t* name, Arguments... arguments) const {
    return objectIn(get(name, std::move(arguments)...), name);
  }

  void set(const wchar_t* name, OwnedVariant value) const { member(name).put(std::move(value)); }

 private:
  static HostObject objectIn(const OwnedVariant& answer, const wchar_t* name);

  Microsoft::WRL::ComPtr<IDispatch> object_;
};

}  // namespace zelkova
