#include "cli/numbers.h"

#include <array>
#include <charconv>
#include <cmath>

namespace zelkova::cli {

namespace {

std::string wholeNumber(double x) { return std::to_string(static_cast<long long>(x)); }

}  // namespace

std::string shortestNumber(double x) {
  std::array<char, 32> buffer;
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), x);
  return {buffer.data(), end};
}

std::string roundedNumber(double x, int digits) {
  constexpr double exactlyWhole = 1e15;
  if (std::abs(x) < exactlyWhole && x == std::trunc(x)) return wholeNumber(x);
  std::array<char, 64> buffer;
  const auto [end, error] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), x, std::chars_format::general, digits);
  return {buffer.data(), end};
}

}  // namespace zelkova::cli
