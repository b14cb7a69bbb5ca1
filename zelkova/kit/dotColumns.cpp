#include "zelkova/kit/dotColumns.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/scales.h"

namespace zelkova {

namespace {

/// What the rounding of decimals may have taken from a ratio of two numbers.
double roundingOf(double ratio) { return 1E-9 + 0x1p-50 * std::abs(ratio); }

std::int64_t floorOf(double ratio) {
  return static_cast<std::int64_t>(std::floor(ratio + roundingOf(ratio)));
}

std::int64_t floorOfQuotient(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

/// `digits` times a power of ten, rounded once.
double decimal(std::int64_t digits, Index exponent) {
  const auto number = static_cast<double>(digits);
  return exponent < 0 ? number / powerOfTen(-exponent) : number * powerOfTen(exponent);
}

/// Whether `number` is 1, 2, 2.5 or 5 times a power of ten.
bool isRound(std::int64_t number) {
  while (number % 10 == 0) number /= 10;
  return number == 1 || number == 2 || number == 5 || number == 25;
}

Index exponentOf(double x) { return static_cast<Index>(std::floor(std::log10(x))); }

/// The greatest step of which all values are a whole number apart, as whole number and power of ten; 0 where
/// there is none that matters to columns of about `width`.
struct CommonStep {
  CommonStep(std::span<const double> values, double smallest, double largest, double width) {
    const double size = std::max(std::abs(smallest), std::abs(largest));
    const Index finest = exponentOf(width) - 3;
    for (exponent = exponentOf(largest - smallest); exponent >= finest; --exponent) {
      const double unit = powerOfTen(exponent);
      if (size > 1E12 * unit) return;
      const double rounding = roundingOf(size / unit);
      const auto isWhole = [=](double ratio) { return std::abs(ratio - std::round(ratio)) <= rounding; };
      if (!std::all_of(values.begin(), values.end(),
                       [=](double x) { return isWhole((x - smallest) / unit); })) {
        continue;
      }
      for (const double x : values) {
        digits = std::gcd(digits, static_cast<std::int64_t>(std::round((x - smallest) / unit)));
        if (digits == 1) return;
      }
      return;
    }
  }

  std::int64_t digits = 0;
  Index exponent = 0;
};

}  // namespace

DotColumns::DotColumns(const DoubleArray& data) : smallest_(GetMin(data)), largest_(GetMax(data)) {
  checked::leaving(data);
  const double range = checked::finite(largest_ - smallest_);
  if (agreeOnAxis(smallest_, largest_)) return;

  constexpr double mostColumns = 200;
  const double most = std::min(std::floor(4 * std::sqrt(static_cast<double>(data.rows()))), mostColumns);
  const CommonStep step(data.vector(), smallest_, largest_, range / most);
  if (step.digits > 0) {
    chooseSteps(step.digits, step.exponent, static_cast<Index>(most));
  } else {
    chooseWidth(range / most, static_cast<Index>(most));
  }
}

void DotColumns::chooseSteps(std::int64_t stepDigits, Index stepExponent, Index most) {
  step_ = decimal(stepDigits, stepExponent);
  stepsBefore_ = floorOf(smallest_ / step_);
  for (stepsWide_ = 1;; ++stepsWide_) {
    const std::int64_t digits = stepsWide_ * stepDigits;
    if (!isRound(stepsWide_) && !isRound(digits)) continue;
    width_ = decimal(digits, stepExponent);
    if (fits(most)) return;
  }
}

void DotColumns::chooseWidth(double least, Index most) {
  for (Index exponent = exponentOf(least);; ++exponent) {
    for (const std::int64_t tenths : {10, 20, 25, 50}) {
      width_ = decimal(tenths, exponent - 1);
      if (fits(most)) return;
    }
  }
}

bool DotColumns::fits(Index most) {
  first_ = placeInAll(smallest_);
  const std::int64_t count = placeInAll(largest_) - first_ + 1;
  count_ = static_cast<Index>(std::min<std::int64_t>(count, most + 1));
  return count <= most;
}

std::int64_t DotColumns::placeInAll(double x) const {
  if (width_ == 0) return 0;
  if (step_ == 0) return floorOf(x / width_ + 0.5);
  const auto stepsAbove = static_cast<std::int64_t>(std::round((x - smallest_) / step_));
  return floorOfQuotient(stepsBefore_ + stepsAbove + stepsWide_ / 2, stepsWide_);
}

double DotColumns::placeOf(Index number) const {
  if (width_ == 0) return smallest_ + (largest_ - smallest_) / 2;
  const std::int64_t place = first_ + number;
  if (step_ == 0) return readable(static_cast<double>(place) * width_);
  // Of an even number of values the middle lies between two.
  const double middle = static_cast<double>(place * stepsWide_) - (stepsWide_ % 2 == 0 ? 0.5 : 0);
  return readable(smallest_ + (middle - static_cast<double>(stepsBefore_)) * step_);
}

}  // namespace zelkova
