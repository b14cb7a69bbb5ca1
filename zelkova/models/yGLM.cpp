#include "zelkova/models/yGLM.h"

#include <algorithm>
#include <utility>

#include "zelkova/models/CodedDesign.h"
#include "zelkova/models/anovaTable.h"
#include "zelkova/models/regressionFit.h"
#include "zelkova/models/yRegression.h"

namespace zelkova {

namespace {

using glm::CodedTerm;
using glm::Refusal;
using glm::Term;

/// Failure 9 unless `table`, where it is filled, has a row for each of `n` values and a name for each column.
template <class T>
void checkTable(const Array<T>& table, const char* name, const StringArray& names, const char* nameOfNames,
                Index n) {
  if (!table.filled()) return;
  if (table.columns() != names.size()) {
    raise(FailureNumber::OutOfRange, std::string(nameOfNames) + " must name each column of " + name);
  }
  if (table.rows() != n) {
    raise(FailureNumber::OutOfRange, std::string(name) + " must have a row for each value of dy");
  }
}

/// The columns of the whole model: the constant, and the terms' in their order.
struct Design {
  std::vector<CodedTerm> terms;
  Index rows;

  std::size_t termCount() const { return terms.size() - 1; }
  const CodedTerm& term(std::size_t t) const { return terms[t + 1]; }

  /// The place of a term's first column; for `t` = `termCount()` that of the response, behind them all.
  std::size_t firstPlace(std::size_t t) const {
    std::size_t place = 1;
    for (std::size_t before = 0; before < t; ++before) place += term(before).columns.size();
    return place;
  }

