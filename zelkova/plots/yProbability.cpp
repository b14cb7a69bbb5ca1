#include "zelkova/plots/yProbability.h"

#include <cmath>
#include <span>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"
#include "zelkova/kit/modzMatrix.h"
#include "zelkova/kit/modzSort.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/sums.h"
#include "zelkova/reliability/LifeDistribution.h"
#include "zelkova/reliability/lifeData.h"
#include "zelkova/reliability/retry.h"

namespace zelkova {

namespace {

/// Critical values of a statistic with their levels, ascending and descending, and the text past the last.
struct CriticalValues {
  std::span<const double> values;
  std::span<const double> levels;
  const char* past;
};

constexpr double levels1[] = {0.25, 0.15, 0.1, 0.05, 0.025, 0.01, 0.005, 0.0025};
constexpr double levels2[] = {0.25, 0.1, 0.05, 0.025, 0.01};
constexpr double levels3[] = {0.25, 0.2, 0.15, 0.1, 0.05, 0.025, 0.01, 0.005, 0.0025};
constexpr double levels4[] = {0.25, 0.1, 0.05, 0.025, 0.01, 0.005};

constexpr double normalSecondGiven[] = {0.644, 0.782, 0.894, 1.087, 1.285, 1.551, 1.756, 1.964};
constexpr double normalBothGiven[] = {1.072, 1.43, 1.743, 2.308, 2.898, 3.702, 4.324, 4.954};
constexpr double extremeSecondGiven[] = {0.736, 1.062, 1.321, 1.591, 1.959};
constexpr double extremeBothGiven[] = {1.06, 1.725, 2.277, 2.854, 3.64};
constexpr double extremeNoneGiven[] = {0.474, 0.637, 0.757, 0.877, 1.038};
constexpr double exponentialAny[] = {0.736, 0.816, 0.916, 1.062, 1.321, 1.591, 1.959, 2.244, 2.534};
constexpr double logisticSecondGiven[] = {0.615, 0.857, 1.046, 1.241, 1.505, 1.71};
constexpr double logisticBothGiven[] = {1.043, 1.725, 2.29, 2.88, 3.685, 4.308};
constexpr double logisticNoneGiven[] = {0.426, 0.563, 0.66, 0.769, 0.906, 1.01};

std::string levelText(double p) { return numberText(roundHalfEven(p, 3)); }

std::string interpolated(double A, const CriticalValues& table) {
  const auto& [values, levels, past] = table;
  if (A < values.front()) return ">0.25";
  if (A > values.back()) return past;
  std::size_t k = 1;
  while (A > values[k]) ++k;
  const double share = (A - values[k - 1]) / (values[k] - values[k - 1]);
  return levelText(levels[k - 1] + share * (levels[k] - levels[k - 1]));
}

std::string normalEstimated(double A) {
  // Far beyond any level the parabola of the exponent would turn up again.
  constexpr double farthest = 13;
  if (A >= farthest) return levelText(0);
  if (A >= 0.6) return levelText(std::exp(1.2937 - 5.709 * A + 0.0186 * A * A));
  if (A >= 0.34) return levelText(std::exp(0.9177 - 4.279 * A - 1.38 * A * A));
  if (A >= 0.2) return levelText(std::exp(-8.318 + 42.796 * A - 59.938 * A * A));
  return levelText(std::exp(-13.436 + 101.14 * A - 223.73 * A * A));
}

double logShare(double share) {
  if (!(share > 0)) raise(FailureNumber::InvalidCall, "the distribution cannot have a value of the data");
  return checked::log(share);
}

/// The Anderson-Darling statistic of the sorted values, each logarithm from its own tail.
double andersonDarling(const Life& life, const DoubleArray& sorted) {
  const Index n = sorted.rows();
  const double count = static_cast<double>(n);
  const double sum = laneSumOver(static_cast<std::size_t>(n), [&](std::size_t k) {
    const Index i = static_cast<Index>(k) + 1;
    return (1 - 2 * static_cast<double>(i)) / count *
           (logShare(life.failure(sorted(i))) + logShare(life.survival(sorted(n + 1 - i))));
  });
  return checked::finite(sum - count);
}

/// Mean and standard deviation of the values or of their logarithms: where the search of a normal fit starts.
DoubleArray normalStart(const DoubleArray& data, bool logarithms) {
  DoubleArray scaled = data;
  if (logarithms) {
    for (double& x : scaled.elements()) x = logTime(x);
  }
  return {GetMean(scaled), GetStdDev(scaled)};
}

}  // namespace

std::string ADPValueText(const std::string& Distribution, double A2, double n, bool H1, bool H2) {
  const auto dist = lifeDistribution(Distribution);
  if (!dist) return "None";
  switch (*dist) {
    case LifeDistribution::Normal:
    case LifeDistribution::Lognormal:
      if (!H2) return normalEstimated(A2 * (1 + 0.75 / n + 2.25 / (n * n)));
      if (H1) return interpolated(A2, {normalBothGiven, levels1, "<0.0025"});
      return interpolated(A2, {normalSecondGiven, levels1, "<0.0025"});
    case LifeDistribution::Weibull:
    case LifeDistribution::SmallestExtremeValue:
      if (!H2) return interpolated(A2 * (1 + 0.2 / std::sqrt(n)), {extremeNoneGiven, levels2, "<0.01"});
      if (H1) return interpolated(A2, {extremeBothGiven, levels2, "<0.01"});
      return interpolated(A2 * (1 + 0.3 / n), {extremeSecondGiven, levels2, "<0.01"});
    case LifeDistribution::Exponential:
      return interpolated(A2 * (1 + 0.6 / n), {exponentialAny, levels3, "<0.0025"});
    case LifeDistribution::Logistic:
    case LifeDistribution::Loglogistic:
      break;
  }
  if (!H2) return interpolated(A2 * (1 + 0.25 / n), {logisticNoneGiven, levels4, "<0.005"});
  if (!H1) return interpolated(A2 * (1 + 0.15 / n), {logisticSecondGiven, levels4, "<0.005"});
  return interpolated(checked::quotient(0.6 * n * A2 - 1.8, 0.6 * n - 1),
                      {logisticBothGiven, levels4, "<0.005"});
}

void yProbability::ProbPlotOutput(const DoubleArray& dataarrayY, const std::string& Distribution,
                                  const std::string& HistPara1, const std::string& HistPara2, double CLevel,
                                  DoubleArray& pp, std::string& Pvalue, DoubleArray& PlotX,
                                  DoubleArray& PlotY, DoubleArray& PlotHVLU) const {
  const auto dist = lifeDistribution(Distribution);
  if (!dist) {
    Pvalue = "None";
    return;
  }
  const bool shapeFirst = *dist == LifeDistribution::Weibull;
  const std::string& first = shapeFirst ? HistPara2 : HistPara1;
  const std::string& second = shapeFirst ? HistPara1 : HistPara2;
  const Index parameters = hasOneParameter(*dist) ? 1 : 2;
  DoubleArray hold(2, NoValue);
  if (!first.empty()) hold(1) = toNumber(first, shapeFirst ? "HistPara2" : "HistPara1");
  if (!second.empty() && parameters == 2) hold(2) = toNumber(second, shapeFirst ? "HistPara1" : "HistPara2");

  DoubleArray starts = dataarrayY;
  DoubleArray ends = dataarrayY;
  DoubleArray ones(dataarrayY.rows(), 1.0);
  DoubleArray P, x, y;
  double corr = 0;
  reliability_.Para_LS(starts, ends, ones, "Median rank", Distribution, P, corr, x, y, NoValue);
  if (P(1) == NoValue && parameters == 2 && hold(2) == NoValue) {
    raise(FailureNumber::InvalidCall, "the data have no spread");
  }
  P = startAfter(0, P, hold);
  const bool logarithms = *dist == LifeDistribution::Lognormal;
  if (logarithms || *dist == LifeDistribution::Normal) P = normalStart(dataarrayY, logarithms);

  DoubleArray MLO, FM;
  reliability_.Para_ML(starts, ends, ones, Distribution, P, MLO, FM, hold);
  DoubleArray V = parameters == 2 ? MatInverse(FM) : DoubleArray(2, 2, 0);
  if (parameters == 1) V(1, 1) = checked::quotient(1, FM(1, 1));
  for (Index k = 1; k <= parameters; ++k) {
    if (hold(k) == NoValue) continue;
    P(k) = hold(k);
    V(k, k) = V(1, 2) = 0;
  }
  const double Para1 = P(1);
  const double Para2 = P(parameters);

  const DoubleArray& sorted = starts;
  const double n = static_cast<double>(sorted.rows());
  const double A2 = andersonDarling(Life(worksheetFunction(), *dist, Para1, Para2), sorted);
  DoubleArray line;
  reliability_.ProbPlot(CLevel, Para1, Para2, Distribution, V(1, 1), V(2, 2), V(1, 2), line);
  Pvalue = ADPValueText(Distribution, A2, n, !first.empty(), !second.empty());
  pp = {Para1, Para2, n, A2};
  PlotX = std::move(x);
  PlotY = std::move(y);
  PlotHVLU = std::move(line);
}

}  // namespace zelkova
