#include "zelkova/hypothesis/signInterval.h"

#include <algorithm>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/summary.h"

namespace zelkova {

namespace {

/// Coverages that differ from the confidence by no more, relative to what is missing to 1, are meant to equal
/// it: 7/8 of four values is 0.875.
constexpr double rounding = 1e-12;

/// The pairs of order statistics of a column, numbered from the outermost inwards. Their coverages are kept
/// as what is missing to 1, which has its digits where the coverage has none left.
class Pairs {
 public:
  Pairs(WorksheetFunction& host, std::span<const double> sorted)
      : host_(host), sorted_(sorted), n_(static_cast<Index>(sorted.size())) {}

  /// The last pair before the two change sides, and coverage turns negative.
  Index innermost() const { return (n_ + 1) / 2; }

  double missing(Index j) const {
    const bool isMiddleValue = 2 * j > n_;
    if (isMiddleValue) return 1;
    return 2 * host_.BinomDist(static_cast<double>(j - 1), static_cast<double>(n_), 0.5, true);
  }

  AchievedInterval interval(Index j) const {
    return {
        {1 - missing(j), sorted_[static_cast<std::size_t>(j - 1)], sorted_[static_cast<std::size_t>(n_ - j)]},
        static_cast<double>(j)};
  }

  /// The first pair inside the outermost one that misses `alpha` or more; `innermost` + 1 where none does.
  Index firstMissing(double alpha) const {
    Index within = 1;
    Index beyond = innermost() + 1;
    while (beyond - within > 1) {
      const Index j = within + (beyond - within) / 2;
      (missing(j) >= alpha * (1 - rounding) ? beyond : within) = j;
    }
    return beyond;
  }

 private:
  WorksheetFunction& host_;
  std::span<const double> sorted_;
  Index n_;
};

}  // namespace

SignInterval signInterval(WorksheetFunction& host, std::span<const double> sorted, double CLevel) {
  if (!(CLevel >= 0 && CLevel <= 1)) raise(FailureNumber::InvalidCall, "CLevel must be from 0 to 1");
  const Pairs pairs(host, sorted);
  const double alpha = 1 - CLevel;
  SignInterval result;
  // No pair covers everything, though in a long column the outermost one misses too little for a double.
  if (alpha == 0 || pairs.missing(1) > alpha * (1 + rounding)) {
    result.inner = pairs.interval(1);
    return result;
  }
  const Index inner = pairs.firstMissing(alpha);
  const Index outer = inner - 1;
  result.outer = pairs.interval(outer);
  if (inner > pairs.innermost()) return result;

  result.inner = pairs.interval(inner);
  const double missing = pairs.missing(outer);
  const double share = checked::quotient(alpha - missing, pairs.missing(inner) - missing);
  const auto [lower, upper] = summary::limitsBetween(sorted, outer, std::clamp(share, 0.0, 1.0));
  result.interpolated = {CLevel, lower, upper};
  return result;
}

}  // namespace zelkova
