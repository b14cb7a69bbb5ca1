#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"
#include "zelkova/reliability/LifeDistribution.h"
#include "zelkova/reliability/percentiles.h"
#include "zelkova/reliability/yReliability.h"

namespace zelkova {

namespace {

/// Writes an estimate with its standard error and limits into row i.
class EstimateTable {
 public:
  EstimateTable(Index rows, double z) : table_(rows, LifeEstimate::size, NoValue), z_(z) {}

  void symmetric(Index i, double estimate, double se) {
    fill(i, estimate, se, estimate - z_ * se, estimate + z_ * se);
  }

  /// Limits that stay positive.
  void logarithmic(Index i, double estimate, double se) {
    const double factor = checked::exp(checked::quotient(z_ * se, estimate));
    fill(i, estimate, se, checked::quotient(estimate, factor), estimate * factor);
  }

  void estimate(Index i, double value) { table_(i, LifeEstimate::Estimate) = value; }

  DoubleArray take() { return std::move(table_); }

 private:
  void fill(Index i, double estimate, double se, double lower, double upper) {
    table_(i, LifeEstimate::Estimate) = checked::finite(estimate);
    table_(i, LifeEstimate::SE) = checked::finite(se);
    table_(i, LifeEstimate::Lower) = checked::finite(lower);
    table_(i, LifeEstimate::Upper) = checked::finite(upper);
  }

  DoubleArray table_;
  double z_;
};

/// The percentile of the share `p` into row i.
void percentile(const LifeFitted& fit, double p, EstimateTable& table, Index i) {
  const double time = fit.life().quantile(p);
  const double se = fit.percentileError(p);
  worksOnLogarithms(fit.dist) ? table.logarithmic(i, time, time * se) : table.symmetric(i, time, se);
}

/// The standard error of a quantity of the fitted life, its derivatives in the two parameters taken by
/// differences; `NoValue` where the quantity has no value beside the fit.
template <class Quantity>
double deltaError(const LifeFitted& fit, Quantity quantity) {
  constexpr double relative = 1E-5;
  const auto derivative = [&](double para, auto at) {
    const double h = para == 0 ? relative : std::abs(para) * relative;
    const double above = quantity(at(para + h));
    const double below = quantity(at(para - h));
    return above == NoValue || below == NoValue ? NoValue : (above - below) / (2 * h);
  };
  const double by1 =
      derivative(fit.para1, [&](double para) { return Life(fit.host, fit.dist, para, fit.para2); });
  const double by2 =
      derivative(fit.para2, [&](double para) { return Life(fit.host, fit.dist, fit.para1, para); });
  return by1 == NoValue || by2 == NoValue ? NoValue : checked::root(deltaVariance(fit.variance, by1, by2));
}

/// Mean, standard deviation, quartiles and their range.
void moments(const LifeFitted& fit, EstimateTable& table) {
  enum { Mean = 1, SD, Median, Q1, Q3, IQR };
  const auto moment = [&](Index i, bool positive, auto quantity) {
    const double value = quantity(fit.life());
    if (value == NoValue) return;
    const double se = deltaError(fit, quantity);
    table.estimate(i, value);
    if (se == NoValue) return;
    positive ? table.logarithmic(i, value, se) : table.symmetric(i, value, se);
  };
  moment(Mean, worksOnLogarithms(fit.dist), [](const Life& life) { return life.mean(); });
  moment(SD, true, [](const Life& life) { return life.standardDeviation(); });
  percentile(fit, 50.0 / 100, table, Median);
  percentile(fit, 25.0 / 100, table, Q1);
  percentile(fit, 75.0 / 100, table, Q3);
  moment(IQR, true, [](const Life& life) { return life.quantile(75.0 / 100) - life.quantile(25.0 / 100); });
}

double normalQuantile(WorksheetFunction& host, double CLevel) { return host.NormSInv((1 + CLevel) / 2); }

}  // namespace

DoubleArray percentileTable(const LifeFitted& fit, const DoubleArray& Percent, double z) {
  EstimateTable table(Percent.rows(), z);
  for (Index i = 1; i <= Percent.rows(); ++i) percentile(fit, Percent(i) / 100, table, i);
  return table.take();
}

void yReliability::EstPara(double CLevel, double Para1, double Para2, const std::string& dist, double var1,
                           double var2, DoubleArray& ParaEst) const {
  const auto distribution = lifeDistribution(dist);
  const double z = normalQuantile(worksheetFunction(), CLevel);
  const bool single = distribution && hasOneParameter(*distribution);
  EstimateTable table(single ? 1 : 2, z);
  const auto row = [&](Index i, double estimate, double variance, bool positive) {
    table.estimate(i, estimate);
    if (!(variance > 0) || variance == NoValue) return;
    const double se = checked::root(variance);
    positive ? table.logarithmic(i, estimate, se) : table.symmetric(i, estimate, se);
  };
  if (distribution) {
    row(1, Para1, var1, single || *distribution == LifeDistribution::Weibull);
    if (!single) row(2, Para2, var2, true);
  }
  ParaEst = table.take();
}

void yReliability::PercMTTF(double CLevel, const std::string& dist, const DoubleArray& Percent, double Para1,
                            double Para2, double var1, double var2, double covar12, DoubleArray& PM,
                            StringArray& PMS, DoubleArray& PMM) const {
  const auto distribution = lifeDistribution(dist);
  const double z = normalQuantile(worksheetFunction(), CLevel);
  const Index n = Percent.rows();
  DoubleArray percentiles(n, LifeEstimate::size, NoValue);
  EstimateTable summary(6, z);
  StringArray labels(n, 2, std::string());
  if (distribution) {
    const LifeFitted fit{worksheetFunction(), *distribution, Para1, Para2, {var1, var2, covar12}};
    percentiles = percentileTable(fit, Percent, z);
    moments(fit, summary);
    for (Index i = 1; i <= n; ++i) {
      labels(i, 1) = dist;
      labels(i, 2) = numberText(Percent(i));
    }
  }
  PM = std::move(percentiles);
  PMS = std::move(labels);
  PMM = summary.take();
}

void yReliability::CalTimes(double CLevel, double Para1, double Para2, const std::string& dist, double var1,
                            double var2, double covar12, const DoubleArray& times,
                            DoubleArray& SurvTable) const {
  const auto distribution = lifeDistribution(dist);
  const double z = normalQuantile(worksheetFunction(), CLevel);
  DoubleArray table(times.rows(), LifeSurvival::size, NoValue);
  if (distribution) {
    const LifeFitted fit{worksheetFunction(), *distribution, Para1, Para2, {var1, var2, covar12}};
    const Life life = fit.life();
    for (Index i = 1; i <= times.rows(); ++i) {
      const double u = life.standardised(times(i));
      const double reach = z * fit.standardisedError(u);
      table(i, LifeSurvival::Time) = times(i);
      table(i, LifeSurvival::Survival) = life.survivalAt(u);
      table(i, LifeSurvival::AtLowerU) = life.survivalAt(u - reach);
      table(i, LifeSurvival::AtUpperU) = life.survivalAt(u + reach);
    }
  }
  SurvTable = std::move(table);
}

}  // namespace zelkova
