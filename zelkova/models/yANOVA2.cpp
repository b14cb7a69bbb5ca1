#include "zelkova/models/yANOVA2.h"

#include <utility>

#include "zelkova/kit/Levels.h"
#include "zelkova/kit/groups.h"
#include "zelkova/models/anovaTable.h"

namespace zelkova {

namespace {

/// What a balanced layout of a by b cells with r values each consists of. Effects are deviations from the
/// mean of all.
struct TwoWay {
  double a, b, r;
  GroupSummary all;
  std::vector<double> effects1, effects2;
  double ss1 = 0, ss2 = 0, ss12 = 0, within = 0;
};

double squares(const std::vector<double>& values) {
  double sum = 0;
  for (const double x : values) sum += x * x;
  return sum;
}

TwoWay analyse(const DoubleArray& dy, const Levels& levels1, const Levels& levels2) {
  const auto a = static_cast<std::size_t>(levels1.count());
  const auto b = static_cast<std::size_t>(levels2.count());
  std::vector<Index> cells(static_cast<std::size_t>(dy.rows()));
  for (std::size_t i = 0; i < cells.size(); ++i) {
    cells[i] = levels1.codes()[i] * levels2.count() + levels2.codes()[i];
  }
  const std::vector<GroupSummary> groups = summariesOf(dy.vector(), cells, levels1.count() * levels2.count());

  // Cells are measured from the first of them, so that no digits go into what all have in common.
  std::vector<double> means(a * b);
  std::vector<double> means1(a, 0.0);
  std::vector<double> means2(b, 0.0);
  double mean = 0;
  double within = 0;
  for (std::size_t i = 0; i < a; ++i) {
    for (std::size_t j = 0; j < b; ++j) {
      const double cell = difference(groups[i * b + j], groups.front());
      means[i * b + j] = cell;
      means1[i] += cell;
      means2[j] += cell;
      mean += cell;
      within += groups[i * b + j].squares;
    }
  }

  mean /= static_cast<double>(a * b);

  TwoWay result{static_cast<double>(a), static_cast<double>(b), groups.front().n,
                summaryOf(dy.vector()), std::move(means1),      std::move(means2)};
  for (double& effect : result.effects1) effect = effect / result.b - mean;
  for (double& effect : result.effects2) effect = effect / result.a - mean;
  for (std::size_t i = 0; i < a; ++i) {
    for (std::size_t j = 0; j < b; ++j) {
      means[i * b + j] -= mean + result.effects1[i] + result.effects2[j];
    }
  }
  result.ss1 = checked::finite(result.b * result.r * squares(result.effects1));
  result.ss2 = checked::finite(result.a * result.r * squares(result.effects2));
  result.ss12 = checked::finite(result.r * squares(means));
  result.within = checked::finite(within);
  return result;
}

DoubleArray twoWayTable(WorksheetFunction& host, const TwoWay& layout, bool additive) {
  const double n = layout.a * layout.b * layout.r;
  const double df1 = layout.a - 1;
  const double df2 = layout.b - 1;
  const double dfE = additive ? n - layout.a - layout.b + 1 : n - layout.a * layout.b;
  // The error is summed as such, rather than left over from the total: cancellation cannot touch it.
  const double sse = additive ? layout.within + layout.ss12 : layout.within;
  const double sst = layout.ss1 + layout.ss2 + layout.ss12 + layout.within;
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

  const TwoWay layout = analyse(dy, levels1, levels2);
  DoubleArray table = twoWayTable(worksheetFunction(), layout, Additive);
  double reach1 = NoValue;
  double reach2 = NoValue;
  if (table(TwoANOVA::S) != NoValue) {
    const double reach = worksheetFunction().TInv(1 - dCLevel, table(TwoANOVA::DFE)) * table(TwoANOVA::S);
    reach1 = reach / checked::root(layout.b * layout.r);
    reach2 = reach / checked::root(layout.a * layout.r);
  }
  DoubleArray perLevel1 = levelTable(layout.all, layout.effects1, reach1);
  DoubleArray perLevel2 = levelTable(layout.all, layout.effects2, reach2);
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
