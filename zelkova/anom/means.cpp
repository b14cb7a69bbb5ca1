#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "zelkova/anom/criticalValue.h"
#include "zelkova/anom/decisionLimits.h"
#include "zelkova/anom/yANOM.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/Levels.h"
#include "zelkova/kit/groups.h"
#include "zelkova/models/TwoWay.h"

namespace zelkova {

using anom::boundedCriticalValue;
using anom::checkComparison;
using anom::deviationError;
using anom::exactCriticalValue;
using anom::putRow;
using anom::signalsOf;

namespace {

/// Failure 9 unless the labels `dx`, known by `name`, are as many as the values `dy`. Deliberate: surplus
/// labels too show that the two columns do not belong together.
void checkLabels(const char* name, const StringArray& dx, const DoubleArray& dy) {
  const std::size_t labels = dx.vector().size();
  const std::size_t values = dy.vector().size();
  if (labels == values) return;
  raise(FailureNumber::OutOfRange,
        std::string(name).append(" must have as many labels as dy has values, but has ") +
            std::to_string(labels) + " for " + std::to_string(values));
}

/// The standard deviation of the error of the values `dy`, from `squares` on `df` degrees of freedom, each of
/// which the roundings of so many `terms` may have touched. Deliberate: 0 where it is no more than roundings
/// make it, so that decimals that are free of error count as such though they are not in binary.
double errorDeviation(const DoubleArray& dy, double squares, double df, double terms) {
  double largest = 0;
  for (const double y : dy.vector()) largest = std::max(largest, std::fabs(y));
  const double roundings = 4 * std::numeric_limits<double>::epsilon() * std::sqrt(terms) * largest;
  const double S = checked::root(checked::finite(squares) / df);
  return S > roundings ? S : 0;
}

/// Deliberate: without spread in the error there is nothing to measure deviations by, and no limits; limits
/// on the centre line would have every level signal whose mean differs by a rounding.
double reachOf(double criticalValue, double S, double error) {
  return S == 0 ? NoValue : checked::finite(criticalValue * S * error);
}

bool haveOneSize(const std::vector<GroupSummary>& groups) {
  return std::all_of(groups.begin(), groups.end(),
                     [&](const GroupSummary& group) { return group.n == groups.front().n; });
}

/// What the charts of a balanced layout are drawn from.
struct BalancedLayout {
  TwoWay parts;
  double N, mean, S, df;