  StringArray labels() const {
    std::vector<std::string> result;
    for (const CodedTerm& coded : terms) {
      for (const CodedTerm::Column& column : coded.columns) result.push_back(column.label);
    }
    return StringArray(std::move(result));
  }
};

Design designOf(const std::vector<Term>& model, const std::vector<glm::Factor>& factors,
                const DoubleArray& dc, const DoubleArray& dy) {
  Design design{{glm::constantTerm()}, dy.rows()};
  for (CodedTerm& term : glm::codedTerms(model, factors, dc, dy.rows())) {
    design.terms.push_back(std::move(term));
  }
  return design;
}

/// What a term explains. A little below 0 it is rounding; further below, the columns depend on each other.
double explainedSS(DoubleDouble difference, double SST) {
  constexpr double rounding = 1E-9;
  if (difference.rounded() < -rounding * SST) glm::refuse("Rank deficiency due to colinearity");
  return std::max(0.0, difference.rounded());
}

/// The sums of squares of each term after those before it, and after all others.
struct TermSS {
  std::vector<double> sequential, adjusted;
};

TermSS termSS(const Design& design, const CrossProducts& products, const LeastSquares& full, double SST) {
  const std::size_t count = design.firstPlace(design.termCount());
  const ResponseSummary response{count, products(0, count)};
  const LeastSquares::Projection projection = full.project(count);
  const DoubleDouble ssr = regressionSS(products, response, projection, true);

  TermSS result;
  for (std::size_t t = 0; t < design.termCount(); ++t) {
    const std::size_t first = design.firstPlace(t);
    const std::size_t next = design.firstPlace(t + 1);
    // The projection on the whole model holds those on the models before it.
    DoubleDouble sequential;
    for (std::size_t k = first; k < next; ++k) sequential = sequential + projection.sequential[k];
    result.sequential.push_back(explainedSS(sequential, SST));

    std::vector<std::size_t> others = firstPlaces(count);
    others.erase(others.begin() + static_cast<Index>(first), others.begin() + static_cast<Index>(next));
    DoubleDouble without;
    if (others.size() > 1) {
      without = regressionSS(products, response, LeastSquares(products, others).project(count), true);
    }
    result.adjusted.push_back(explainedSS(ssr - without, SST));
  }
  return result;
}

DoubleArray analysisOfVariance(WorksheetFunction& host, const Design& design, const TermSS& ss,
                               const DoubleArray& RegMain) {
  const double dfE = RegMain(Reg::DFError);
  const double mse = RegMain(Reg::MSE);
  const auto terms = static_cast<Index>(design.termCount());
  DoubleArray table(terms + 2, GLMSources::size, NoValue);
  for (Index row = 1; row <= terms; ++row) {
    const auto t = static_cast<std::size_t>(row - 1);
    const auto df = static_cast<double>(design.term(t).columns.size());
    const double ms = anova::meanSquare(ss.adjusted[t], df);
    const anova::FTest test = anova::fTest(host, ms, df, mse, dfE);
    table(row, GLMSources::DF) = df;
    table(row, GLMSources::SeqSS) = ss.sequential[t];
    table(row, GLMSources::AdjSS) = ss.adjusted[t];
    table(row, GLMSources::AdjMS) = ms;
    table(row, GLMSources::F) = test.F;
    table(row, GLMSources::PValue) = test.p;
  }
  const Index error = terms + 1;
  table(error, GLMSources::DF) = dfE;
  table(error, GLMSources::SeqSS) = RegMain(Reg::SSE);
  table(error, GLMSources::AdjSS) = RegMain(Reg::SSE);
  table(error, GLMSources::AdjMS) = mse;
  const Index total = terms + 2;
  table(total, GLMSources::DF) = static_cast<double>(design.rows - 1);
  table(total, GLMSources::SeqSS) = RegMain(Reg::SST);
  checked::leaving(table);
  return table;
}

/// The components from the mean squares of `table`, whose rows are the terms and then the error.
DoubleArray varianceComponents(const Design& design, const DoubleArray& table) {
  const auto terms = static_cast<Index>(design.termCount());
  DoubleArray result(terms + 1, NoValue);
  result(terms + 1) = table(terms + 1, GLMSources::AdjMS);
  for (Index row = terms; row >= 1; --row) {
    const double units = design.term(static_cast<std::size_t>(row - 1)).units;
    const double ms = table(row, GLMSources::AdjMS);
    const double next = table(row + 1, GLMSources::AdjMS);
    if (units == 0 || ms == NoValue || next == NoValue) continue;
    result(row) = (ms - next) / (static_cast<double>(design.rows) / units);
  }
  checked::leaving(result);
  return result;
}

DoubleArray coefficientTable(const RegressionFit& fit) {
  DoubleArray table(fit.coef.rows(), GLMCoefficients::size, NoValue);
  for (Index i = 1; i <= table.rows(); ++i) {
    table(i, GLMCoefficients::Coefficient) = fit.coef(i);
    table(i, GLMCoefficients::SE) = fit.SECoef(i);
    table(i, GLMCoefficients::T) = fit.tStat(i);
    table(i, GLMCoefficients::PValue) = fit.PV(i);
  }
  checked::leaving(table);
  return table;
}

/// All that a call reports of a model; what was not asked for stays unfilled.
struct Report {
  RegressionFit fit;
  DoubleArray coefficients, table, components, fitted, residual;
};

Report report(WorksheetFunction& host, const Design& design, const DoubleArray& dy, bool fullyNested,
              bool ResidualPlot) {
  const CrossProducts products = glm::crossProducts(design.terms, dy.vector());
  const std::size_t count = design.firstPlace(design.termCount());
  const LeastSquares full(products, firstPlaces(count));
  Report result;
  result.fit = fitRegression(host, products, full, {count, products(0, count)}, true);
  result.coefficients = coefficientTable(result.fit);
  if (ResidualPlot) {
    result.fitted = glm::fittedValues(design.terms, result.fit.coef, design.rows);
    result.residual = residualsOf(dy.vector(), result.fitted);
    roundForDisplay(result.residual);
    checked::leaving(result.fitted, result.residual);
    return result;
  }
  const TermSS ss = termSS(design, products, full, result.fit.RegMain(Reg::SST));
  result.table = analysisOfVariance(host, design, ss, result.fit.RegMain);
  if (fullyNested) result.components = varianceComponents(design, result.table);
  return result;
}

/// Deliberate: whatever fails in the fit itself is told as collinearity, by far the most common cause.
Report reportOrRefuse(WorksheetFunction& host, const Design& design, const DoubleArray& dy, bool fullyNested,
                      bool ResidualPlot) {
  try {
    return report(host, design, dy, fullyNested, ResidualPlot);
  } catch (const Failure&) {
    glm::refuse("Error: Collinearity");
  }
}

}  // namespace

void yGLM::GLMOutput(const DoubleArray& dy, const std::string& /*dyn*/, const StringArray& df,
                     const StringArray& dfn, const DoubleArray& dc, const StringArray& dCn,
                     const StringArray& model, DoubleArray& ANOVAtable, StringArray& ANOVAlabel,
                     DoubleArray& regtable, StringArray& Reglabel, double& DS, double& r2, double& R2a,
                     DoubleArray& FittedV, DoubleArray& Residual, StringArray& mterm, StringArray& model2,
                     DoubleArray& varcomp, bool FNANOVA, std::string& ErrorCode, bool ResidualPlot) const {
  const Index n = static_cast<Index>(dy.vector().size());
  checkTable(df, "df", dfn, "dfn", n);
  checkTable(dc, "dc", dCn, "dCn", n);
  const StringArray noNames;
  try {
    const std::vector<glm::Factor> factors = df.filled() ? glm::factorsOf(df) : std::vector<glm::Factor>();
    const glm::Names names(df.filled() ? dfn : noNames, dc.filled() ? dCn : noNames);
    const std::vector<Term> terms = glm::parseModel(model, names);
    const Design design = designOf(terms, factors, dc, dy);
    Report result = reportOrRefuse(worksheetFunction(), design, dy, FNANOVA, ResidualPlot);

    std::vector<std::string> canonical;
    std::vector<std::string> shown;
    for (const Term& term : terms) {
      canonical.push_back(glm::canonicalText(term, names));
      shown.push_back(term.reported);
    }
    mterm = StringArray(std::move(canonical));
    model2 = StringArray(shown);
    regtable = std::move(result.coefficients);
    Reglabel = design.labels();
    DS = result.fit.RegMain(Reg::S);
    r2 = result.fit.RegMain(Reg::RSquared);
    R2a = result.fit.RegMain(Reg::AdjustedRSquared);
    if (ResidualPlot) {
      FittedV = std::move(result.fitted);
      Residual = std::move(result.residual);
      return;
    }
    shown.insert(shown.end(), {"Error", "Total"});
    ANOVAtable = std::move(result.table);
    ANOVAlabel = StringArray(std::move(shown));
    if (FNANOVA) varcomp = std::move(result.components);
  } catch (const Refusal& refusal) {
    ErrorCode = refusal.text;
  }
}

}  // namespace zelkova
