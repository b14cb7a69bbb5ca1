#include <algorithm>
#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/modzSort.h"
#include "zelkova/reliability/lifeData.h"
#include "zelkova/reliability/modzDist.h"
#include "zelkova/reliability/modzRSGrad.h"
#include "zelkova/reliability/yReliability.h"

namespace zelkova {

namespace {

/// What a step function is at after a time, with limits.
struct Level {
  double time;
  double value;
  double lower;
  double upper;
};

double cutToShare(double x) { return std::clamp(x, 0.0, 1.0); }

/// The outline of a step function: two points a step after one to start from.
class Outline {
 public:
  Outline(double startTime, double level) { add(startTime, {startTime, level, level, level}); }

  /// The level before goes on to `from`; the new one stands at its time.
  void step(double from, const Level& level) {
    add(from, last_);
    add(level.time, level);
  }

  void take(DoubleArray& x, DoubleArray& y, DoubleArray& lower, DoubleArray& upper) {
    takeLine(x, y);
    lower = DoubleArray(std::move(lower_));
    upper = DoubleArray(std::move(upper_));
  }
  void takeLine(DoubleArray& x, DoubleArray& y) {
    x = DoubleArray(std::move(x_));
    y = DoubleArray(std::move(y_));
  }

 private:
  void add(double x, const Level& level) {
    x_.push_back(x);
    y_.push_back(level.value);
    lower_.push_back(level.lower);
    upper_.push_back(level.upper);
    last_ = level;
  }

  Level last_{};
  std::vector<double> x_;
  std::vector<double> y_;
  std::vector<double> lower_;
  std::vector<double> upper_;
};

Level complement(const Level& level) {
  return {level.time, 1 - level.value, 1 - level.upper, 1 - level.lower};
}

/// The failures at one time, and what is left of the sample there.
struct FailureTime {
  double time;
  double atRisk;
  double failures;
  double survival;
  double se;
  double areaBeyond;  ///< under the survival, from this time on
};

/// Life data in order of time, with sums of frequencies.
class ProductLimitEstimate {
 public:
  ProductLimitEstimate(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA)
      : SA_(SA.vector()), EA_(EA.vector()), FA_(FA.vector()) {
    for (std::size_t i = 0; i < SA_.size(); ++i) (EA_[i] == NoValue ? censored_ : failures_) += FA_[i];
    walk();
    if (times_.empty()) raise(FailureNumber::InvalidCall, "no row is a failure");
    measureAreas();
  }

  const std::vector<FailureTime>& times() const { return times_; }
  double failures() const { return failures_; }
  double censored() const { return censored_; }

  double meanTime() const {
    if (censored_ == 0) return plainMean();
    return times_.front().time + times_.front().areaBeyond;
  }

  double meanTimeError() const {
    const double corrected = censored_ == 0 ? total() : failures_;
    if (corrected == 1)
      raise(FailureNumber::DivisionByZero, "one failure gives no standard error of the mean");
    const double variance = censored_ == 0 ? plainVariance() : areaVariance();
    return checked::root(checked::finite(variance * checked::quotient(corrected, corrected - 1)));
  }

  /// The first failure time whose survival is at most `share`.
  double quantile(double share) const {
    constexpr double rounding = 1E-12;
    for (const FailureTime& at : times_) {
      if (at.survival <= share + rounding) return at.time;
    }
    return NoValue;
  }

 private:
  double total() const { return failures_ + censored_; }

  void walk() {
    double atRisk = total();
    double survival = 1;
    double greenwood = 0;
    for (std::size_t i = 0; i < SA_.size();) {
      const double time = SA_[i];
      double failed = 0;
      double left = 0;
      for (; i < SA_.size() && SA_[i] == time; ++i) (EA_[i] == NoValue ? left : failed) += FA_[i];
      if (failed > 0) {
        survival *= 1 - checked::quotient(failed, atRisk);
        if (atRisk != failed) greenwood += failed / atRisk / (atRisk - failed);
        times_.push_back({time, atRisk, failed, survival, checked::root(greenwood) * survival, 0});
      }
      atRisk -= failed + left;
    }
  }

  void measureAreas() {
    double area = 0;
    double next = SA_.back();
    for (std::size_t j = times_.size(); j-- > 0;) {
      FailureTime& at = times_[j];
      area += (next - at.time) * at.survival;
      at.areaBeyond = area;
      next = at.time;
    }
  }

