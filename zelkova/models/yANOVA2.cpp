#include "zelkova/models/yANOVA2.h"

#include <utility>

#include "zelkova/kit/Levels.h"
#include "zelkova/kit/groups.h"
#include "zelkova/models/TwoWay.h"
#include "zelkova/models/anovaTable.h"

namespace zelkova {

namespace {

DoubleArray twoWayTable(WorksheetFunction& host, const TwoWay& layout, bool additive) {
  const double n = layout.a * layout.b * layout.r;
  const double df1 = layout.a - 1;
  const double df2 = layout.b - 1;
  const double dfE = additive ? n - layout.a - layout.b + 1 : n - layout.a * layout.b;
  const double sse = additive ? layout.within + layout.ss12 : layout.within;
  const double sst = layout.total();
  const double mse = anova::meanSquare(sse, dfE);

  DoubleArray result(TwoANOVA::size, NoValue);
  const auto put = [&](Index firstSlot, double df, double ss) {
    const double ms = anova::meanSquare(ss, df);
    const anova::FTest test = anova::fTest(host, ms, df, mse, dfE);
    Index slot = firstSlot;
    for (const double x : {df, ss, ms, test.F, test.p}) result(slot++) = x;
  };
  put(TwoANOVA::DF1, df1, layout.ss1);
  put(TwoANOVA::DF2, df2, layout.ss2);
  if (!additive) put(TwoANOVA::DF12, df1 * df2, layout.ss12);
  result(TwoANOVA::DFE) = dfE;
  result(TwoANOVA::SSE) = sse;
  result(TwoANOVA::MSE) = mse;
  result(TwoANOVA::DFT) = n - 1;
  result(TwoANOVA::SST) = sst;
  if (mse != NoValue) result(TwoANOVA::S) = checked::root(mse);
  if (sst != 0) result(TwoANOVA::RSq) = anova::clampedShare(1 - checked::quotient(sse, sst));
  checked::leaving(result);
  return result;
}

/// The means of one factor's levels, and limits `reach` away from them.
DoubleArray levelTable(const GroupSummary& all, const std::vector<double>& effects, double reach) {
  DoubleArray result(static_cast<Index>(effects.size()), TwoANOVALevels::size, NoValue);
  for (Index i = 1; i <= result.rows(); ++i) {
    const double mean = all.centre + (all.rest + effects[static_cast<std::size_t>(i - 1)]);
    result(i, TwoANOVALevels::Mean) = mean;
    if (reach == NoValue) continue;
    result(i, TwoANOVALevels::Lower) = mean - reach;
    result(i, TwoANOVALevels::Upper) = mean + reach;
  }
  checked::leaving(result);
  return result;
}

DoubleArray cellMeans(const DoubleArray& dy, const Levels& levels1, const Levels& levels2) {
  // Numbered by the pairs that occur: in an unbalanced layout there can be far more pairs than rows.
  std::vector<double> pairs(static_cast<std::size_t>(dy.rows()));
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    pairs[i] = static_cast<double>(levels1.codes()[i] * levels2.count() + levels2.codes()[i]);
  }
  const Levels cells(pairs);
  const std::vector<GroupSummary> groups = summariesOf(dy.vector(), cells.codes(), cells.count());
  DoubleArray result(dy.rows());
  for (Index i = 1; i <= result.rows(); ++i) {
    result(i) = groups[static_cast<std::size_t>(cells.codes()[static_cast<std::size_t>(i - 1)])].mean();
  }
  return result;
}

DoubleArray additiveFit(const DoubleArray& dy, const Levels& levels1, const Levels& levels2) {
  const GroupSummary all = summaryOf(dy.vector());
  const std::vector<GroupSummary> groups1 = summariesOf(dy.vector(), levels1.codes(), levels1.count());
  const std::vector<GroupSummary> groups2 = summariesOf(dy.vector(), levels2.codes(), levels2.count());
  DoubleArray result(dy.rows());
  for (Index i = 1; i <= result.rows(); ++i) {
    const auto row = static_cast<std::size_t>(i - 1);
    const GroupSummary& group1 = groups1[static_cast<std::size_t>(levels1.codes()[row])];
    const GroupSummary& group2 = groups2[static_cast<std::size_t>(levels2.codes()[row])];
    result(i) = group1.mean() + difference(group2, all);
  }
  return result;
}

}  // namespace

void yANOVA2::TwoANOVAOutput(const DoubleArray& dy, const StringArray& dx1, const StringArray& dx2,
                             bool Additive, double dCLevel, DoubleArray& TANVValue, DoubleArray& TANVValue_I1,
                             DoubleArray& TANVValue_I2, StringArray& UniX1, StringArray& UniX2,
                             std::string& ErrorCode) const {
  const Levels levels1(dx1.vector());
  const Levels levels2(dx2.vector());
  if (!isEvenlySpread(dy.rows(), levels1, levels2, true, false)) {
    ErrorCode = "Unbalanced design";
    return;
  }
  if (levels1.count() < 2 || levels2.count() < 2) {
    ErrorCode = "Factors must have more than 1 distinct value";
    return;
  }

  const TwoWay layout = analyseTwoWay(dy.vector(), levels1, levels2);
  DoubleArray table = twoWayTable(worksheetFunction(), layout, Additive);
  double reach1 = NoValue;
  double reach2 = NoValue;
  if (table(TwoANOVA::S) != NoValue) {
    const double reach = worksheetFunction().TInv(1 - dCLevel, table(TwoANOVA::DFE)) * table(TwoANOVA::S);
    reach1 = reach / checked::root(layout.b * layout.r);
    reach2 = reach / checked::root(layout.a * layout.r);
  }
  const GroupSummary all = summaryOf(dy.vector());
  DoubleArray perLevel1 = levelTable(all, layout.effects1, reach1);
  DoubleArray perLevel2 = levelTable(all, layout.effects2, reach2);
  TANVValue = std::move(table);
  TANVValue_I1 = std::move(perLevel1);
  TANVValue_I2 = std::move(perLevel2);
  UniX1 = levels1.distinct(dx1);
  UniX2 = levels2.distinct(dx2);
}

void yANOVA2::TwoANOVAResOutput(const DoubleArray& dy, const StringArray& dx1, const StringArray& dx2,
                                bool Additive, DoubleArray& Residual, DoubleArray& FittedV) const {
  const Levels levels1(dx1.vector());
  const Levels levels2(dx2.vector());
  if (dx1.rows() < dy.rows() || dx2.rows() < dy.rows()) {
    raise(FailureNumber::OutOfRange, "fewer labels than values");
  }
  DoubleArray fitted = Additive ? additiveFit(dy, levels1, levels2) : cellMeans(dy, levels1, levels2);
  DoubleArray residual(dy.rows());
  for (Index i = 1; i <= dy.rows(); ++i) residual(i) = dy(i) - fitted(i);
  checked::leaving(fitted, residual);
  Residual = std::move(residual);
  FittedV = std::move(fitted);
}

}  // namespace zelkova
