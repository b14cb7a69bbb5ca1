#include <array>
#include <cmath>
#include <utility>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/hypothesis/ranking.h"
#include "zelkova/hypothesis/yHTest.h"
#include "zelkova/kit/pairs.h"
#include "zelkova/kit/summary.h"

namespace zelkova {

namespace {

/// The mean and, without ties, the variance of the sum of the positive ranks of n differences.
struct SignedRankMoments {
  explicit SignedRankMoments(double n) : mean(n * (n + 1) / 4), variance(n * (n + 1) * (2 * n + 1) / 24) {}

  double mean, variance;
};

struct SignedRanks {
  double nonZero;
  double w;
  double tieCube;
};

SignedRanks signedRanks(const DoubleArray& dy, double TestMedian) {
  std::vector<order::Row> rows;
  rows.reserve(dy.vector().size());
  for (const double x : dy.vector()) {
    const double difference = checked::finite(x - TestMedian);
    if (difference != 0) rows.push_back({order::keyOf(std::abs(difference)), difference > 0 ? 1 : 0});
  }
  std::array<double, 2> rankSums{};
  if (rows.empty()) return {0, 0, 0};
  order::stableSort(rows);
  const double tieCube = order::addRanks(rows, rankSums);
  return {static_cast<double>(rows.size()), rankSums[1], tieCube};
}

struct WalshLimits {
  double confidence = NoValue;
  double lower = NoValue;
  double upper = NoValue;
};

/// The d-th Walsh averages from both ends, d being chosen so that the confidence is nearest to `CLevel`; none
/// where that would be a place beyond the ends, for too few values.
WalshLimits walshLimits(WorksheetFunction& host, std::span<const double> sorted, double CLevel) {
  // A normal quantile exists for it, on the other side of the middle, where the limits would cross.
  if (CLevel < 0) raise(FailureNumber::InvalidCall, "CLevel must not be negative");
  const auto n = static_cast<Index>(sorted.size());
  const SignedRankMoments moments(static_cast<double>(n));
  const double sd = std::sqrt(moments.variance);
  const auto confidence = [&](double d) { return 1 - 2 * host.NormSDist((d - 0.5 - moments.mean) / sd); };
  double d = std::floor(moments.mean + 0.5 + sd * host.NormSInv((1 - CLevel) / 2));
  if (confidence(d) - CLevel > CLevel - confidence(d + 1)) ++d;
  if (d < 1) return {};
  const auto place = static_cast<Index>(d);
  return {confidence(d), pairs::walshAverage(sorted, place),
          pairs::walshAverage(sorted, pairs::walshCount(n) - place + 1)};
}

}  // namespace

void yHTest::OneWilcoxonOutput(const DoubleArray& dy, double TestMedian, double CLevel,
                               const std::string& TestType, DoubleArray& OneWilcoxonValue) const {
  const std::vector<double> sorted = summary::sortedCopy(dy);
  const SignedRanks ranks = signedRanks(dy, TestMedian);
  const bool anyDifference = ranks.nonZero > 0;
  double p = 1;
  WalshLimits limits;
  if (anyDifference) {
    const SignedRankMoments moments(ranks.nonZero);
    p = ranking::normalTail(worksheetFunction(), TestType, ranks.w - moments.mean,
                            checked::root(moments.variance - ranks.tieCube / 48));
    limits = walshLimits(worksheetFunction(), sorted, CLevel);
  }

  DoubleArray result(OneWilcoxon::size);
  result(OneWilcoxon::N) = static_cast<double>(sorted.size());
  result(OneWilcoxon::NonZero) = ranks.nonZero;
  result(OneWilcoxon::W) = ranks.w;
  result(OneWilcoxon::PValue) = p;
  result(OneWilcoxon::EstimatedMedian) = pairs::walshMedian(sorted);
  result(OneWilcoxon::AchievedConfidence) = limits.confidence;
  result(OneWilcoxon::Lower) = limits.lower;
  result(OneWilcoxon::Upper) = limits.upper;
  result(OneWilcoxon::TestMedian) = TestMedian;
  checked::leaving(result);
  OneWilcoxonValue = std::move(result);
}

}  // namespace zelkova