  double plainMean() const {
    double sum = 0;
    for (std::size_t i = 0; i < SA_.size(); ++i) sum += FA_[i] * SA_[i];
    return checked::quotient(sum, total());
  }

  double plainVariance() const {
    const double mean = plainMean();
    double squares = 0;
    for (std::size_t i = 0; i < SA_.size(); ++i) squares += FA_[i] * (SA_[i] - mean) * (SA_[i] - mean);
    return checked::quotient(squares, total() * total());
  }

  double areaVariance() const {
    double sum = 0;
    double passed = 0;
    auto at = times_.begin();
    for (std::size_t i = 0; i < SA_.size(); ++i) {
      passed += FA_[i];
      if (EA_[i] == NoValue) continue;
      while (at != times_.end() && at->time < SA_[i]) ++at;
      if (at == times_.end()) break;
      const double left = total() - passed;
      if ((left + 1) * left != 0) sum += at->areaBeyond * at->areaBeyond / ((left + 1) * left);
    }
    return sum;
  }

  std::span<const double> SA_;
  std::span<const double> EA_;
  std::span<const double> FA_;
  double failures_ = 0;
  double censored_ = 0;
  std::vector<FailureTime> times_;
};

/// The variance of a span's weight: the inverse of the second derivative of its log-likelihood -ln w.
double weightVariance(double weight) {
  class NegativeLogarithm : public Objective {
    double operator()(DoubleArray& P) override { return -checked::log(P(1)); }
  };
  if (weight == 0) raise(FailureNumber::DivisionByZero, "a span has no frequency");
  NegativeLogarithm objective;
  DoubleArray at{weight};
  DoubleArray information;
  RSHessian(at, information, objective);
  return checked::quotient(1, information(1, 1));
}

}  // namespace

void yReliability::NonParaR(DoubleArray& SA, DoubleArray& EA, DoubleArray& FA, double CLevel,
                            DoubleArray& NonPR, DoubleArray& Harz, DoubleArray& NonPara,
                            DoubleArray& SurvPlotX, DoubleArray& SurvPlotY, DoubleArray& SurvPlotL,
                            DoubleArray& SurvPlotU, DoubleArray& FailPlotX, DoubleArray& FailPlotY,
                            DoubleArray& FailPlotL, DoubleArray& FailPlotU, DoubleArray& HarzPlotX,
                            DoubleArray& HarzPlotY) const {
  const double z = worksheetFunction().NormSInv((CLevel + 1) / 2);
  requireWholeRows(SA, EA, FA);
  for (const double start : SA.vector()) {
    if (start == NoValue) raise(FailureNumber::InvalidCall, "a row without a start is not for this estimate");
  }
  QuickSortD3(SA, EA, FA);
  const ProductLimitEstimate estimate(SA, EA, FA);

  const Index k = static_cast<Index>(estimate.times().size());
  DoubleArray table(k, ProductLimit::size, 0);
  DoubleArray hazard(k);
  const double start = std::min(0.0, estimate.times().front().time);
  Outline survivalLine(start, 1);
  Outline failureLine(start, 0);
  Outline hazardLine(start, 0);
  for (Index j = 1; j <= k; ++j) {
    const FailureTime& at = estimate.times()[static_cast<std::size_t>(j - 1)];
    const double F = 1 - at.survival;
    const Level failed{at.time, F, cutToShare(F - z * at.se), cutToShare(F + z * at.se)};
    table(j, ProductLimit::Time) = at.time;
    table(j, ProductLimit::AtRisk) = at.atRisk;
    table(j, ProductLimit::Failures) = at.failures;
    table(j, ProductLimit::F) = F;
    table(j, ProductLimit::SE) = at.se;
    table(j, ProductLimit::Lower) = failed.lower;
    table(j, ProductLimit::Upper) = failed.upper;
    hazard(j) = checked::quotient(1, at.atRisk - at.failures + 1);
    failureLine.step(at.time, failed);
    survivalLine.step(at.time, complement(failed));
    hazardLine.step(at.time, {at.time, hazard(j), hazard(j), hazard(j)});
  }

  const double mean = estimate.meanTime();
  const double se = estimate.meanTimeError();
  DoubleArray summary(ProductLimitSummary::size, NoValue);
  summary(ProductLimitSummary::Failures) = estimate.failures();
  summary(ProductLimitSummary::Censored) = estimate.censored();
  summary(ProductLimitSummary::MTTF) = mean;
  summary(ProductLimitSummary::SE) = se;
  summary(ProductLimitSummary::Lower) = mean - z * se;
  summary(ProductLimitSummary::Upper) = mean + z * se;
  const double lowerQuartile = summary(ProductLimitSummary::Q1) = estimate.quantile(0.75);
  const double upperQuartile = summary(ProductLimitSummary::Q3) = estimate.quantile(0.25);
  summary(ProductLimitSummary::Median) = estimate.quantile(0.5);
  if (lowerQuartile != NoValue && upperQuartile != NoValue) {
    summary(ProductLimitSummary::IQR) = upperQuartile - lowerQuartile;
  }
  checked::leaving(table, summary);
  NonPR = std::move(table);
  Harz = std::move(hazard);
  NonPara = std::move(summary);
  survivalLine.take(SurvPlotX, SurvPlotY, SurvPlotL, SurvPlotU);
  failureLine.take(FailPlotX, FailPlotY, FailPlotL, FailPlotU);
  hazardLine.takeLine(HarzPlotX, HarzPlotY);
}

void yReliability::NonParaA(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA,
                            double CLevel, DoubleArray& ProbSEFS, DoubleArray& ProbESSLU, DoubleArray& NPA,
                            [[maybe_unused]] const DoubleArray& hold, DoubleArray& TurnSurvX,
                            DoubleArray& TurnSurvY, DoubleArray& TurnSurvL, DoubleArray& TurnSurvU,
                            DoubleArray& TurnFailX, DoubleArray& TurnFailY, DoubleArray& TurnFailL,
                            DoubleArray& TurnFailU) const {
  const double z = worksheetFunction().NormSInv((CLevel + 1) / 2);
  requireWholeRows(SA, EA, FA);
  DoubleArray starts = SA;
  DoubleArray ends = EA;
  DoubleArray frequencies = FA;
  QuickSortD3(ends, starts, frequencies);
  const Index n = ends.rows();

  // The first value of the objective leaves the weights that no further step would change.
  const auto objective = negLogLik(starts, ends, frequencies, "ArbTurnbull", {});
  DoubleArray weights(n, 1.0 / static_cast<double>(n));
  (*objective)(weights);

  DoubleArray spans(n, SpanWeight::size, 0);
  DoubleArray table(n - 1, SpanSurvival::size, 0);
  Outline survivalLine(0, 1);
  Outline failureLine(0, 0);
  double survival = 1;
  // The likelihood is a product over the weights, so the information has nothing beside its diagonal and the
  // variances of the weights add up.
  double variance = 0;
  for (Index i = 1; i <= n; ++i) {
    variance += weightVariance(weights(i));
    spans(i, SpanWeight::Start) = starts(i);
    spans(i, SpanWeight::End) = ends(i);
    spans(i, SpanWeight::Frequency) = frequencies(i);
    spans(i, SpanWeight::Weight) = weights(i);
    if (i == n) break;
    survival -= weights(i);
    const double se = checked::root(variance);
    const Level alive{ends(i), survival, cutToShare(survival - z * se), cutToShare(survival + z * se)};
    table(i, SpanSurvival::End) = ends(i);
    table(i, SpanSurvival::Survival) = survival;
    table(i, SpanSurvival::SE) = se;
    table(i, SpanSurvival::Lower) = alive.lower;
    table(i, SpanSurvival::Upper) = alive.upper;
    const double from = starts(i) == NoValue ? 0 : starts(i);
    survivalLine.step(from, alive);
    failureLine.step(from, complement(alive));
  }
  const KindTotals totals = frequenciesByKind(starts, ends, frequencies);
  DoubleArray kinds(SpanKinds::size);
  kinds(SpanKinds::RightCensored) = totals.right;
  kinds(SpanKinds::Interval) = totals.interval;
  kinds(SpanKinds::LeftCensored) = totals.left;
  kinds(SpanKinds::Exact) = totals.exact;
  checked::leaving(spans, table, kinds);
  ProbSEFS = std::move(spans);
  ProbESSLU = std::move(table);
  NPA = std::move(kinds);
  survivalLine.take(TurnSurvX, TurnSurvY, TurnSurvL, TurnSurvU);
  failureLine.take(TurnFailX, TurnFailY, TurnFailL, TurnFailU);
}

}  // namespace zelkova
