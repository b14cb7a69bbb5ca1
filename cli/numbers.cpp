#include "cli/numbers.h"

#include <array>
#include <charconv>

namespace zelkova::cli {

std::string shortestNumber(double x) {
  std::array<char, 32> buffer;
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), x);
  return {buffer.data(), end};
}

std::string roundedNumber(double x, int digits) {
  std::array<char, 64> buffer;
  const auto [end, error] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), x, std::chars_format::general, digits);
  return {buffer.data(), end};
}

}  // namespace zelkova::cli
