#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/reliability/LifeDistribution.h"
#include "zelkova/reliability/percentiles.h"
#include "zelkova/reliability/yReliability.h"

namespace zelkova {

namespace {

constexpr double shares[] = {0.001, 0.01, 0.05, 0.1, 0.2,  0.3,  0.4,  0.5,
                             0.6,   0.7,  0.8,  0.9, 0.95, 0.99, 0.999};
constexpr Index points = std::size(shares);

double share(Index i) { return shares[i - 1]; }

bool isLogistic(LifeDistribution dist) {
  return dist == LifeDistribution::Logistic || dist == LifeDistribution::Loglogistic;
}

}  // namespace

void yReliability::ProbPlot(double CLevel, double Para1, double Para2, const std::string& dist, double var1,
                            double var2, double covar12, DoubleArray& PlotHVLU) const {
  const auto distribution = lifeDistribution(dist);
  WorksheetFunction& host = worksheetFunction();
  const double z = host.NormSInv((1 + CLevel) / 2);
  DoubleArray line(points, ProbabilityLine::size, NoValue);
  for (Index i = 1; i <= points; ++i) {
    const double p = line(i, ProbabilityLine::Share) = share(i);
    if (!distribution) continue;
    const LifeFitted fit{host, *distribution, Para1, Para2, {var1, var2, covar12}};
    const double t = fit.life().quantile(p);
    const double reach = z * fit.percentileError(p);
    line(i, ProbabilityLine::Score) = plotScore(host, *distribution, p);
    line(i, ProbabilityLine::Lower) =
        worksOnLogarithms(*distribution) ? checked::exp(checked::log(t) - reach) : t - reach;
    line(i, ProbabilityLine::Upper) =
        worksOnLogarithms(*distribution) ? checked::exp(checked::log(t) + reach) : t + reach;
    line(i, ProbabilityLine::Time) = t;
  }
  checked::leaving(line);
  PlotHVLU = std::move(line);
}

void yReliability::SurvFailPlot(double CLevel, double Para1, double Para2, const std::string& dist,
                                double var1, double var2, double covar12, DoubleArray& SurvX,
                                DoubleArray& SurvY, DoubleArray& SurvYL, DoubleArray& SurvYU,
                                DoubleArray& FailX, DoubleArray& FailY, DoubleArray& FailYL,
                                DoubleArray& FailYU) const {
  const auto distribution = lifeDistribution(dist);
  WorksheetFunction& host = worksheetFunction();
  const double z = host.NormSInv((1 + CLevel) / 2);
  DoubleArray time(points, NoValue);
  DoubleArray survival(points, NoValue);
  DoubleArray atLowerU(points, NoValue);
  DoubleArray atUpperU(points, NoValue);
  for (Index i = 1; distribution && i <= points; ++i) {
    const LifeFitted fit{host, *distribution, Para1, Para2, {var1, var2, covar12}};
    const Life life = fit.life();
    time(i) = life.quantile(share(i));
    survival(i) = 1 - share(i);
    const double u = life.standardised(time(i));
    const double reach = z * fit.standardisedError(u);
    constexpr double farthest = 700;
    if (isLogistic(*distribution) && (-(u - reach) >= farthest || -(u + reach) >= farthest)) continue;
    atLowerU(i) = life.survivalAt(u - reach);
    atUpperU(i) = life.survivalAt(u + reach);
  }
  const auto complement = [](const DoubleArray& survivals) {
    DoubleArray result(points, NoValue);
    for (Index i = 1; i <= points; ++i) {
      if (survivals(i) != NoValue) result(i) = 1 - survivals(i);
    }
    return result;
  };
  FailX = time;
  FailY = complement(survival);
  FailYL = complement(atLowerU);
  FailYU = complement(atUpperU);
  SurvX = std::move(time);
  SurvY = std::move(survival);
  SurvYL = std::move(atLowerU);
  SurvYU = std::move(atUpperU);
}

void yReliability::HarzPDFPlot(double Para1, double Para2, const std::string& dist, DoubleArray& HarzX,
                               DoubleArray& HarzY, DoubleArray& PDFX, DoubleArray& PDFY) const {
  const auto distribution = lifeDistribution(dist);
  DoubleArray time(points, NoValue);
  DoubleArray density(points, NoValue);
  DoubleArray hazard(points, NoValue);
  for (Index i = 1; distribution && i <= points; ++i) {
    const Life life(worksheetFunction(), *distribution, Para1, Para2);
    time(i) = life.quantile(share(i));
    density(i) = life.density(time(i));
    const double rate = density(i) / (1 - share(i));
    // Rounding keeps noise out of a hazard that should be flat; that of the exponential is flat by itself.
    hazard(i) = hasOneParameter(*distribution) ? rate : roundHalfEven(rate, 8);
  }
  checked::leaving(density, hazard);
  HarzX = time;
  HarzY = std::move(hazard);
  PDFX = std::move(time);
  PDFY = std::move(density);
}

}  // namespace zelkova
