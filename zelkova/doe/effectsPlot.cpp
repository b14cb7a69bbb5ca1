#include <cmath>
#include <utility>
#include <vector>

#include "zelkova/doe/factorialTerms.h"
#include "zelkova/doe/yDOEAnalyse.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/modzSort.h"
#include "zelkova/kit/modzStat.h"

namespace zelkova {

namespace {

/// Lenth's pseudo standard error: from the effects that are not plainly active.
double pseudoStandardError(const DoubleArray& effects) {
  const double initial = 1.5 * GetMedian(effects);
  std::vector<double> inactive;
  for (const double effect : effects.elements()) {
    if (effect < 2.5 * initial) inactive.push_back(effect);
  }
  if (inactive.empty()) {
    raise(FailureNumber::OutOfRange, "most effects are 0, which leaves no error to compare the others with");
  }
  return 1.5 * GetMedian(DoubleArray(std::move(inactive)));
}

double significanceLimit(WorksheetFunction& host, double alpha, double DoFR, const DoubleArray& plotted) {
  if (DoFR != 0) return host.TInv(alpha, DoFR);
  return checked::finite(pseudoStandardError(plotted) *
                         host.TInv(alpha, static_cast<double>(plotted.rows()) / 3));
}

}  // namespace

void yDOEAnalyse::DOEAnaEPOutput(double alpha, const StringArray& Terms, const DoubleArray& Ceffect,
                                 const DoubleArray& CtStat, double DoFR, StringArray& EP_X, DoubleArray& EP_Y,
                                 DoubleArray& EPL_X, DoubleArray& EPL_Y) const {
  std::vector<std::string> labels;
  std::vector<double> sizes;
  for (Index i = 1; i <= Terms.rows(); ++i) {
    if (!doe::isFactorTerm(Terms(i))) continue;
    labels.push_back(Terms(i));
    sizes.push_back(std::abs(DoFR == 0 ? Ceffect(i) : CtStat(i)));
  }
  if (sizes.empty()) raise(FailureNumber::OutOfRange, "there is no term of factors");
  StringArray terms(std::move(labels));
  DoubleArray plotted(std::move(sizes));
  const double limit = significanceLimit(worksheetFunction(), alpha, DoFR, plotted);
  ExchangeSortDS(plotted, terms);
  checked::leaving(plotted);
  EP_X = std::move(terms);
  EP_Y = std::move(plotted);
  EPL_X = DoubleArray{0, 1};
  EPL_Y = DoubleArray{limit, limit};
}

}  // namespace zelkova
