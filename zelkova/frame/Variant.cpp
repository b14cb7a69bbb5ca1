#include "zelkova/frame/Variant.h"

#include "zelkova/frame/numberText.h"

namespace zelkova {

double Variant::toNumber() const {
  if (const double* number = std::get_if<double>(&value_)) return *number;
  if (const std::string* text = std::get_if<std::string>(&value_)) return zelkova::toNumber(*text);
  if (const bool* flag = std::get_if<bool>(&value_)) return *flag ? -1 : 0;
  return 0;
}

std::string Variant::toText() const {
  if (const double* number = std::get_if<double>(&value_)) return numberText(*number);
  if (const std::string* text = std::get_if<std::string>(&value_)) return *text;
  if (const bool* flag = std::get_if<bool>(&value_)) return *flag ? "True" : "False";
  return {};
}

bool Variant::toFlag() const {
  if (const bool* flag = std::get_if<bool>(&value_)) return *flag;
  if (const std::string* text = std::get_if<std::string>(&value_)) {
    if (sameIgnoringCase(trimmed(*text), "True")) return true;
    if (sameIgnoringCase(trimmed(*text), "False")) return false;
  }
  return toNumber() != 0;
}

}  // namespace zelkova
