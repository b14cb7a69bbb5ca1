#pragma once

#include <memory>
#include <string>
#include <utility>

#include "component/standin/Object.h"
#include "zelkova/frame/Array.h"

/// What clients pass to the stand-in's objects, and what those answer.
namespace zelkova {

// Failure 13, with `name` in its text, for what cannot be converted.
double numberIn(const VARIANT& passed, const char* name);
bool flagIn(const VARIANT& passed, const char* name);
std::string textIn(const VARIANT& passed, const char* name);

/// A constant, colour or angle; failure 1004 for what is no whole number.
int wholeIn(const VARIANT& passed, const char* name);

/// A row, a column or another place, from 1; failure 1004 for numbers outside a sheet.
Index placeIn(const VARIANT& passed, const char* name);

inline OwnedVariant answered(bool flag) { return OwnedVariant::flag(flag); }
inline OwnedVariant answered(int number) { return OwnedVariant::longInteger(number); }
inline OwnedVariant answered(double number) { return OwnedVariant(number); }
inline OwnedVariant answered(const std::string& text) { return OwnedVariant::text(text); }
template <class Constant>
requires std::is_enum_v<Constant> OwnedVariant answered(Constant constant) {
  return answered(static_cast<int>(constant));
}

/// A new object as a variant that holds its only reference.
template <class T, class... Arguments>
OwnedVariant made(Arguments&&... arguments) {
  return OwnedVariant::object(new T(std::forward<Arguments>(arguments)...));
}

}  // namespace zelkova
