#include "zelkova/models/yANOVA1.h"

#include <utility>

#include "zelkova/kit/Levels.h"
#include "zelkova/kit/groups.h"
#include "zelkova/models/anovaTable.h"

namespace zelkova {

namespace {

/// The squared deviations of the groups' means from the mean of all values, each weighted by its group's
/// size.
double squaresBetween(const std::vector<GroupSummary>& groups, double n) {
  const GroupSummary& first = groups.front();
  double grandMean = 0;
  for (const GroupSummary& group : groups) grandMean += group.n * difference(group, first);
  grandMean /= n;

  double squares = 0;
  for (const GroupSummary& group : groups) {
    const double deviation = difference(group, first) - grandMean;
    squares += group.n * deviation * deviation;
  }
  return checked::finite(squares);
}

DoubleArray oneWayTable(WorksheetFunction& host, const std::vector<GroupSummary>& groups, double n) {
  const double dfB = static_cast<double>(groups.size()) - 1;
  const double dfW = n - static_cast<double>(groups.size());
  const double dfT = n - 1;
  const double ssb = squaresBetween(groups, n);
  double ssw = 0;
  for (const GroupSummary& group : groups) ssw += group.squares;
  const double sst = ssb + ssw;
  const double msb = anova::meanSquare(ssb, dfB);
  const double msw = anova::meanSquare(ssw, dfW);
  const anova::FTest test = anova::fTest(host, msb, dfB, msw, dfW);

  DoubleArray result(OneANOVA::size, NoValue);
  result(OneANOVA::DFB) = dfB;
  result(OneANOVA::SSB) = ssb;
  result(OneANOVA::MSB) = msb;
  result(OneANOVA::F) = test.F;
  result(OneANOVA::PValue) = test.p;
  result(OneANOVA::DFW) = dfW;
  result(OneANOVA::SSW) = ssw;
  result(OneANOVA::MSW) = msw;
  result(OneANOVA::DFT) = dfT;
  result(OneANOVA::SST) = sst;
  if (dfW != 0) result(OneANOVA::S) = checked::root(msw);
  if (sst != 0) result(OneANOVA::RSq) = anova::clampedShare(ssb / sst);
  const double mst = anova::meanSquare(sst, dfT);
  if (mst != 0 && msw != NoValue) {
    result(OneANOVA::RSqAdj) = anova::clampedShare(1 - checked::quotient(msw, mst));
  }
  checked::leaving(result);
  return result;
}

DoubleArray levelTable(const std::vector<GroupSummary>& groups, double t, double S) {
  DoubleArray result(static_cast<Index>(groups.size()), OneANOVALevels::size, 0.0);
  for (Index g = 1; g <= result.rows(); ++g) {
    const GroupSummary& group = groups[static_cast<std::size_t>(g - 1)];
    const double reach = t * S / checked::root(group.n);
    result(g, OneANOVALevels::N) = group.n;
    result(g, OneANOVALevels::Mean) = group.mean();
    result(g, OneANOVALevels::SD) = group.sd();
    result(g, OneANOVALevels::Lower) = group.mean() - reach;
    result(g, OneANOVALevels::Upper) = group.mean() + reach;
  }
  checked::leaving(result);
  return result;
}

}  // namespace

void yANOVA1::OneANOVAOutput(const DoubleArray& dy, const StringArray& dx, double CLevel,
                             DoubleArray& OANVValue, DoubleArray& OANVValue_I, StringArray& OANVlabel) const {
  const Levels levels(dx.vector());
  const std::vector<GroupSummary> groups = summariesOf(dy.vector(), levels.codes(), levels.count());
  DoubleArray table = oneWayTable(worksheetFunction(), groups, static_cast<double>(dy.rows()));
  const double t = worksheetFunction().TInv(1 - CLevel, table(OneANOVA::DFW));
  DoubleArray perLevel = levelTable(groups, t, table(OneANOVA::S));
  OANVValue = std::move(table);
  OANVValue_I = std::move(perLevel);
  OANVlabel = levels.distinct(dx);
}

void yANOVA1::OneANOVAResOutput(const DoubleArray& dy, const StringArray& dx, DoubleArray& Residual,
                                DoubleArray& FittedV) const {
  const Levels levels(dx.vector());
  const std::vector<GroupSummary> groups = summariesOf(dy.vector(), levels.codes(), levels.count());
  DoubleArray fitted(dy.rows());
  DoubleArray residual(dy.rows());
  for (Index i = 1; i <= dy.rows(); ++i) {
    const Index level = levels.codes()[static_cast<std::size_t>(i - 1)];
    fitted(i) = groups[static_cast<std::size_t>(level)].mean();
    residual(i) = dy(i) - fitted(i);
  }
  checked::leaving(fitted, residual);
  Residual = std::move(residual);
  FittedV = std::move(fitted);
}

}  // namespace zelkova
