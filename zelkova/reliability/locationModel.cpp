#include "zelkova/reliability/locationModel.h"

#include <algorithm>
#include <cmath>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/reliability/families.h"
#include "zelkova/reliability/lifeData.h"

namespace zelkova {

double LocationModel::location(double para1) const {
  return hasScaleParameter() ? checked::log(para1) : para1;
}

LifeFitted LocationModel::lifeAt(double m, double spread, double varM, double varSpread, double covar) const {
  if (!hasScaleParameter()) return {*host_, dist_, m, spread, {varM, varSpread, covar}};
  const double scale = checked::exp(m);
  return {*host_, dist_, scale, spread, {scale * scale * varM, varSpread, scale * covar}};
}

double LocationModel::standardised(double time, double m, double spread) const {
  const double distance = (worksOnLogarithms(dist_) ? logTime(time) : time) - m;
  return dist_ == LifeDistribution::Weibull ? distance * spread : checked::quotient(distance, spread);
}

double LocationModel::coxSnell(double z) const {
  switch (dist_) {
    case LifeDistribution::Normal:
    case LifeDistribution::Lognormal:
      return -families::NormalFamily(*host_, 0).right(z);
    case LifeDistribution::Logistic:
    case LifeDistribution::Loglogistic:
      return -families::LogisticFamily(0).right(z);
    default:
      return -families::ExtremeValue(0).right(z);
  }
}

const char* LocationModel::residualDistribution() const {
  switch (dist_) {
    case LifeDistribution::Normal:
    case LifeDistribution::Lognormal:
      return "Normal";
    case LifeDistribution::Logistic:
    case LifeDistribution::Loglogistic:
      return "Logistic";
    default:
      return "Smallest Extreme Value";
  }
}

bool Sample::hasFailure() const {
  const auto ends = EA.elements();
  return std::any_of(ends.begin(), ends.end(), [](double t) { return t != NoValue; });
}

SingleFit fitAlone(const yReliability& engine, const Sample& sample, const std::string& dist,
                   const std::string& pMtd, const std::string& estimate, double CLevel) {
  SingleFit fit;
  DoubleArray PM, PMM, Para, ParaEst, SurvTable;
  StringArray PMS;
  double corr = 0;
  double var1 = NoValue;
  double var2 = NoValue;
  double covar12 = NoValue;
  double unused = 0;
  try {
    engine.ParaAnalysis(sample.SA, sample.EA, sample.FA, dist, pMtd, estimate, {}, {}, fit.P, PM, PMS, PMM,
                        Para, corr, fit.PlotX, fit.PlotY, ParaEst, SurvTable, {}, var1, var2, unused, covar12,
                        unused, unused);
    // Variances are there if and only if a search has ended well.
    if (var1 == NoValue) return fit;
    engine.ProbPlot(CLevel, fit.P(1), fit.P(fit.P.rows()), dist, var1, var2, covar12, fit.PlotHVLU);
    fit.fitted = true;
  } catch (const Failure&) {
    // What cannot be fitted alone has no plot of its own; the joint fit takes it all the same.
  }
  return fit;
}

DoubleArray coefficientTable(WorksheetFunction& host, const DoubleArray& P, const DoubleArray& V,
                             const DoubleArray& hold, double z) {
  DoubleArray table(P.rows(), RelationCoefficient::size, NoValue);
  for (Index k = 1; k <= P.rows(); ++k) {
    const double value = table(k, RelationCoefficient::Coefficient) = P(k);
    if (hold(k) != NoValue) continue;
    const double se = checked::root(V(k, k));
    const double ratio = checked::quotient(value, se);
    const double reach = z * se;
    const bool spread = k == 1;
    table(k, RelationCoefficient::SE) = se;
    table(k, RelationCoefficient::Z) = ratio;
    table(k, RelationCoefficient::PValue) = 2 * host.NormSDist(-std::abs(ratio));
    table(k, RelationCoefficient::Lower) = spread ? value * checked::exp(-reach / value) : value - reach;
    table(k, RelationCoefficient::Upper) = spread ? value * checked::exp(reach / value) : value + reach;
  }
  return table;
}

DoubleArray Residuals::table(const DoubleArray& SA, const DoubleArray& EA,
                             std::span<const double> beside) const {
  DoubleArray result(SA.rows(), RelationResidual::size, NoValue);
  for (Index i = 1; i <= SA.rows(); ++i) {
    result(i, RelationResidual::Stress) = beside[static_cast<std::size_t>(i - 1)];
    result(i, RelationResidual::SA) = SA(i);
    result(i, RelationResidual::EA) = EA(i);
    result(i, RelationResidual::AtStart) = start(i);
    result(i, RelationResidual::AtEnd) = end(i);
  }
  return result;
}

DoubleArray percentilesOf(const std::vector<PredictedLife>& lives, const DoubleArray& Percent, double z) {
  if (lives.empty() || !Percent.filled()) return {};
  DoubleArray table(static_cast<Index>(lives.size()) * Percent.rows(), RelationPercentile::size, NoValue);
  Index row = 0;
  for (const PredictedLife& predicted : lives) {
    const DoubleArray percentiles = percentileTable(predicted.fit, Percent, z);
    for (Index i = 1; i <= Percent.rows(); ++i) {
      ++row;
      table(row, RelationPercentile::Stress) = predicted.name;
      table(row, RelationPercentile::Percent) = Percent(i);
      table(row, RelationPercentile::Percentile) = percentiles(i, LifeEstimate::Estimate);
      table(row, RelationPercentile::SE) = percentiles(i, LifeEstimate::SE);
      table(row, RelationPercentile::Lower) = percentiles(i, LifeEstimate::Lower);
      table(row, RelationPercentile::Upper) = percentiles(i, LifeEstimate::Upper);
    }
  }
  return table;
}

DoubleArray survivalsOf(const std::vector<PredictedLife>& lives, const DoubleArray& times, double z) {
  if (lives.empty() || !times.filled()) return {};
  DoubleArray table(static_cast<Index>(lives.size()) * times.rows(), RelationSurvival::size, NoValue);
  Index row = 0;
  for (const PredictedLife& predicted : lives) {
    const Life life = predicted.fit.life();
    for (const double time : times.elements()) {
      const double u = life.standardised(time);
      const double se = predicted.fit.standardisedError(u);
      ++row;
      table(row, RelationSurvival::Stress) = predicted.name;
      table(row, RelationSurvival::Time) = time;
      table(row, RelationSurvival::Survival) = life.survivalAt(u);
      table(row, RelationSurvival::SE) = se;
      table(row, RelationSurvival::AtLowerU) = life.survivalAt(u - z * se);
      table(row, RelationSurvival::AtUpperU) = life.survivalAt(u + z * se);
    }
  }
  return table;
}

}  // namespace zelkova
