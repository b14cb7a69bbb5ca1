#include "zelkova/hypothesis/yNormality.h"

#include <cmath>
#include <limits>
#include <numbers>
#include <span>
#include <utility>
#include <vector>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/compensatedSum.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/summary.h"

namespace zelkova {

namespace {

/// The logarithm of the normal tail beyond `z`, where the tail itself is too small for a double (Abramowitz
/// and Stegun 26.2.12).
double logFarTail(double z) {
  const double r = 1 / (z * z);
  return -z * z / 2 - std::log(z) - std::log(2 * std::numbers::pi) / 2 +
         std::log1p(-r * (1 - 3 * r * (1 - 5 * r)));
}

/// The logarithms of the probabilities below and above a value.
struct LogTails {
  double below, above;
};

/// Both come from the smaller of the two tails, which keeps its digits.
LogTails logTails(WorksheetFunction& host, double x, double mean, double sd) {
  const bool isLow = x <= mean;
  const double tail = isLow ? host.NormDist(x, mean, sd, true) : host.NormDist(-x, -mean, sd, true);
  const bool isFar = tail < std::numeric_limits<double>::min();
  const double logTail = isFar ? logFarTail(checked::quotient(std::abs(x - mean), sd)) : std::log(tail);
  const double logRest = std::log1p(-tail);
  return isLow ? LogTails{logTail, logRest} : LogTails{logRest, logTail};
}

double andersonDarling(WorksheetFunction& host, std::span<const double> sorted, double mean, double sd) {
  const auto n = static_cast<double>(sorted.size());
  std::vector<double> terms;
  terms.reserve(sorted.size() + 1);
  double i = 0;
  for (const double x : sorted) {
    ++i;
    const auto [below, above] = logTails(host, x, mean, sd);
    terms.push_back((2 * i - 1) * below + (2 * (n - i) + 1) * above);
  }
  // A squared is what little is left of these terms and n squared.
  terms.push_back(n * n);
  return -compensatedSum(terms) / n;
}

double andersonDarlingPValue(double a) {
  if (a >= 13) return 0;
  if (a > 0.6) return checked::exp(1.2937 - 5.709 * a + 0.0186 * a * a);
  if (a > 0.34) return checked::exp(0.9177 - 4.279 * a - 1.38 * a * a);
  if (a > 0.2) return 1 - checked::exp(-8.318 + 42.796 * a - 59.938 * a * a);
  return 1 - checked::exp(-13.436 + 101.14 * a - 223.73 * a * a);
}

/// The normal scores of n sorted values, at the medians of the order statistics as Filliben approximates
/// them.
DoubleArray normalScores(WorksheetFunction& host, Index n) {
  const auto count = static_cast<double>(n);
  DoubleArray scores(n);
  for (Index i = 1; i <= n / 2; ++i) {
    // 1 - 0.5^(1/n), without the loss of digits that the difference has for a large n.
    const double m = i == 1 ? -std::expm1(-std::numbers::ln2 / count)
                            : (static_cast<double>(i) - 0.3175) / (count + 0.365);
    const double score = host.NormSInv(m);
    scores(i) = score;
    scores(n + 1 - i) = -score;
  }
  return scores;
}

}  // namespace

void yNormality::NormTestOutput(const DoubleArray& dataarray, DoubleArray& NormTestValue) const {
  const std::vector<double> sorted = summary::sortedCopy(dataarray);
  const double mean = GetMean(dataarray);
  const double sd = GetStdDev(dataarray);
  const auto n = static_cast<double>(sorted.size());
  const double aStar =
      andersonDarling(worksheetFunction(), sorted, mean, sd) * (1 + 0.75 / n + 2.25 / (n * n));

  DoubleArray result(NormTest::size);
  result(NormTest::Mean) = mean;
  result(NormTest::SD) = sd;
  result(NormTest::N) = n;
  result(NormTest::AStar) = aStar;
  result(NormTest::PValue) = andersonDarlingPValue(aStar);
  checked::leaving(result);
  NormTestValue = std::move(result);
}

void yNormality::NormTestPlotOutput(const DoubleArray& dataarray, DoubleArray& NTNormPlotX,
                                    DoubleArray& NTNormPlotY, DoubleArray& NTRealPlotY) const {
  DoubleArray x(summary::sortedCopy(dataarray));
  const double mean = GetMean(dataarray);
  const double sd = GetStdDev(dataarray);
  DoubleArray line(x.rows());
  for (Index i = 1; i <= x.rows(); ++i) line(i) = checked::quotient(x(i) - mean, sd);
  DoubleArray scores = normalScores(worksheetFunction(), x.rows());
  NTNormPlotX = std::move(x);
  NTNormPlotY = std::move(scores);
  NTRealPlotY = std::move(line);
}

}  // namespace zelkova
