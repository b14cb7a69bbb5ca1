#include "cli/numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>

namespace zelkova::cli {

namespace {

/// A whole number in full; nothing for any other number, or one too large to be known to the last digit.
std::optional<std::string> wholeNumber(double x) {
  constexpr double largest = 1e15;
  if (std::abs(x) >= largest || x != std::trunc(x) || (x == 0 && std::signbit(x))) return std::nullopt;
  return std::to_string(static_cast<long long>(x));
}

}  // namespace

std::string shortestNumber(double x) {
  if (const auto whole = wholeNumber(x)) return *whole;
  std::array<char, 32> buffer;
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), x);
  return {buffer.data(), end};
}

std::string roundedNumber(double x, int digits) {
  if (const auto whole = wholeNumber(x)) return *whole;
  std::array<char, 64> buffer;
  const auto [end, error] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), x, std::chars_format::general, digits);
  return {buffer.data(), end};
}

}  // namespace zelkova::cli