  double a() const { return parts.a; }
  double b() const { return parts.b; }
};

BalancedLayout analyseBalanced(const DoubleArray& dy, const Levels& levels1, const Levels& levels2,
                               bool additive) {
  if (!isEvenlySpread(dy.rows(), levels1, levels2, true, false)) {
    raise(FailureNumber::InvalidCall,
          "unbalanced design: every pair of levels must have the same number of values");
  }
  BalancedLayout layout{analyseTwoWay(dy.vector(), levels1, levels2), static_cast<double>(dy.rows()),
                        summaryOf(dy.vector()).mean(), 0, 0};
  const TwoWay& parts = layout.parts;
  layout.df = additive ? layout.N - parts.a - parts.b + 1 : layout.N - parts.a * parts.b;
  if (layout.df == 0) {
    raise(FailureNumber::InvalidCall,
          "without replicates there is no error to judge by; Additive true takes the interaction");
  }
  layout.S = additive ? errorDeviation(dy, parts.within + parts.ss12, layout.df, parts.a * parts.b)
                      : errorDeviation(dy, parts.within, layout.df, 1);
  return layout;
}

/// The chart of the means of a factor's levels, all of one size.
DoubleArray factorChart(const BalancedLayout& layout, const std::vector<double>& effects,
                        double criticalValue) {
  const double n = layout.N / static_cast<double>(effects.size());
  const double reach = reachOf(criticalValue, layout.S, deviationError(n, layout.N));
  DoubleArray table(static_cast<Index>(effects.size()), ANOMLevels::size, 0.0);
  for (Index i = 1; i <= table.rows(); ++i) {
    const double effect = effects[static_cast<std::size_t>(i - 1)];
    putRow(table, i, {n, layout.mean + effect, layout.mean, effect, reach});
  }
  return table;
}

/// The critical value of the effects of the interaction. Where a factor has two levels, the effects at one of
/// them are those at the other but for the sign, and deviate like the means of the other factor's levels.
double interactionCriticalValue(WorksheetFunction& host, double alpha, const BalancedLayout& layout) {
  const double fewer = std::min(layout.a(), layout.b());
  const double more = std::max(layout.a(), layout.b());
  if (fewer == 2) return exactCriticalValue(host, alpha, static_cast<Index>(more), layout.df);
  return boundedCriticalValue(host, alpha, static_cast<Index>(fewer * more), layout.df);
}

DoubleArray interactionChart(const BalancedLayout& layout, double criticalValue) {
  const double error = checked::root((layout.a() - 1) * (layout.b() - 1) / layout.N);
  const double reach = reachOf(criticalValue, layout.S, error);
  const std::vector<double>& effects = layout.parts.effects12;
  DoubleArray table(static_cast<Index>(effects.size()), ANOMLevels::size, 0.0);
  for (Index i = 1; i <= table.rows(); ++i) {
    const double effect = effects[static_cast<std::size_t>(i - 1)];
    putRow(table, i, {layout.parts.r, effect, 0, effect, reach});
  }
  return table;
}

StringArray pairLabels(const StringArray& labels1, const StringArray& labels2) {
  std::vector<std::string> result;
  result.reserve(static_cast<std::size_t>(labels1.size() * labels2.size()));
  for (const std::string& label1 : labels1.elements()) {
    for (const std::string& label2 : labels2.elements()) {
      result.push_back(label1 + "*");
      result.back() += label2;
    }
  }
  return StringArray(std::move(result));
}

}  // namespace

void yANOM::ANOMOneOutput(const DoubleArray& dy, const StringArray& dx, double alpha, DoubleArray& ANOMValue,
                          DoubleArray& ANOMValue_I, StringArray& ANOMlabel) const {
  checkLabels("dx", dx, dy);
  const Levels levels(dx.vector());
  checkComparison(alpha, levels.count());
  const std::vector<GroupSummary> groups = summariesOf(dy.vector(), levels.codes(), levels.count());
  const GroupSummary all = summaryOf(dy.vector());
  const double df = all.n - static_cast<double>(levels.count());
  if (df == 0) {
    raise(FailureNumber::InvalidCall, "every level has a single value: there is no error to judge by");
  }
  double squares = 0;
  for (const GroupSummary& group : groups) squares += group.squares;
  const double S = errorDeviation(dy, squares, df, 1);
  const double critical = haveOneSize(groups)
                              ? exactCriticalValue(worksheetFunction(), alpha, levels.count(), df)
                              : boundedCriticalValue(worksheetFunction(), alpha, levels.count(), df);

  DoubleArray chart(levels.count(), ANOMLevels::size, 0.0);
  for (Index i = 1; i <= chart.rows(); ++i) {
    const GroupSummary& group = groups[static_cast<std::size_t>(i - 1)];
    const double reach = reachOf(critical, S, deviationError(group.n, all.n));
    putRow(chart, i, {group.n, group.mean(), all.mean(), difference(group, all), reach});
  }

  DoubleArray result(OneANOM::size);
  result(OneANOM::Alpha) = alpha;
  result(OneANOM::Levels) = static_cast<double>(levels.count());
  result(OneANOM::N) = all.n;
  result(OneANOM::Mean) = all.mean();
  result(OneANOM::S) = S;
  result(OneANOM::DF) = df;
  result(OneANOM::CriticalValue) = critical;
  result(OneANOM::Signals) = signalsOf(chart);
  checked::leaving(result, chart);
  ANOMValue = std::move(result);
  ANOMValue_I = std::move(chart);
  ANOMlabel = levels.distinct(dx);
}

void yANOM::ANOMTwoOutput(const DoubleArray& dy, const StringArray& dx1, const StringArray& dx2,
                          bool Additive, double alpha, DoubleArray& ANOMValue, DoubleArray& ANOMValue_I1,
                          DoubleArray& ANOMValue_I2, DoubleArray& ANOMValue_I12, StringArray& UniX1,
                          StringArray& UniX2, StringArray& UniX12) const {
  checkLabels("dx1", dx1, dy);
  checkLabels("dx2", dx2, dy);
  const Levels levels1(dx1.vector());
  const Levels levels2(dx2.vector());
  checkComparison(alpha, std::min(levels1.count(), levels2.count()));
  const BalancedLayout layout = analyseBalanced(dy, levels1, levels2, Additive);
  WorksheetFunction& host = worksheetFunction();
  const double critical1 = exactCriticalValue(host, alpha, levels1.count(), layout.df);
  const double critical2 = exactCriticalValue(host, alpha, levels2.count(), layout.df);
  DoubleArray chart1 = factorChart(layout, layout.parts.effects1, critical1);
  DoubleArray chart2 = factorChart(layout, layout.parts.effects2, critical2);

  DoubleArray result(TwoANOM::size, NoValue);
  result(TwoANOM::Alpha) = alpha;
  result(TwoANOM::N) = layout.N;
  result(TwoANOM::Mean) = layout.mean;
  result(TwoANOM::S) = layout.S;
  result(TwoANOM::DF) = layout.df;
  result(TwoANOM::CriticalValue1) = critical1;
  result(TwoANOM::Signals1) = signalsOf(chart1);
  result(TwoANOM::CriticalValue2) = critical2;
  result(TwoANOM::Signals2) = signalsOf(chart2);
  StringArray labels1 = levels1.distinct(dx1);
  StringArray labels2 = levels2.distinct(dx2);
  DoubleArray chart12;
  StringArray labels12;
  if (!Additive) {
    const double critical12 = interactionCriticalValue(host, alpha, layout);
    chart12 = interactionChart(layout, critical12);
    labels12 = pairLabels(labels1, labels2);
    result(TwoANOM::CriticalValue12) = critical12;
    result(TwoANOM::Signals12) = signalsOf(chart12);
  }

  checked::leaving(result, chart1, chart2, chart12);
  ANOMValue = std::move(result);
  ANOMValue_I1 = std::move(chart1);
  ANOMValue_I2 = std::move(chart2);
  ANOMValue_I12 = std::move(chart12);
  UniX1 = std::move(labels1);
  UniX2 = std::move(labels2);
  UniX12 = std::move(labels12);
}

}  // namespace zelkova
