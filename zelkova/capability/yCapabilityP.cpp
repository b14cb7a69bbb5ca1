#include "zelkova/capability/yCapabilityP.h"

#include <cmath>
#include <optional>
#include <utility>

#include "zelkova/capability/attributeStudy.h"
#include "zelkova/charts/ChartLines.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/givenNumber.h"
#include "zelkova/kit/modzStat.h"

namespace zelkova {

using capability::DistributionPlot;
using capability::Samples;
using capability::unlessRefused;

namespace {

std::optional<double> historicalRate(const std::string& text) {
  const std::optional<double> rate = givenNumber(text, "HistMu");
  if (rate && *rate < 0) raise(FailureNumber::InvalidCall, "a rate of defects must not be negative");
  return rate;
}

/// Twice the lower and upper limit of the mean for x defects. Deliberate: without any defects the lower
/// quantile does not exist, and the normal approximation, which is 0 then, stands.
double twiceLowerLimit(double x, WorksheetFunction& host) {
  const double approximate = host.NormSInv(1 - 0.975) * std::sqrt(4 * x) + 2 * x;
  return unlessRefused(approximate, [&] { return host.ChiInv(0.975, 2 * x); });
}

double twiceUpperLimit(double x, WorksheetFunction& host) {
  const double df = 2 * x + 2;
  const double approximate = host.NormSInv(1 - 0.025) * std::sqrt(2 * df) + df;
  return unlessRefused(approximate, [&] { return host.ChiInv(0.025, df); });
}

}  // namespace

void yCapabilityP::CapabilityPOutput(const DoubleArray& dy, const DoubleArray& dxN, const std::string& Target,
                                     const std::string& HistMu, DoubleArray& Capability) const {
  const Samples samples(dy, dxN);
  const std::optional<double> histMu = historicalRate(HistMu);
  const double x = samples.totalCount;
  const double n = samples.totalSize;
  const DoubleArray rates = samples.rates(1);
  WorksheetFunction& host = worksheetFunction();

  using Slot = PoissonCapability;
  DoubleArray result(Slot::size);
  result(Slot::DPU) = histMu ? *histMu : checked::quotient(x, n);
  result(Slot::Lower) = checked::quotient(0.5 * twiceLowerLimit(x, host), n);
  result(Slot::Upper) = checked::quotient(0.5 * twiceUpperLimit(x, host), n);
  result(Slot::Smallest) = GetMin(rates);
  result(Slot::Largest) = GetMax(rates);
  result(Slot::Target) = givenNumber(Target, "Target").value_or(NoValue);
  checked::leaving(result);
  Capability = std::move(result);
}

void yCapabilityP::CapabilityPPlotOutput(const DoubleArray& dy, const DoubleArray& dxN,
                                         const std::string& Target, const std::string& HistMu,
                                         DoubleArray& CumDPUX, DoubleArray& CumDPUY, DoubleArray& CumDPUAve,
                                         DoubleArray& CumDPULSL, DoubleArray& CumDPUUSL, DoubleArray& DPU,
                                         DoubleArray& DRateX, DoubleArray& DRateY, DoubleArray& DRateAve,
                                         DoubleArray& PPlotObs, DoubleArray& PPlotExp,
                                         StringArray& PPlotLabel) const {
  DoubleArray summary;
  CapabilityPOutput(dy, dxN, Target, HistMu, summary);
  const double mean = summary(PoissonCapability::DPU);
  const Samples samples(dy, dxN);
  const Index n = samples.rows();

  DoubleArray cumulative = samples.cumulativeRates(1);
  DoubleArray rates = samples.rates(1);
  const DoubleArray none(n, NoValue);
  DoubleArray rateX = none;
  DoubleArray rateY = none;
  DoubleArray rateMean = none;
  DistributionPlot plot{none, none};
  StringArray labels;
  if (samples.sizesDiffer()) {
    rateX = dxN;
    rateY = rates;
    rateMean = DoubleArray(n, mean);
    labels = {"Defect Rate", "DPU", "Sample"};
  } else {
    const std::optional<double> histMu = historicalRate(HistMu);
    const double expected = histMu ? checked::finite(*histMu * samples.size(1)) : GetMean(dy);
    plot =
        distributionPlot(samples, [&](double k) { return worksheetFunction().Poisson(k, expected, true); });
    labels = {"Poisson Plot", "Expected Defects", "Observed Defects"};
  }

  checked::leaving(cumulative, rates);
  CumDPUX = control::positions(n);
  CumDPUY = std::move(cumulative);
  CumDPUAve = DoubleArray(n, mean);
  CumDPULSL = DoubleArray(n, summary(PoissonCapability::Lower));
  CumDPUUSL = DoubleArray(n, summary(PoissonCapability::Upper));
  DPU = std::move(rates);
  DRateX = std::move(rateX);
  DRateY = std::move(rateY);
  DRateAve = std::move(rateMean);
  PPlotObs = std::move(plot.observed);
  PPlotExp = std::move(plot.expected);
  PPlotLabel = std::move(labels);
}

}  // namespace zelkova
