#include "component/standin/passed.h"

#include <cmath>
#include <limits>

#include "component/arguments.h"
#include "host/references.h"

namespace zelkova {

namespace {

template <class T>
T valueIn(const VARIANT& passed, const char* name, ValueType type) {
  return std::get<T>(valueOf(describedAs(name, type), passed, LOCALE_INVARIANT));
}

}  // namespace

double numberIn(const VARIANT& passed, const char* name) {
  return valueIn<double>(passed, name, ValueType::Double);
}

bool flagIn(const VARIANT& passed, const char* name) { return valueIn<bool>(passed, name, ValueType::Flag); }

std::string textIn(const VARIANT& passed, const char* name) {
  return valueIn<std::string>(passed, name, ValueType::Text);
}

int wholeIn(const VARIANT& passed, const char* name) {
  const double number = numberIn(passed, name);
  if (number != std::trunc(number) || std::abs(number) > std::numeric_limits<int>::max()) {
    refuseAsHost(std::string(name) + " is no whole number");
  }
  return static_cast<int>(number);
}

Index placeIn(const VARIANT& passed, const char* name) {
  const double number = numberIn(passed, name);
  if (!(number >= 1 && number <= rowsOfSheet)) refuseAsHost(std::string("no such ") + name);
  return static_cast<Index>(number);
}

}  // namespace zelkova
