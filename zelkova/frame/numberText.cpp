#include "zelkova/frame/numberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>

#include "zelkova/frame/Failure.h"

namespace zelkova {

namespace {

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// The digits of a number as they stand in its text: [sign] whole [. fraction] [E exponent].
struct Parts {
  std::string_view whole;
  std::string_view fraction;
  std::string_view exponent;
};

std::optional<Parts> split(std::string_view text) {
  Parts parts;
  std::size_t at = 0;
  const auto digits = [&] {
    const std::size_t start = at;
    while (at < text.size() && isDigit(text[at])) ++at;
    return text.substr(start, at - start);
  };
  parts.whole = digits();
  if (at < text.size() && text[at] == '.') {
    ++at;
    parts.fraction = digits();
  }
  if (parts.whole.empty() && parts.fraction.empty()) return std::nullopt;
  if (at < text.size() && upper(text[at]) == 'E') {
    const std::size_t start = ++at;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
    if (digits().empty()) return std::nullopt;
    parts.exponent = text.substr(start, at - start);
  }
  if (at != text.size()) return std::nullopt;
  return parts;
}

/// Whether a number outside the range of a double is too small rather than too large.
bool isTiny(const Parts& parts) {
  const std::size_t wholeZeros = std::min(parts.whole.find_first_not_of('0'), parts.whole.size());
  const std::size_t fractionZeros = std::min(parts.fraction.find_first_not_of('0'), parts.fraction.size());
  const auto wholeDigits = static_cast<long long>(parts.whole.size() - wholeZeros);
  const long long magnitude = wholeDigits > 0 ? wholeDigits : -static_cast<long long>(fractionZeros);
  std::string_view text = parts.exponent;
  if (text.starts_with('+')) text.remove_prefix(1);
  long long exponent = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), exponent);
  // No text is long enough to outweigh an exponent of more digits than a file has bytes.
  constexpr long long decisive = 1'000'000'000'000;
  if (error == std::errc::result_out_of_range || std::abs(exponent) > decisive) return text.starts_with('-');
  return exponent + magnitude < 0;
}

}  // namespace

std::string numberText(double x) {
  if (x == 0) return "0";  // -0 shows as 0
  std::array<char, 32> buffer;
  const auto [end, error] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), x, std::chars_format::general, 15);
  std::string text(buffer.data(), end);
  std::replace(text.begin(), text.end(), 'e', 'E');
  return text;
}

std::optional<double> numberOf(std::string_view text) {
  text = trimmed(text);
  bool negative = false;
  if (text.starts_with('+') || text.starts_with('-')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  const std::optional<Parts> parts = split(text);
  if (!parts) return std::nullopt;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) {
    if (!isTiny(*parts)) return std::nullopt;
    value = 0;
  }
  return negative ? -value : value;
}

double toNumber(std::string_view text) {
  const std::optional<double> value = numberOf(text);
  if (!value) raise(FailureNumber::TypeMismatch, "\"" + std::string(text) + "\" is not a number");
  return *value;
}

double toNumber(std::string_view text, const char* argument) {
  const std::optional<double> value = numberOf(text);
  if (value) return *value;
  raise(FailureNumber::TypeMismatch,
        std::string(argument) + ": \"" + std::string(trimmed(text)) + "\" is not a number");
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string upperCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), upper);
  return result;
}

bool sameIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return upper(x) == upper(y); });
}

}  // namespace zelkova
