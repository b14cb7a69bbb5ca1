#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <span>
#include <vector>

#include "host/EmbeddedWorksheetFunction.h"
#include "host/domain.h"
#include "zelkova/kit/compensatedSum.h"

namespace zelkova {

using domain::require;

namespace {

constexpr double everyDoubleWhole = 9007199254740992;  // 2^53: from there on not every whole number is one

/// Whether `quotient` is meant to be `whole`: it differs by no more than the rounding of its parts.
bool isWhole(double quotient, double whole) {
  return std::fabs(quotient - whole) <= 4 * std::numeric_limits<double>::epsilon() * std::fabs(quotient);
}

std::span<const double> numbers(const DoubleArray& values, const char* unfilled, const char* notFinite) {
  require(values.filled(), unfilled);
  require(std::all_of(values.elements().begin(), values.elements().end(), domain::finite), notFinite);
  return values.elements();
}

}  // namespace

double EmbeddedWorksheetFunction::Max(const DoubleArray& values) {
  const auto x = numbers(values, "Max: values has no element", "Max: values must be finite numbers");
  return *std::max_element(x.begin(), x.end());
}

double EmbeddedWorksheetFunction::Max(double a, double b) {
  require(domain::finite(a) && domain::finite(b), "Max: values must be finite numbers");
  return std::max(a, b);
}

double EmbeddedWorksheetFunction::Min(const DoubleArray& values) {
  const auto x = numbers(values, "Min: values has no element", "Min: values must be finite numbers");
  return *std::min_element(x.begin(), x.end());
}

double EmbeddedWorksheetFunction::Min(double a, double b) {
  require(domain::finite(a) && domain::finite(b), "Min: values must be finite numbers");
  return std::min(a, b);
}

double EmbeddedWorksheetFunction::Ceiling(double x, double significance) {
  require(domain::finite(x), "Ceiling: x must be a finite number");
  require(domain::finite(significance), "Ceiling: significance must be a finite number");
  if (x == 0 || significance == 0) return 0;
  require((x > 0) == (significance > 0), "Ceiling: x and significance must have the same sign");
  const double quotient = x / significance;
  if (!(quotient < everyDoubleWhole)) return x;
  const double nearest = std::round(quotient);
  // Deliberate: 0.07 is 7 steps of 0.01 though the quotient of the two doubles lies above 7, and
  // 25.000000000000004 is 25 that went through arithmetic.
  const bool meant = isWhole(quotient, nearest);
  const double steps = std::fmax(meant ? nearest : std::ceil(quotient), 1);
  // Tenths and hundredths are no doubles, but their reciprocals are: 57 / 100 is 0.57, 57 * 0.01 is not.
  const double reciprocal = std::round(1 / significance);
  if (isWhole(1 / significance, reciprocal)) return domain::result(steps / reciprocal, "Ceiling");
  const double multiple = steps * significance;
  const double unit = std::nextafter(std::fabs(x), std::numeric_limits<double>::infinity()) - std::fabs(x);
  // 0.9 is three times 0.3 already, which 3 * 0.3 is not.
  const bool fraction = significance != std::trunc(significance);
  if (meant && fraction && std::fabs(multiple - x) <= unit) return x;
  return domain::result(multiple, "Ceiling");
}

double EmbeddedWorksheetFunction::RoundUp(double x, double digits) {
  require(domain::finite(x), "RoundUp: x must be a finite number");
  require(domain::finite(digits), "RoundUp: digits must be a finite number");
  digits = std::trunc(digits);
  if (x == 0) return 0;
  const double power = std::pow(10, std::fabs(digits));
  const double shifted = digits >= 0 ? x * power : x / power;
  // From here on doubles have no digit after the last one asked for.
  if (digits >= 0 && !(std::fabs(shifted) < everyDoubleWhole / 2)) return x;
  const double nearest = std::round(shifted);
  // Deliberate: 25.000000000000004 is 25 that went through arithmetic; a sample size of 26 helps nobody.
  const bool meant = shifted != 0 && isWhole(shifted, nearest);
  const double whole = meant ? nearest : std::copysign(std::fmax(std::ceil(std::fabs(shifted)), 1), x);
  return domain::result(digits >= 0 ? whole / power : whole * power, "RoundUp");
}

double EmbeddedWorksheetFunction::Gcd(double a, double b) {
  a = std::trunc(a);
  b = std::trunc(b);
  require(a >= 0 && a < everyDoubleWhole && b >= 0 && b < everyDoubleWhole,
          "Gcd: a and b must be at least 0 and below 2^53");
  while (b != 0) {
    a = std::fmod(a, b);
    std::swap(a, b);
  }
  return a;
}

double EmbeddedWorksheetFunction::Sum(const DoubleArray& values) {
  const auto x = numbers(values, "Sum: values has no element", "Sum: values must be finite numbers");
  return domain::result(compensatedSum(x), "Sum");
}

double EmbeddedWorksheetFunction::Average(const DoubleArray& values) {
  const auto x = numbers(values, "Average: values has no element", "Average: values must be finite numbers");
  const double size = static_cast<double>(x.size());
  const double sum = compensatedSum(x);
  if (std::isfinite(sum)) return sum / size;
  // The sum may be too large for a double where the average is not.
  const int exponent = std::ilogb(size) + 1;
  std::vector<double> scaled;
  scaled.reserve(x.size());
  for (const double v : x) scaled.push_back(std::ldexp(v, -exponent));
  return domain::result(std::ldexp(compensatedSum(scaled) / size, exponent), "Average");
}

double EmbeddedWorksheetFunction::Pi() { return std::numbers::pi; }

}  // namespace zelkova
