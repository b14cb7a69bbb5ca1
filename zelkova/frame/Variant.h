#pragma once

#include <concepts>
#include <string>
#include <utility>
#include <variant>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// A value of mixed type: a number, a text, a flag or nothing, with the conversions of automation.
class Variant {
 public:
  Variant() = default;
  Variant(double number) : value_(number) {}                // NOLINT(google-explicit-constructor)
  Variant(std::string text) : value_(std::move(text)) {}    // NOLINT(google-explicit-constructor)
  Variant(const char* text) : value_(std::string(text)) {}  // NOLINT(google-explicit-constructor)
  template <std::same_as<bool> Flag>
  Variant(Flag) = delete;  // a flag is not the number 1: say Variant::flag
  static Variant flag(bool value) {
    Variant result;
    result.value_ = value;
    return result;
  }

  bool isNothing() const noexcept { return std::holds_alternative<std::monostate>(value_); }
  bool isNumber() const noexcept { return std::holds_alternative<double>(value_); }
  bool isText() const noexcept { return std::holds_alternative<std::string>(value_); }
  bool isFlag() const noexcept { return std::holds_alternative<bool>(value_); }

  /// The number; a flag is -1 or 0, nothing is 0, a numeric text its number, any other text failure 13.
  double toNumber() const;

  /// The text; a number gives its number text, a flag "True" or "False", nothing the empty text.
  std::string toText() const;

  /// The flag; a number is true unless 0, "True" and "False" are flags in any case, nothing is false.
  bool toFlag() const;

  friend bool operator==(const Variant&, const Variant&) = default;

 private:
  std::variant<std::monostate, double, std::string, bool> value_;
};

using VariantArray = Array<Variant>;

}  // namespace zelkova
